#include "sandbox/model/Tables.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/operations/browse/Currencies.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {

void GetUnitSystems(Store& store, Checker& request, pugi::xml_node response) {
  AddText(response, "dbKey", KnownKey(store, request.Required("brow:dbKey")));
  bool const excludeCurrencies = BooleanOf(request.Required("brow:excludeCurrencies"));
  request.End();
  pugi::xml_node systems = response.append_child("unitSystems");
  for (Row const& row : store.Rows("SELECT name FROM unit_system ORDER BY name")) {
    AddText(systems, "unitSystem", row.Text(0));
  }
  if (!excludeCurrencies) WriteCurrencies(store, response.append_child("currencies"));
}

}  // namespace sandbox
