#include "lumo/values/ValueFactories.h"

#include <type_traits>
#include <utility>

#include "lumo/values/AttributeValue.h"
#include "lumo/values/ValueClasses.h"

namespace {

template <class T, class = void>
struct HasFactory : std::false_type {};
template <class T>
struct HasFactory<T, std::void_t<decltype(T::s_factory)>> : std::true_type {};

/// The classes of this library read with `NodeReader` alone.
template <class T>
class OwnFactory : public TypedDataValueFactory<T> {
 public:
  using TypedDataValueFactory<T>::TypedDataValueFactory;
  bool NeedsWholeTree() const override { return false; }
};

template <class T>
void MakeFactory() {
  if constexpr (HasFactory<T>::value) {
    if (T::s_factory == nullptr) T::s_factory = new OwnFactory<T>(T().GetTypeString());
    // A factory from outside that took the place took the entry along when it died.
    DataValueFactoryNew::s_factories.emplace(T::s_factory->GetTypeCode(), T::s_factory);
  }
}

template <class T>
void DestroyFactory() {
  if constexpr (HasFactory<T>::value) delete std::exchange(T::s_factory, nullptr);
}

template <class... Class>
void MakeFactories(lumo::ValueClassList<Class...> /*classes*/) {
  (MakeFactory<Class>(), ...);
}

template <class... Class>
void DestroyFactories(lumo::ValueClassList<Class...> /*classes*/) {
  (DestroyFactory<Class>(), ...);
}

}  // namespace

void lumo::StartValues() {
  MakeFactories(ValueClasses());
  AttributeValue::RegisterTypes();
  TabularDataCell::RegisterTypes();
  ListDataType::RegisterTypes();
}

void lumo::StopValues() {
  AttributeValue::AccessRegistry().clear();
  TabularDataCell::AccessRegistry().clear();
  ListDataType::AccessRegistry().clear();
  DestroyFactories(ValueClasses());
}
