#include "lumo/toolkit/ValueBytes.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

#include "lumo/toolkit/Error.h"
#include "lumo/toolkit/Numbers.h"

namespace lumo {
namespace {

/// The fields of each class, for whatever goes through them.
struct Fields {
  template <class Archive, class T>
  static void Of(Archive& all, T& v) {
    using Class = std::remove_const_t<T>;
    if constexpr (std::is_same_v<Class, RecordId>) {
      all(v.database, v.identity, v.guid);
    } else if constexpr (std::is_same_v<Class, DateTime>) {
      all(v.text);
    } else if constexpr (std::is_same_v<Class, Quantity>) {
      all(v.value, v.unit, v.estimated);
    } else if constexpr (std::is_same_v<Class, Range>) {
      all(v.low, v.high, v.unit, v.estimated);
    } else if constexpr (std::is_same_v<Class, Parameter>) {
      all(v.name, v.value, v.unit);
    } else if constexpr (std::is_same_v<Class, Point>) {
      all(v.value, v.parameters);
    } else if constexpr (std::is_same_v<Class, Points>) {
      all(v.points, v.unit, v.estimated);
    } else if constexpr (std::is_same_v<Class, Curve>) {
      all(v.xName, v.xUnit, v.yUnit, v.x, v.y, v.yHigh, v.xWords, v.estimated, v.parameters,
          v.interpolation, v.xIsLogarithmic);
    } else if constexpr (std::is_same_v<Class, Curves>) {
      all(v.curves, v.isGridded, v.isHidden, v.isLogarithmic);
    } else if constexpr (std::is_same_v<Class, Link>) {
      all(v.url, v.description);
    } else if constexpr (std::is_same_v<Class, File>) {
      all(v.name, v.contentType, v.description, v.url, v.data);
    } else if constexpr (std::is_same_v<Class, LinkedRecords::Group>) {
      all(v.name, v.records);
    } else if constexpr (std::is_same_v<Class, LinkedRecords>) {
      all(v.groups);
    } else if constexpr (std::is_same_v<Class, Grid::Column>) {
      all(v.name, v.unit);
    } else if constexpr (std::is_same_v<Class, Grid::Row>) {
      all(v.cells, v.linkingValue, v.links);
    } else if constexpr (std::is_same_v<Class, Grid>) {
      all(v.columns, v.rows);
    } else if constexpr (std::is_same_v<Class, List>) {
      all(v.items);
    } else {
      static_assert(std::is_empty_v<Class>);
    }
  }
};

template <class T>
constexpr bool kIsPlain = std::is_arithmetic_v<T> || std::is_enum_v<T>;

class Writer {
 public:
  /// `isExact` keeps each bit of a figure, otherwise what arithmetic left behind is dropped.
  explicit Writer(bool isExact) : m_isExact(isExact) {}

  template <class... T>
  void operator()(T const&... fields) {
    (Put(fields), ...);
  }
  std::string Take() { return std::move(m_bytes); }

 private:
  template <class T>
  void Put(T const& v) {
    if constexpr (kIsPlain<T>) {
      char bytes[sizeof v];
      std::memcpy(bytes, &v, sizeof v);
      m_bytes.append(bytes, sizeof v);
    } else {
      Fields::Of(*this, v);
    }
  }
  void Put(double v) {
    if (m_isExact) return Put<double>(v);
    Put(std::isfinite(v) ? lumo::TextOf(v == 0 ? 0.0 : v)
                         : std::string(1, std::isnan(v) ? '?' : '*'));
  }
  void Put(std::string const& v) {
    Put(v.size());
    m_bytes += v;
  }
  template <class T>
  void Put(std::vector<T> const& v) {
    Put(v.size());
    for (auto const& one : v) Put(static_cast<T const&>(one));
  }
  template <class T>
  void Put(std::optional<T> const& v) {
    Put(v.has_value());
    if (v) Put(*v);
  }
  template <class T>
  void Put(std::shared_ptr<T const> const& v) {
    Put(bool(v));
    if (v) Put(*v);
  }
  template <class... T>
  void Put(std::variant<T...> const& v) {
    Put(v.index());
    std::visit([this](auto const& held) { this->Put(held); }, v);
  }

  bool m_isExact;
  std::string m_bytes;
};

class Reader {
 public:
  explicit Reader(std::string_view bytes) : m_rest(bytes) {}

  template <class... T>
  void operator()(T&... fields) {
    (Get(fields), ...);
  }
  bool IsAtEnd() const { return m_rest.empty(); }

