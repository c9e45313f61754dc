#include <optional>
#include <vector>

#include "sandbox/operations/Handlers.h"
#include "sandbox/operations/browse/Details.h"

namespace sandbox {

void GetParameterDetails(Store& store, Checker& request, pugi::xml_node response) {
  Checker parameters(request.Required("zbt:parameterReferences"));
  std::vector<Parameter> wanted;
  while (parameters.HasMore()) {
    wanted.push_back(ReadParameter(store, parameters.Required("zbt:parameter")));
  }
  std::optional<Attribute> attribute;
  if (auto const node = request.Optional("brow:functionalAttribute")) {
    attribute = ReadAttribute(store, node);
  }
  std::optional<Record> record;
  if (auto const node = request.Optional("brow:recordReference")) {
    record = ReadRecord(store, node);
  }
  request.End();
  pugi::xml_node details = response.append_child("parameterDetails");
  for (Parameter const& parameter : wanted) {
    WriteParameters(store, details, "p.id = ?", {Id(parameter.id)},
                    attribute ? &*attribute : nullptr, record ? &*record : nullptr);
  }
}

}  // namespace sandbox
