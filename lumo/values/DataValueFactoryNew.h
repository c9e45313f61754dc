#pragma once

#include <string>
#include <unordered_map>

#include "lumo/platform/core/NoCopy.h"
#include "lumo/values/IDataValue.h"
#include "lumo/values/NameRegistry.h"

/// Builds values of one type from their elements. A factory enters itself into `s_factories` when
/// it is made and leaves when it is destroyed; library start-up makes one per value class.
class LUMO_API DataValueFactoryNew : public NoCopy {
 public:
  /// Factories by type code.
  using Table = std::unordered_map<std::string, DataValueFactoryNew*, lumo::NameHash>;
  /// Every live factory by its type code. Not locked: it changes only while no call runs.
  static Table s_factories;

  /// Registers the factory under this type code.
  explicit DataValueFactoryNew(std::string const& typeCode);
  virtual ~DataValueFactoryNew();
  /// The value that `node` holds; null when it holds none.
  virtual SmartPtr<IDataValue> CreateInstance(XmlNode<char> const* node) = 0;
  /// Whether `node` must be part of a reply's whole tree as RapidXML makes it, which takes more
  /// time and memory. A factory that reads with `lumo::NodeReader` alone may say no.
  virtual bool NeedsWholeTree() const { return true; }
  /// See `AttributeTypes`.
  std::string const& GetTypeCode() const { return m_typeCode; }

 private:
  std::string const& m_typeCode;  // kept as long as the process
};

/// The factory of value class `T`, which has a static `CreateOne(node)`.
template <class T>
class TypedDataValueFactory : public DataValueFactoryNew {
 public:
  using DataValueFactoryNew::DataValueFactoryNew;
  SmartPtr<IDataValue> CreateInstance(XmlNode<char> const* node) override {
    return T::CreateOne(node);
  }
};
