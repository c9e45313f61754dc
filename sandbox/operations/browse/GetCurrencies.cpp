#include "sandbox/operations/Handlers.h"
#include "sandbox/operations/browse/Currencies.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {

void WriteCurrencies(Store& store, pugi::xml_node parent) {
  for (Row const& row : store.Rows("SELECT code, name, factor FROM currency ORDER BY code")) {
    pugi::xml_node currency = parent.append_child("currency");
    AddText(currency, "code", row.Text(0));
    AddText(currency, "name", row.Text(1));
    AddText(currency, "factor", row.Text(2));
  }
}

void GetCurrencies(Store& store, Checker& /*request*/, pugi::xml_node response) {
  WriteCurrencies(store, response);
}

}  // namespace sandbox
