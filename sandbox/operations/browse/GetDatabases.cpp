#include "sandbox/operations/Handlers.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {

void GetDatabases(Store& store, Checker& /*request*/, pugi::xml_node response) {
  pugi::xml_node details = response.append_child("databaseDetails");
  for (Row const& database : store.Rows("SELECT key, name FROM database ORDER BY id")) {
    pugi::xml_node element = details.append_child("database");
    AddText(element, "b:dbKey", database.Text(0));
    AddText(element, "b:volumeName", database.Text(1));
  }
}

}  // namespace sandbox
