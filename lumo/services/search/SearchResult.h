#pragma once

#include <string>

#include "lumo/types/NamedRecord.h"

/// A record that a search found.
class LUMO_API SearchResult : public lumo::FromXml<SearchResult, NamedRecord> {
 public:
  SearchResult() = default;
  explicit SearchResult(XmlNode<char> const* node);

  /// How well the record fits, as the text that the server sends.
  std::string const& GetRanking() const { return m_ranking; }
  void SetRanking(std::string const& ranking) { m_ranking = ranking; }
  /// Name of the color in which the tree shows the record.
  std::string const& GetColor() const { return m_color; }
  void SetColor(std::string const& color) { m_color = color; }
  /// What the record is, as the server says it.
  std::string const& GetType() const { return m_type; }
  void SetType(std::string const& type) { m_type = type; }

 private:
  std::string m_ranking;
  std::string m_color;
  std::string m_type;
};
