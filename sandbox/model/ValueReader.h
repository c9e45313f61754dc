#pragma once

#include <string>
#include <vector>

#include "sandbox/model/FigureReader.h"
#include "sandbox/model/Values.h"

namespace sandbox {

/// Turns the content of one value from the form of an import into that of a reply, and collects
/// what searches look at.
class ValueReader {
 public:
  ValueReader(Store& store, Attribute const& attribute, StoredValue& value)
      : m_store(store), m_attribute(attribute), m_value(value), m_figures(store, attribute) {}

  /// `kind` is the name of the value's element without "DataValue".
  void Read(std::string const& kind, pugi::xml_node from, pugi::xml_node to);

 private:
  void ReadKind(std::string const& kind, pugi::xml_node from, pugi::xml_node to);
  /// Reads estimate and unit, and writes what replies begin with; returns the unit that was sent.
  std::string ReadUnit(Checker& in, pugi::xml_node to);
  void ReadRange(pugi::xml_node from, pugi::xml_node to);
  void ReadPoint(pugi::xml_node from, pugi::xml_node to);
  void ReadDiscrete(pugi::xml_node from, pugi::xml_node to);
  void ReadTexts(pugi::xml_node from, pugi::xml_node to, std::vector<std::string> const& names);

  Store& m_store;
  Attribute const& m_attribute;
  StoredValue& m_value;
  FigureReader m_figures;
};

}  // namespace sandbox
