#pragma once

#include <string>

#include "lumo/platform/core/SmartPtr.h"
#include "lumo/platform/core/SmartPtrTarget_ts.h"
#include "lumo/xml/Xml.h"

/// Base of the typed values that attributes hold. A value is built from its element in a reply by
/// the factory registered for its type code, is shared by pointer, and writes itself into an
/// element that the caller has named after it:
///
///     SmartPtr<IDataValue> value = attributeValue->GetDataValue();
///     if (value) std::cout << value->GetTypeString() << '\n';
class LUMO_API IDataValue : public SmartPtrTarget_ts {
 public:
  using HoldsNothingRead = IDataValue;  ///< derived classes decide whether they load what is common

  /// Writes the value's content; the common attributes below are only read, never written.
  virtual void CreateXMLNode(XmlNode<char>* node) const = 0;
  /// Name of the value's element, without a prefix.
  virtual std::string GetNodeName() const = 0;
  /// Type code, one of `AttributeTypes`.
  virtual std::string GetTypeString() const = 0;
  /// Name of the value's element in an import request.
  virtual std::string GetImportNodeName() const;

  /// Reads the attributes that most value elements carry; what is absent stays as it is. Throws
  /// std::runtime_error for a flag and std::invalid_argument or std::out_of_range for a number that
  /// does not convert.
  void LoadCommonAttributes(XmlNode<char> const* node);

  /// Version of the value; -1 when it carried none.
  int GetDataVersionNumber() const { return m_dataVersionNumber; }
  void SetDataVersionNumber(int number) { m_dataVersionNumber = number; }
  /// Whether the attribute makes no sense for the record, which then has no value.
  bool GetIsNotApplicable() const { return m_isNotApplicable; }
  void SetIsNotApplicable(bool isNotApplicable) { m_isNotApplicable = isNotApplicable; }
  /// Whether the value stands in for one that the record lacks.
  bool GetIsFallback() const { return m_isFallback; }
  void SetIsFallback(bool isFallback) { m_isFallback = isFallback; }
  /// Whether the reply gave a version.
  bool GetHasDataVersionNumber() const { return m_hasDataVersionNumber; }
  void SetHasDataVersionNumber(bool has) { m_hasDataVersionNumber = has; }

 private:
  int m_dataVersionNumber = -1;
  bool m_isNotApplicable = false;
  bool m_isFallback = false;
  bool m_hasDataVersionNumber = false;
};

namespace lumo {

/// The yes/no parser of "isNotApplicable" and of the "Estimated" of curve data. It is kept apart
/// from `BooleanFromText`, whose words and error it shares today.
LUMO_API bool StrictBooleanFromText(std::string const& text);

}  // namespace lumo
