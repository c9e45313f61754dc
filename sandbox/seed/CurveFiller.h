#pragma once

#include <string>
#include <vector>

#include "sandbox/model/Attributes.h"
#include "sandbox/store/Store.h"

namespace sandbox {

/// Appends what a value begins with that has one unit.
void FillUnit(pugi::xml_node node, std::string const& unit);

/// Fills the elements of points and curves, in the form of an import, from the form of the data
/// files.
class CurveFiller {
 public:
  CurveFiller(Store& store, Attribute const& attribute, std::string dbKey)
      : m_store(store), m_attribute(attribute), m_dbKey(std::move(dbKey)) {}

  void FillPoints(pugi::xml_node node, std::string const& text);
  void FillSeries(pugi::xml_node node, std::string const& text);
  void FillGrid(pugi::xml_node node, std::string const& text);

 private:
  /// In the order in which the attribute names them; the first is the x axis of its curves.
  std::vector<Row> ParametersOfAttribute();
  void FillReference(pugi::xml_node node, std::string const& name);
  void FillParameter(pugi::xml_node node, Row const& parameter);
  void FillParameters(pugi::xml_node node);
  /// "Parameter=value"
  void FillCondition(pugi::xml_node node, std::string const& text);
  void FillConstraints(pugi::xml_node node, std::string const& text);
  void FillCurveHead(pugi::xml_node node);

  Store& m_store;
  Attribute const& m_attribute;
  std::string m_dbKey;
};

}  // namespace sandbox
