#pragma once

#include <string>

#include "lumo/types/AttributeIdentifier.h"
#include "lumo/values/IDataValue.h"
#include "lumo/values/NameRegistry.h"

/// Value of one attribute of a record. Lists, links and empty values do not occur here: such an
/// element counts as unsupported.
class LUMO_API AttributeValue : public lumo::FromXml<AttributeValue, AttributeIdentifier> {
 public:
  /// Type codes by the name of a value element; filled by library start-up, emptied by shut-down.
  static lumo::NameRegistry s_factory;
  /// See `s_factory`.
  static lumo::NameRegistry& AccessRegistry() { return s_factory; }
  static void RegisterTypes();

  AttributeValue();
  explicit AttributeValue(XmlNode<char> const* node);

  /// The value in an element of a record; null when it does not name its attribute or holds no
  /// value of a known type.
  static SmartPtr<AttributeValue> CreateOneOfRecord(XmlNode<char> const& node);

  /// Type code of the value, "UNSUPPORTED DATA TYPE" when none was recognised.
  std::string const& GetDataType() const { return *m_dataType; }
  /// Whether the reply held a value of a known type, even if it could not be built.
  bool IsSupported() const;
  /// Null when the reply held no value of a known type.
  SmartPtr<IDataValue> GetDataValue() const { return m_dataValue; }
  /// Shares `value`, which may be null; the data type stays as it is.
  void SetDataValue(IDataValue* value) { m_dataValue = value; }

 private:
  void ReadValue(lumo::NodeReader const& in);

  std::string const* m_dataType;  // never null; kept as long as the process
  SmartPtr<IDataValue> m_dataValue;
};
