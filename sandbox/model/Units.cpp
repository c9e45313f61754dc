#include "sandbox/model/Units.h"

#include "sandbox/Fault.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {
/// base = value * factor + offset, in the base unit of the dimension.
Unit FindUnit(Store& store, std::string const& symbol) {
  auto const rows =
      store.Rows("SELECT dimension, factor, offset FROM unit WHERE symbol = ?", {symbol});
  if (rows.empty()) throw Fault("there is no unit \"" + symbol + "\"");
  return {rows[0].Text(0), rows[0].Real(1), rows[0].Real(2)};
}

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

void WriteUnit(Store& store, pugi::xml_node node, std::string const& symbol) {
  auto const rows = store.Rows("SELECT name FROM unit WHERE symbol = ?", {symbol});
  AddText(node, "b:UnitName", rows.empty() ? symbol : rows[0].Text(0));
  AddText(node, "b:UnitSymbol", symbol);
}

}  // namespace sandbox
