#pragma once

#include <string>

#include "lumo/values/IDataValue.h"
#include "lumo/values/NameRegistry.h"

namespace lumo {

/// The value in `node` by the registry's code for its name, and that code; a null code when the
/// name is not registered, a null value when no factory knows the code.
struct RegisteredValue {
  std::string const* typeCode;  ///< see `KeptTypeCode`
  SmartPtr<IDataValue> value;
};
RegisteredValue BuildRegistered(NameRegistry const& registry, XmlNode<char> const& node);

/// The value in the first child element of `node`, the only one that is looked at; null when there
/// is none of a registered name.
SmartPtr<IDataValue> BuildFirst(NameRegistry const& registry, XmlNode<char> const& node);

/// The short element names under which values stand in cells and lists.
NameRegistry ShortNames();

}  // namespace lumo
