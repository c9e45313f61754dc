#include "lumo/values/Visit.h"

#include <typeinfo>

namespace {

template <class... Class>
std::size_t PlaceIn(lumo::ValueClassList<Class...> /*classes*/, IDataValue const& value) {
  std::size_t place = 0;
  if (((typeid(value) == typeid(Class) || (++place, false)) || ...)) return place;
  place = 0;  // a derived class, which takes longer to find
  static_cast<void>(((dynamic_cast<Class const*>(&value) != nullptr || (++place, false)) || ...));
  return place;
}

}  // namespace

std::size_t lumo::PlaceOf(IDataValue const& value) { return PlaceIn(ValueClasses(), value); }
