#pragma once

#include <limits>
#include <string>
#include <string_view>

#include "lumo/values/AttributeTypes.h"
#include "lumo/values/DataValue.h"
#include "lumo/values/UnittedRealDataType.h"

/// A range of figures, perhaps open at one end or both. A bound that is not set is the signalling
/// NaN by default and is sent as "NaN".
class LUMO_API RangeDataType : public lumo::DataValue<RangeDataType, UnittedRealDataType> {
 public:
  RangeDataType() = default;
  explicit RangeDataType(XmlNode<char> const* node);
  std::string GetNodeName() const override { return "RangeDataValue"; }
  std::string GetTypeString() const override { return AttributeTypes::RANGE_TYPE_STRING; }

  /// The bound; of no meaning unless it is set.
  double GetLow() const { return m_low.value; }
  /// Stores the bound and marks it as set; a NaN marks it as not set, also when the caller is
  /// compiled for numbers that are never NaN.
  void SetLow(double low);
  /// Whether there is a lower bound.
  bool GetLowSet() const { return m_low.isSet; }
  void SetLowSet(bool isSet) { m_low.isSet = isSet; }
  /// As `GetLow`.
  double GetHigh() const { return m_high.value; }
  /// As `SetLow`.
  void SetHigh(double high);
  /// Whether there is an upper bound.
  bool GetHighSet() const { return m_high.isSet; }
  void SetHighSet(bool isSet) { m_high.isSet = isSet; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  struct Bound {
    double value = std::numeric_limits<double>::signaling_NaN();
    bool isSet = false;
  };
  static Bound ReadBound(lumo::NodeReader& in, std::string_view name);
  static void WriteBound(lumo::NodeWriter& out, std::string_view name, Bound const& bound);

  Bound m_low;
  Bound m_high;
};
