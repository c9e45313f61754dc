#include "lumo/services/search/SearchResult.h"

#include "lumo/xml/NodeReader.h"

SearchResult::SearchResult(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader in(node);
  in.StepOver({"shortName", "fullName", "recordReference"});
  in.Child("ranking", m_ranking);
  in.Attribute("color", m_color);
  in.Attribute("type", m_type);
}
