#include <string>
#include <vector>

#include "sandbox/model/Tables.h"
#include "sandbox/model/Units.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {
namespace {

void WriteConversion(Store& store, pugi::xml_node conversion, std::string const& from,
                     std::string const& to) {
  Unit const source = FindUnit(store, from);
  Unit const target = FindUnit(store, to);
  conversion.append_attribute("targetSymbol") = to.c_str();
  AddText(conversion, "b:Factor", TextOfNumber(source.factor / target.factor));
  double const offset = (source.offset - target.offset) / target.factor;
  if (offset != 0) AddText(conversion, "b:Offset", TextOfNumber(offset));
}

}  // namespace

void GetUnitConversions(Store& store, Checker& request, pugi::xml_node response) {
  AddText(response, "dbKey", KnownKey(store, request.Required("brow:dbKey")));
  Checker contexts(request.Required("brow:unitConversionContexts"));
  auto const currencyIn = [&](char const* name) {
    auto const node = request.Optional(name);
    return node ? FilledTextOf(node) : std::string();
  };
  std::string const sourceCurrency = currencyIn("brow:sourceCurrency");
  Checker sources(request.Required("brow:sourceUnits"));
  std::string const targetCurrency = currencyIn("brow:targetCurrency");
  request.End();
  std::vector<std::string> symbols;
  while (sources.HasMore()) symbols.push_back(FilledTextOf(sources.Required("brow:unitSymbol")));
  if (symbols.empty()) {
    for (Row const& row : store.Rows("SELECT symbol FROM unit ORDER BY id")) {
      symbols.push_back(row.Text(0));
    }
  }
  pugi::xml_node converted = response.append_child("unitConversionContexts");
  while (contexts.HasMore()) {
    pugi::xml_node const node = contexts.Required("brow:unitConversionContext");
    UnitContext context = ReadUnitContext(store, node);
    if (context.currency.empty()) context.currency = targetCurrency;
    pugi::xml_node element = converted.append_child("unitConversionContext");
    pugi::xml_node echo = element.append_child("b:UnitConversionContext");
    if (!context.system.empty()) AddText(echo, "b:unitSystem", context.system);
    if (!context.currency.empty()) AddText(echo, "b:currency", context.currency);
    pugi::xml_node conversions = element.append_child("b:Conversions");
    for (std::string const& symbol : symbols) {
      if (!sourceCurrency.empty() && symbol.compare(0, 3, sourceCurrency) != 0 &&
          TargetUnit(store, symbol, context) !=
              TargetUnit(store, symbol, {context.system, "", context.absolute})) {
        continue;  // contains another currency
      }
      pugi::xml_node conversion = conversions.append_child("b:Conversion");
      conversion.append_attribute("sourceSymbol") = symbol.c_str();
      WriteConversion(store, conversion, symbol, TargetUnit(store, symbol, context));
    }
  }
  pugi::xml_node units = response.append_child("sourceUnits");
  for (std::string const& symbol : symbols) {
    pugi::xml_node unit = units.append_child("sourceUnit");
    unit.append_attribute("sourceSymbol") = symbol.c_str();
    for (Row const& row : store.Rows("SELECT symbol FROM unit WHERE dimension = ? ORDER BY id",
                                     {FindUnit(store, symbol).dimension})) {
      WriteConversion(store, unit.append_child("b:Conversion"), symbol, row.Text(0));
    }
  }
}

}  // namespace sandbox
