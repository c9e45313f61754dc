#include "Units.h"

#include "Operations.h"
#include "References.h"
#include "Soap.h"

namespace sandbox {
namespace {

struct Unit {
  std::string dimension;
  double factor = 1;
  double offset = 0;
};

/// base = value * factor + offset, in the base unit of the dimension.
Unit FindUnit(Store& store, std::string const& symbol) {
  auto const rows =
      store.Rows("SELECT dimension, factor, offset FROM unit WHERE symbol = ?", {symbol});
  if (rows.empty()) throw Fault("there is no unit \"" + symbol + "\"");
  return {rows[0].Text(0), rows[0].Real(1), rows[0].Real(2)};
}

void WriteConversion(Store& store, pugi::xml_node conversion, std::string const& from,
                     std::string const& to) {
  Unit const source = FindUnit(store, from);
  Unit const target = FindUnit(store, to);
  conversion.append_attribute("targetSymbol") = to.c_str();
  AddText(conversion, "b:Factor", TextOfNumber(source.factor / target.factor));
  double const offset = (source.offset - target.offset) / target.factor;
  if (offset != 0) AddText(conversion, "b:Offset", TextOfNumber(offset));
}

void WriteCurrencies(Store& store, pugi::xml_node parent) {
  for (Row const& row : store.Rows("SELECT code, name, factor FROM currency ORDER BY code")) {
    pugi::xml_node currency = parent.append_child("currency");
    AddText(currency, "code", row.Text(0));
    AddText(currency, "name", row.Text(1));
    AddText(currency, "factor", row.Text(2));
  }
}

}  // namespace

UnitContext ReadUnitContext(Store& store, pugi::xml_node node) {
  UnitContext context;
  if (!node) return context;
  Checker in(node);
  if (auto const system = in.Optional("zbt:unitSystem")) {
    context.system = FilledTextOf(system);
    if (store.Rows("SELECT 1 FROM unit_system WHERE name = ?", {context.system}).empty()) {
      throw Fault("there is no unit system \"" + context.system + "\"");
    }
  }
  if (auto const currency = in.Optional("zbt:currency")) {
    context.currency = FilledTextOf(currency);
    if (store.Rows("SELECT 1 FROM currency WHERE code = ?", {context.currency}).empty()) {
      throw Fault("there is no currency \"" + context.currency + "\"");
    }
  }
  if (auto const absolute = in.Optional("zbt:absoluteUnits")) {
    context.absolute = BooleanOf(absolute);
  }
  in.End();
  return context;
}

std::string TargetUnit(Store& store, std::string const& unit, UnitContext const& context) {
  if (unit.empty()) return unit;
  std::string target = unit;
  auto const mapped = store.Rows(
      "SELECT m.symbol FROM unit_system_unit m JOIN unit u ON u.dimension = m.dimension"
      " WHERE m.system = ? AND u.symbol = ?",
      {context.system, unit});
  if (!mapped.empty()) target = mapped[0].Text(0);
  if (context.absolute && FindUnit(store, target).dimension == "temperature") {
    target = target == "degF" ? "degR" : "K";
  }
  bool const hasCurrency =
      !store.Rows("SELECT 1 FROM unit WHERE symbol = ? AND has_currency = 1", {target}).empty();
  if (hasCurrency && !context.currency.empty()) target = context.currency + target.substr(3);
  return target;
}

double Convert(Store& store, double value, std::string const& from, std::string const& to) {
  if (from == to || from.empty()) return value;
  Unit const source = FindUnit(store, from);
  Unit const target = FindUnit(store, to);
  if (source.dimension != target.dimension) {
    throw Fault("the unit \"" + from + "\" does not fit \"" + to + "\"");
  }
  return (value * source.factor + source.offset - target.offset) / target.factor;
}

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

void GetCurrencies(Store& store, Checker& /*request*/, pugi::xml_node response) {
  WriteCurrencies(store, response);
}

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
