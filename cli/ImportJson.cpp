#include "cli/ImportJson.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "cli/Failure.h"
#include "cli/Json.h"
#include "lumo/toolkit/Text.h"
#include "lumo/toolkit/TypedText.h"

namespace cli {
namespace {

/// Whether a record with it has no value.
bool IsEmpty(lumo::Value const& value) {
  auto const holdsNone = [](auto const& held) {
    using Held = std::decay_t<decltype(held)>;
    if constexpr (std::is_same_v<Held, std::monostate>) return true;
    if constexpr (std::is_same_v<Held, std::string>) return held.empty();
    if constexpr (std::is_same_v<Held, std::vector<std::string>>) return held.empty();
    if constexpr (std::is_same_v<Held, lumo::Points>) return held.points.empty();
    if constexpr (std::is_same_v<Held, lumo::Curves>) return held.curves.empty();
    if constexpr (std::is_same_v<Held, std::shared_ptr<lumo::Grid const>>)
      return held->rows.empty();
    return false;
  };
  return std::visit(holdsNone, value);
}

class RecordReader {
 public:
  RecordReader(lumo::Table const& table, bool clearsNulls)
      : m_attributes(table.Attributes()), m_clearsNulls(clearsNulls) {}

  lumo::ImportRow Read(Json const& json, std::size_t number) const {
    lumo::ImportRow row;
    row.number = number;
    Try(row, "", [&] { ReadRecord(json, row); });
    return row;
  }

 private:
  template <class Work>
  static void Try(lumo::ImportRow& row, std::string const& attribute, Work work) {
    try {
      work();
    } catch (lumo::Error const& error) {
      if (error.Code() == lumo::ErrorCode::Cancelled) throw;
      row.faults.push_back({attribute, lumo::WhyOf(error, attribute)});
    }
  }

  void ReadRecord(Json const& json, lumo::ImportRow& row) const {
    if (!json.is_object()) Refuse("the record is not an object");
    for (auto const& [name, value] : json.items()) {
      auto const& member = name;  // structured bindings cannot be captured
      auto const& content = value;
      Try(row, "", [&] { ReadMember(member, content, row); });
    }
  }

  void ReadMember(std::string const& name, Json const& value, lumo::ImportRow& row) const {
    if (name == "identity") {
      bool const isNumber = value.is_number_integer() && value >= 0 && value <= 2'147'483'647;
      if (!isNumber) Refuse("\"identity\" is not an identity");
      row.id.identity = value.get<int>();
    } else if (name == "values") {
      if (!value.is_object()) Refuse("\"values\" is not an object");
      for (auto const& [attributeName, content] : value.items()) {
        auto const& one = attributeName;
        auto const& held = content;
        Try(row, one, [&] { ReadValue(one, held, row); });
      }
    } else if (name == "links") {
      if (!value.is_object()) Refuse("\"links\" is not an object");
      for (auto const& [group, content] : value.items()) {
        auto const& one = group;
        auto const& held = content;
        Try(row, "links: " + one, [&] { row.links.push_back({one, NamesIn(held)}); });
      }
    } else if (name == "subsets") {
      Try(row, "subsets", [&] { row.subsets = NamesIn(value); });
    } else {
      std::string* const text = name == "folder"     ? &row.folder
                                : name == "name"     ? &row.name
                                : name == "fullName" ? &row.fullName
                                : name == "guid"     ? &row.id.guid
                                                     : nullptr;
      if (text == nullptr) {
        Refuse("there is no member " + lumo::Quoted(name) + "; values stand in \"values\"");
      }
      if (!value.is_string()) Refuse(lumo::Quoted(name) + " is not a text");
      *text = value.get<std::string>();
    }
  }

  /// Those that a record is to have afterwards, all of them.
  std::vector<std::string> NamesIn(Json const& json) const {
    if (json.is_null() && m_clearsNulls) return {};
    std::vector<std::string> names;
    bool areTexts = json.is_array();
    for (Json const& one : areTexts ? json : Json::array()) {
      areTexts = areTexts && one.is_string();
      if (areTexts) names.push_back(one.get<std::string>());
    }
    if (!areTexts) Refuse("takes a list of names, which is empty for none");
    return names;
  }

  void ReadValue(std::string const& name, Json const& json, lumo::ImportRow& row) const {
    lumo::Attribute const& attribute = lumo::NamedAttribute(m_attributes, name);
    lumo::Value value = ValueOf(json, attribute);
    if (IsEmpty(value)) {
      if (!m_clearsNulls) {
        Refuse(std::string(json.is_null() ? "is null" : "is empty") +
               ", which changes nothing; --clear-nulls takes the value away");
      }
      row.clears.push_back(name);
      return;
    }
    row.values.push_back({name, std::move(value)});
  }

  std::vector<lumo::Attribute> const& m_attributes;
  bool m_clearsNulls;
};

}  // namespace

void AddJson(std::string const& text, bool clearsNulls, lumo::Table const& table,
             lumo::Import& import) {
  RecordReader const reader(table, clearsNulls);
  bool const isArray = text[text.find_first_not_of(" \t\r\n")] == '[';
  if (isArray || Json::accept(text)) {
    Json const all = ParseJson(text);
    if (!isArray) import.Add(reader.Read(all, 1));
    for (std::size_t i = 0; isArray && i < all.size(); ++i) {
      StopWhenInterrupted();
      import.Add(reader.Read(all[i], i + 1));
    }
    return;
  }
  std::istringstream in(text);
  std::size_t number = 0;
  for (std::string line; std::getline(in, line);) {
    ++number;
    StopWhenInterrupted();
    if (lumo::Trimmed(line).empty()) continue;
    try {
      import.Add(reader.Read(ParseJson(line), number));
    } catch (lumo::Error const& error) {
      lumo::ImportRow row;
      row.number = number;
      row.faults.push_back({"", error.what()});
      import.Add(std::move(row));
    }
  }
}

}  // namespace cli
