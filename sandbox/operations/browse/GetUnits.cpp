#include <string>

#include "sandbox/model/Tables.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {

void GetUnits(Store& store, Checker& request, pugi::xml_node response) {
  std::string const dbKey = KnownKey(store, request.Required("brow:dbKey"));
  request.End();
  pugi::xml_node database = response.append_child("Databases").append_child("Database");
  AddText(database, "dbKey", dbKey);
  pugi::xml_node units = database.append_child("Units");
  for (Row const& row : store.Rows("SELECT symbol, name, has_currency FROM unit ORDER BY id")) {
    pugi::xml_node unit = AddText(units, "Unit", row.Text(1));
    unit.append_attribute("symbol") = row.Text(0).c_str();
    unit.append_attribute("hasCurrency") = row.IsSet(2) ? "true" : "false";
  }
}

}  // namespace sandbox
