#pragma once

#include <cstring>
#include <memory>
#include <rapidxml/rapidxml.hpp>
#include <string>
#include <vector>

/// Copies the text, which the parser changes, and parses it with bare RapidXML.
class BareParse {
 public:
  /// The text must outlive the object.
  explicit BareParse(std::string const& text) : m_text(text), m_bytes(text.size() + 1) {}
  void operator()() {
    std::memcpy(m_bytes.data(), m_text.c_str(), m_bytes.size());
    m_document->parse<rapidxml::parse_default>(m_bytes.data());
    m_document->clear();
  }

 private:
  std::string const& m_text;
  std::vector<char> m_bytes;
  std::unique_ptr<rapidxml::xml_document<char>> m_document =
      std::make_unique<rapidxml::xml_document<char>>();
};
