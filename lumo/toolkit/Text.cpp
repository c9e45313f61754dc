#include "lumo/toolkit/Text.h"

#include <algorithm>
#include <boost/locale/encoding_utf.hpp>
#include <numeric>
#include <stdexcept>
#include <utility>

#include "lumo/platform/crypto/Base64.h"

namespace lumo {
namespace {

constexpr std::size_t kFewWords = 3;

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

/// Number of letters to change, insert or drop to get from one text to the other.
std::size_t Distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (char const letter : a) {
    std::size_t diagonal = row[0]++;
    for (std::size_t i = 0; i < b.size(); ++i) {
      std::size_t const changed = diagonal + (Lower(letter) == Lower(b[i]) ? 0 : 1);
      diagonal = row[i + 1];
      row[i + 1] = std::min({changed, row[i] + 1, row[i + 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string Lower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = Lower(c);
  return lower;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return Lower(x) == Lower(y); });
}

bool StartsIgnoringCase(std::string_view text, std::string_view beginning) {
  return EqualIgnoringCase(text.substr(0, beginning.size()), beginning);
}

bool CanBeSent(std::string const& text) {
  auto const isControl = [](char c) {
    return static_cast<unsigned char>(c) < 0x20U && c != '\t' && c != '\n' && c != '\r';
  };
  return std::none_of(text.begin(), text.end(), isControl) &&
         boost::locale::conv::utf_to_utf<char>(text) == text;  // which drops what is not UTF-8
}

std::string Joined(std::vector<std::string> const& parts) {
  std::string text;
  for (std::string const& part : parts) text += (text.empty() ? "" : ", ") + part;
  return text;
}

std::string ToBase64(std::vector<std::uint8_t> const& bytes) {
  return Insecure::Crypto_Base64::Encode(
      {reinterpret_cast<char const*>(bytes.data()), bytes.size()});
}

std::optional<std::vector<std::uint8_t>> FromBase64(std::string_view text) {
  try {
    std::string const bytes = Insecure::Crypto_Base64::Decode(text);
    return std::vector<std::uint8_t>(bytes.begin(), bytes.end());
  } catch (std::runtime_error const&) {
    return std::nullopt;
  }
}

std::string Quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

std::vector<std::string> Alike(std::string_view text, std::vector<std::string> const& words) {
  std::vector<std::pair<std::size_t, std::string const*>> near;
  for (std::string const& word : words) {
    std::size_t const distance = Distance(text, word);
    if (distance < text.size() / 3 + 2) near.emplace_back(distance, &word);
  }
  std::stable_sort(near.begin(), near.end(),
                   [](auto const& a, auto const& b) { return a.first < b.first; });
  if (near.size() > kFewWords) near.resize(kFewWords);
  std::vector<std::string> alike;
  alike.reserve(near.size());
  for (auto const& [distance, word] : near) alike.push_back(*word);
  return alike;
}

}  // namespace lumo
