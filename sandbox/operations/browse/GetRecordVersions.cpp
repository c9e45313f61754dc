#include <string>

#include "sandbox/Fault.h"
#include "sandbox/model/Records.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {
namespace {

/// SQL for the versions that a policy wants.
std::string VersionCondition(std::string const& policy) {
  constexpr char kNewest[] = " ORDER BY r.version DESC LIMIT 1";
  std::string const readable = " AND r.state IN ('Released', 'Unversioned', 'Superseded')";
  if (policy == "LatestRead") return readable + kNewest;
  if (policy == "Latest") return kNewest;
  if (policy == "AllReleased") return readable + " ORDER BY r.version";
  if (policy == "All") return " ORDER BY r.version";
  throw Fault("<brow:versions> does not know the word \"" + policy + "\"");
}

}  // namespace

void GetRecordVersions(Store& store, Checker& request, pugi::xml_node response) {
  std::string const condition = VersionCondition(TextOf(request.Required("brow:versions")));
  std::vector<Record> const wanted = ReadRecords(store, request.Required("zbt:recordReferences"));
  request.End();
  pugi::xml_node states = response.append_child("recordVersionStates");
  for (Record const& record : wanted) {
    for (Record const& version :
         Records(store, "r.history_id = ?" + condition, {std::to_string(record.historyId)})) {
      pugi::xml_node state = states.append_child("recordVersionState");
      WriteRecord(state.append_child("b:record"), version, true);
      AddText(state, "b:versionState", version.state);
    }
  }
}

}  // namespace sandbox
