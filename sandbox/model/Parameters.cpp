#include "sandbox/model/Parameters.h"

#include "sandbox/Fault.h"
#include "sandbox/model/Tables.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {

Parameter ReadParameter(Store& store, pugi::xml_node node, std::string* dbKey) {
  Checker in(node);
  std::string const key = KnownKey(store, in.Required("zbt:dbKey"));
  if (dbKey != nullptr) *dbKey = key;
  std::string condition = "p.id = ?";
  std::string value;
  if (auto const identity = in.Optional("zbt:parameterIdentity")) {
    value = Id(IdentityOf(identity));
  } else {
    condition = "p.name = ?";
    value = FilledTextOf(in.Required("zbt:name"));
  }
  in.End();
  auto const rows = store.Rows(
      "SELECT p.id, p.name, p.unit, p.type FROM parameter p JOIN database d"
      " ON d.id = p.database_id WHERE d.key = ? AND " +
          condition,
      {key, value});
  if (rows.empty()) throw Fault("there is no parameter " + value + " in \"" + key + "\"");
  return {rows[0].Int(0), rows[0].Text(1), rows[0].Text(2), rows[0].Text(3)};
}

void WriteParameter(pugi::xml_node node, Parameter const& parameter, std::string const& dbKey) {
  AddText(node, "b:dbKey", dbKey);
  AddText(node, "b:parameterIdentity", Id(parameter.id));
  AddText(node, "b:name", parameter.name);
}

}  // namespace sandbox
