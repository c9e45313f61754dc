#pragma once

#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "lumo/LumoServiceLayer.h"
#include "lumo/xml/GrowingTree.h"
#include "lumo/xml/NodeReader.h"

/// Parses a text that must be well-formed.
inline std::unique_ptr<XmlDocument<char>> Parsed(std::string const& xml) {
  auto document = std::make_unique<XmlDocument<char>>();
  if (!XMLUtilites::Parse(xml.data(), xml.data() + xml.size(), *document)) {
    throw std::logic_error("test text is not XML: " + std::string(lumo::LastXmlError()));
  }
  return document;
}

/// The attached element <r>, attributes and all, once the object has written into it.
template <class T>
std::string WrittenElement(T const& object) {
  auto const document = std::make_unique<XmlDocument<char>>();
  XmlNode<char>* const root = XMLUtilites::CreateNode("r", "", document.get());
  document->append_node(root);
  object.CreateXMLNode(root);
  return XMLUtilites::Print(*document);
}

/// What the object writes as content of an element.
template <class T>
std::string Written(T const& object) {
  std::string const text = WrittenElement(object);
  return text == "<r/>" ? std::string() : text.substr(3, text.size() - 7);
}

/// Whether the object leaves null and an element outside any document alone.
template <class T>
bool WritesOnlyWhenAttached(T const& object) {
  object.CreateXMLNode(nullptr);
  auto const document = std::make_unique<XmlDocument<char>>();
  XmlNode<char>* const parent = XMLUtilites::CreateNode("p", "", document.get());
  XmlNode<char>* const detached = XMLUtilites::CreateNode("r", "", document.get());
  parent->append_node(detached);
  object.CreateXMLNode(detached);
  return !Written(object).empty() && detached->first_node() == nullptr &&
         detached->first_attribute() == nullptr;
}

/// The object read from the first element of the text, as the content of a reply that is read while
/// it is parsed; null when it must not be.
template <class T>
SmartPtr<T> ReadWhileParsed(std::string const& xml) {
  SmartPtr<T> object;
  auto const read = [&object](XmlNode<char> const* node) { object = T::CreateOne(node); };
  std::string const name(lumo::LocalName(*Parsed(xml)->first_node()));
  std::string const wrapped = std::is_base_of_v<IResponse, T> ? xml : "<list>" + xml + "</list>";
  std::string const reply = "<s:Envelope><s:Body>" + wrapped + "</s:Body></s:Envelope>";
  if constexpr (std::is_base_of_v<IResponse, T>) {
    return lumo::ReadWhileParsed(reply, name, read) ? object : nullptr;
  } else {
    auto const readItem = [&](XmlNode<char> const* list) {
      lumo::NodeReader(list).ForEach(name, [&](XmlNode<char> const& item) { read(&item); });
    };
    return lumo::ReadWhileParsed(reply, "list", readItem) ? object : nullptr;
  }
}

/// The object read from the first element of the text.
template <class T>
SmartPtr<T> Read(std::string const& xml) {
  if (std::getenv("LUMO_TEST_OTHER_READING") != nullptr) {
    if (SmartPtr<T> object = ReadWhileParsed<T>(xml)) return object;
  }
  return T::CreateOne(Parsed(xml)->first_node());
}
