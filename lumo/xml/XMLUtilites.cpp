#include "lumo/xml/XMLUtilites.h"

#include "lumo/xml/ConvertTo.h"
#include "lumo/xml/GrowingTree.h"
#include "lumo/xml/Make.h"
#include "lumo/xml/Namespaces.h"

namespace {

/// The first with that local name, which callers may give with a ":": what lies before the first
/// one of a document's name is its prefix.
template <class Item>
Item* FirstOf(Item* item, std::string_view name) {
  while (item != nullptr && lumo::LocalName(*item) != name) item = lumo::NextOf(*item);
  return item;
}

XmlNode<char>* FirstChild(XmlNode<char> const* parent, std::string_view name) {
  return parent == nullptr ? nullptr : FirstOf(lumo::FirstChild(*parent), name);
}

XmlNode<char>* MakeNode(std::string_view name, std::string_view value,
                        XmlDocument<char>* document) {
  return document == nullptr ? nullptr : lumo::MakeNode(name, value, *document);
}

XmlAttribute<char>* MakeAttr(std::string_view name, std::string_view value,
                             XmlDocument<char>* document) {
  return document == nullptr ? nullptr : lumo::MakeAttribute(name, value, *document);
}

}  // namespace

std::string XMLUtilites::GetName(XmlBase<char> const* item) {
  return item == nullptr ? std::string() : std::string(lumo::LocalName(*item));
}

XmlNode<char>* XMLUtilites::GetNode(std::string const& name, XmlNode<char> const* parent) {
  return FirstChild(parent, name);
}

XmlNode<char>* XMLUtilites::GetNode(std::string const& name, XmlDocument<char> const* document) {
  return FirstChild(document, name);
}

void XMLUtilites::GetNodes(std::string const& name, XmlNode<char> const* parent,
                           std::vector<XmlNode<char> const*>& out) {
  auto* child = FirstChild(parent, name);
  for (; child != nullptr; child = FirstOf(child->next_sibling(), name)) out.push_back(child);
}

XmlAttribute<char>* XMLUtilites::GetAttr(std::string const& name, XmlNode<char> const* node) {
  return node == nullptr ? nullptr : FirstOf(node->first_attribute(), name);
}

std::string XMLUtilites::GetText(XmlNode<char> const* node) {
  if (node == nullptr) return {};
  XmlNode<char> const* child = lumo::FirstChild(*node);
  if (child == nullptr) return std::string(lumo::RawValue(*node));
  std::string text;
  for (; child != nullptr; child = child->next_sibling()) {
    if (child->type() == rapidxml::node_data || child->type() == rapidxml::node_cdata) {
      text += lumo::RawValue(*child);
    }
  }
  return text;
}

XmlNode<char>* XMLUtilites::CreateNode(std::string const& name, std::string const& value,
                                       XmlDocument<char>* document) {
  return MakeNode(name, value, document);
}

XmlNode<char>* XMLUtilites::CreateNode(std::string const& name, int value,
                                       XmlDocument<char>* document) {
  return MakeNode(name, lumo::NumberText(value), document);
}

XmlNode<char>* XMLUtilites::CreateNode(std::string const& name, double value,
                                       XmlDocument<char>* document) {
  return MakeNode(name, lumo::NumberText(value), document);
}

XmlAttribute<char>* XMLUtilites::CreateAttr(std::string const& name, std::string const& value,
                                            XmlDocument<char>* document) {
  return MakeAttr(name, value, document);
}

XmlAttribute<char>* XMLUtilites::CreateAttr(std::string const& name, int value,
                                            XmlDocument<char>* document) {
  return MakeAttr(name, lumo::NumberText(value), document);
}

XmlAttribute<char>* XMLUtilites::CreateAttr(std::string const& name, double value,
                                            XmlDocument<char>* document) {
  return MakeAttr(name, lumo::NumberText(value), document);
}

XmlNode<char>* XMLUtilites::CreateSOAPHeader(XmlDocument<char>* document,
                                             std::string const& baseTypesNamespace) {
  return CreateSOAPHeader(document, baseTypesNamespace,
                          std::string(lumo::VendorNamespaceBase()) + "headers");
}

XmlNode<char>* XMLUtilites::CreateSOAPHeader(XmlDocument<char>* document,
                                             std::string const& baseTypesNamespace,
                                             std::string const& headerNamespace) {
  if (document == nullptr) return nullptr;
  XmlNode<char>* declaration = document->allocate_node(rapidxml::node_declaration);
  declaration->append_attribute(MakeAttr("version", "1.0", document));
  declaration->append_attribute(MakeAttr("encoding", "UTF-8", document));
  document->append_node(declaration);

  XmlNode<char>* envelope = MakeNode("soapenv:Envelope", "", document);
  envelope->append_attribute(MakeAttr("xmlns:zbt", baseTypesNamespace, document));
  envelope->append_attribute(MakeAttr("xmlns:soapenv", lumo::kSoapEnvelopeNamespace, document));
  envelope->append_attribute(MakeAttr("xmlns:xsi", lumo::kSchemaInstanceNamespace, document));
  envelope->append_attribute(MakeAttr("xmlns:header", headerNamespace, document));
  document->append_node(envelope);
  return envelope;
}
