#pragma once

#include <cstddef>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "lumo/values/ValueClasses.h"

namespace lumo {

/// Several functions as one: a call goes to the one that takes its argument best.
template <class... Function>
struct Overloaded : Function... {
  using Function::operator()...;
};
template <class... Function>
Overloaded(Function...) -> Overloaded<Function...>;

/// Place in `ValueClasses` of the value's class, or of the first one that it is derived from; their
/// number for any other class.
LUMO_API std::size_t PlaceOf(IDataValue const& value);

/// Hands a value, as what it is, to the function that takes its class best, and returns what the
/// function returns. All return the same type.
///
///     std::string const text = lumo::Visit(
///         *value,  //
///         [](RangeDataType const& range) { return std::to_string(range.GetLow()); },
///         [](BinaryDataType const& file) { return file.GetContentType(); },
///         [](IDataValue const&) { return std::string("another value"); });
///
/// A function for a base serves all classes below it. Without one for `IDataValue` every class of
/// `ValueClasses` needs a function that takes it, which the compiler sees to, and a value of a
/// class of the caller's own throws std::invalid_argument.
template <class Value, class... Function>
auto Visit(Value& value, Function... function);

namespace visit_detail {

template <class Value, class Class>
using Like = std::conditional_t<std::is_const_v<Value>, Class const, Class>;

template <class Result, class Class, class Value, class Visitor>
Result CallAs(Value& value, Visitor& visitor) {
  return visitor(static_cast<Like<Value, Class>&>(value));
}

template <class Result, class Value, class Visitor>
Result CallAsOther(Value& value, Visitor& visitor) {
  if constexpr (std::is_invocable_v<Visitor&, Value&>) {
    return visitor(value);
  } else {
    throw std::invalid_argument("no function takes a value of this class");
  }
}

template <class First, class... Rest, class Value, class Visitor>
auto Call(ValueClassList<First, Rest...> /*classes*/, Value& value, Visitor& visitor) {
  using Result = std::invoke_result_t<Visitor&, Like<Value, First>&>;
  static_assert((std::is_same_v<Result, std::invoke_result_t<Visitor&, Like<Value, Rest>&>> && ...),
                "the functions return different types");
  using Caller = Result (*)(Value&, Visitor&);
  static constexpr Caller kCallers[] = {CallAs<Result, First, Value, Visitor>,
                                        CallAs<Result, Rest, Value, Visitor>...,
                                        CallAsOther<Result, Value, Visitor>};
  return kCallers[PlaceOf(value)](value, visitor);
}

}  // namespace visit_detail

template <class Value, class... Function>
auto Visit(Value& value, Function... function) {
  using Base = visit_detail::Like<Value, IDataValue>;
  Overloaded visitor{std::move(function)...};
  return visit_detail::Call(ValueClasses(), static_cast<Base&>(value), visitor);
}

}  // namespace lumo