 private:
  [[noreturn]] static void Refuse() {
    throw Error(ErrorCode::NotUnderstood, "these are not the bytes of a value");
  }
  std::string_view Next(std::size_t size) {
    if (size > m_rest.size()) Refuse();
    std::string_view const bytes = m_rest.substr(0, size);
    m_rest.remove_prefix(size);
    return bytes;
  }
  std::size_t Size() {
    std::size_t size = 0;
    Get(size);
    if (size > m_rest.size()) Refuse();  // an item takes a byte at least
    return size;
  }
  template <class T>
  void Get(T& v) {
    if constexpr (kIsPlain<T>) {
      std::memcpy(&v, Next(sizeof v).data(), sizeof v);
    } else {
      Fields::Of(*this, v);
    }
  }
  void Get(std::string& v) { v = Next(Size()); }
  template <class T>
  void Get(std::vector<T>& v) {
    for (std::size_t left = Size(); left > 0; --left) {
      T one{};
      Get(one);
      v.push_back(std::move(one));
    }
  }
  template <class T>
  void Get(std::optional<T>& v) {
    bool isSet = false;
    Get(isSet);
    if (isSet) Get(v.emplace());
  }
  template <class T>
  void Get(std::shared_ptr<T const>& v) {
    bool isSet = false;
    Get(isSet);
    if (!isSet) return;
    auto made = std::make_shared<T>();
    Get(*made);
    v = std::move(made);
  }
  template <class... T>
  void Get(std::variant<T...>& v) {
    std::size_t index = 0;
    Get(index);
    if (index >= sizeof...(T)) Refuse();
    Emplace(v, index, std::index_sequence_for<T...>());
  }
  template <class Variant, std::size_t... I>
  void Emplace(Variant& v, std::size_t index, std::index_sequence<I...> /*places*/) {
    ((I == index ? Get(v.template emplace<I>()) : void()), ...);
  }

  std::string_view m_rest;
};

constexpr std::size_t kLongestText = 60;

std::string Shortened(std::string text) {
  if (text.size() <= kLongestText) return text;
  std::size_t end = kLongestText;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  return text.substr(0, end) + "...";
}

std::string Count(std::size_t count, std::string const& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

/// What is told of a value.
struct Words {
  static std::string WithUnit(std::string figure, std::string const& unit, bool estimated) {
    return (estimated ? "~" : "") + std::move(figure) + (unit.empty() ? "" : " " + unit);
  }
  std::string operator()(std::monostate /*v*/) const { return ""; }
  std::string operator()(NotApplicable /*v*/) const { return "not applicable"; }
  std::string operator()(std::string const& v) const { return Shortened(v); }
  std::string operator()(DateTime const& v) const { return v.text; }
  std::string operator()(std::int64_t v) const { return std::to_string(v); }
  std::string operator()(bool v) const { return v ? "yes" : "no"; }
  std::string operator()(Quantity const& v) const {
    return WithUnit(lumo::TextOf(v.value), v.unit, v.estimated);
  }
  std::string operator()(Range const& v) const {
    std::string const low = v.low ? lumo::TextOf(*v.low) : "";
    std::string const high = v.high ? lumo::TextOf(*v.high) : "";
    return WithUnit(low == high ? low : low + ".." + high, v.unit, v.estimated);
  }
  std::string operator()(Points const& v) const { return Count(v.points.size(), "point"); }
  std::string operator()(std::vector<std::string> const& v) const {
    std::string text;
    for (std::string const& word : v) text += (text.empty() ? "" : "; ") + word;
    return text;
  }
  std::string operator()(Curves const& v) const { return Count(v.curves.size(), "curve"); }
  std::string operator()(Link const& v) const { return Shortened(v.url); }
  std::string operator()(File const& v) const {
    return (v.name.empty() ? v.contentType : v.name) + " (" + Count(v.data.size(), "byte") + ")";
  }
  std::string operator()(std::shared_ptr<Grid const> const& v) const {
    return v ? Count(v->rows.size(), "row") : "";
  }
  std::string operator()(std::shared_ptr<List const> const& v) const {
    return v ? Count(v->items.size(), "value") : "";
  }
  std::string operator()(LinkedRecords const& v) const { return Count(v.groups.size(), "group"); }
};

}  // namespace

std::string BytesOf(Value const& value) {
  Writer writer(true);
  writer(value);
  return writer.Take();
}

Value ValueFromBytes(std::string_view bytes) {
  Reader reader(bytes);
  Value value;
  reader(value);
  if (!reader.IsAtEnd()) throw Error(ErrorCode::NotUnderstood, "the value has bytes behind it");
  return value;
}

bool MeansTheSame(Value const& a, Value const& b, Attribute const& attribute, Units const& units) {
  auto const bytes = [&](Value const& value) {
    Writer writer(false);
    writer(AsKept(value, attribute, units));
    return writer.Take();
  };
  return bytes(a) == bytes(b);
}

std::string TextOf(Value const& value) { return std::visit(Words(), value); }

}  // namespace lumo
