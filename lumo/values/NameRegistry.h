#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lumo/platform/core/SmartPtr.h"
#include "lumo/values/IDataValue.h"

namespace lumo {

/// Type codes by the name of a value's element, used like a map. Every value of a reply is looked
/// up, so the few names lie side by side and are compared by length and first letter before all
/// else.
class LUMO_API NameRegistry {
 public:
  using value_type = std::pair<std::string, std::string>;
  using const_iterator = std::vector<value_type>::const_iterator;

  NameRegistry() = default;
  NameRegistry(std::initializer_list<value_type> entries) : m_entries(entries) {}

  const_iterator begin() const { return m_entries.begin(); }
  const_iterator end() const { return m_entries.end(); }
  std::size_t size() const { return m_entries.size(); }
  bool empty() const { return m_entries.empty(); }
  void clear() { m_entries.clear(); }
  const_iterator find(std::string_view name) const;
  std::size_t count(std::string_view name) const { return find(name) == end() ? 0 : 1; }
  /// Throws std::out_of_range for an unknown name.
  std::string const& at(std::string_view name) const;
  /// The code of the name, which is added when it is unknown.
  std::string& operator[](std::string_view name);
  std::size_t erase(std::string_view name);

 private:
  std::vector<value_type> m_entries;
};

/// The value in `node` by the registry's code for its name, and that code; an empty code when the
/// name is not registered, a null value when no factory knows the code.
struct RegisteredValue {
  std::string_view typeCode;
  SmartPtr<IDataValue> value;
};
RegisteredValue BuildRegistered(NameRegistry const& registry, XmlNode<char> const& node);

/// The value in the first child element of `node`, the only one that is looked at; null when there
/// is none of a registered name.
SmartPtr<IDataValue> BuildFirst(NameRegistry const& registry, XmlNode<char> const& node);

/// The short element names under which values stand in cells and lists.
NameRegistry ShortNames();

}  // namespace lumo
