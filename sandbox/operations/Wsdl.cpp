#include "sandbox/operations/Wsdl.h"

#include <set>

#include "sandbox/operations/Operations.h"

namespace sandbox {
namespace {

constexpr char kWsdl[] = "http://schemas.xmlsoap.org/wsdl/";
constexpr char kWsdlSoap[] = "http://schemas.xmlsoap.org/wsdl/soap/";
constexpr char kSchema[] = "http://www.w3.org/2001/XMLSchema";
constexpr char kHttp[] = "http://schemas.xmlsoap.org/soap/http";

/// Appends an element with one attribute.
pugi::xml_node Add(pugi::xml_node parent, char const* element, char const* attribute,
                   std::string const& value) {
  pugi::xml_node node = parent.append_child(element);
  node.append_attribute(attribute) = value.c_str();
  return node;
}

/// Writes one service, piece by piece in the order of the document.
class Description {
 public:
  Description(Service const& service, std::string const& target)
      : m_name(service.name), m_root(m_document.append_child("wsdl:definitions")) {
    m_root.append_attribute("name") = m_name.c_str();
    m_root.append_attribute("targetNamespace") = target.c_str();
    m_root.append_attribute("xmlns:tns") = target.c_str();
    m_root.append_attribute("xmlns:wsdl") = kWsdl;
    m_root.append_attribute("xmlns:soap") = kWsdlSoap;
    m_root.append_attribute("xmlns:xsd") = kSchema;
    for (Operation const& operation : Operations()) {
      if (operation.service == service.name) m_operations.push_back(&operation);
    }
  }

  void AddElements(std::string const& target) {
    pugi::xml_node schema =
        Add(m_root.append_child("wsdl:types"), "xsd:schema", "targetNamespace", target);
    schema.append_attribute("elementFormDefault") = "qualified";
    std::set<std::string> names;  // some replies share an element
    for (Operation const* operation : m_operations) {
      names.insert(std::string(operation->rootTag));
      names.insert(operation->ResponseTag());
    }
    names.erase("");
    for (std::string const& name : names) {
      Add(schema, "xsd:element", "name", name).append_attribute("type") = "xsd:anyType";
    }
  }

  void AddMessages() {
    for (Operation const* operation : m_operations) {
      AddMessage(*operation, "Request", std::string(operation->rootTag));
      AddMessage(*operation, "Response", operation->ResponseTag());
    }
  }

  void AddPortType() {
    pugi::xml_node portType = Add(m_root, "wsdl:portType", "name", m_name);
    for (Operation const* operation : m_operations) {
      std::string const name(operation->name);
      pugi::xml_node node = Add(portType, "wsdl:operation", "name", name);
      Add(node, "wsdl:input", "message", "tns:" + name + "Request");
      Add(node, "wsdl:output", "message", "tns:" + name + "Response");
    }
  }

  void AddBinding(Namespaces const& namespaces) {
    pugi::xml_node binding = Add(m_root, "wsdl:binding", "name", m_name);
    binding.append_attribute("type") = ("tns:" + m_name).c_str();
    Add(binding, "soap:binding", "transport", kHttp).append_attribute("style") = "document";
    for (Operation const* operation : m_operations) {
      pugi::xml_node node = Add(binding, "wsdl:operation", "name", std::string(operation->name));
      Add(node, "soap:operation", "soapAction", operation->Action(namespaces));
      Add(node.append_child("wsdl:input"), "soap:body", "use", "literal");
      Add(node.append_child("wsdl:output"), "soap:body", "use", "literal");
    }
  }

  void AddAddress(std::string const& url) {
    pugi::xml_node port =
        Add(Add(m_root, "wsdl:service", "name", m_name), "wsdl:port", "name", m_name);
    port.append_attribute("binding") = ("tns:" + m_name).c_str();
    Add(port, "soap:address", "location", url + "/" + m_name + ".svc");
  }

  std::string Text() const { return Print(m_document); }

 private:
  void AddMessage(Operation const& operation, char const* end, std::string const& element) {
    pugi::xml_node message = Add(m_root, "wsdl:message", "name", std::string(operation.name) + end);
    if (element.empty()) return;
    Add(message, "wsdl:part", "name", "body").append_attribute("element") =
        ("tns:" + element).c_str();
  }

  std::string m_name;
  std::vector<Operation const*> m_operations;
  pugi::xml_document m_document;
  pugi::xml_node m_root;
};

}  // namespace

std::string Wsdl(Service const& service, Namespaces const& namespaces, std::string const& url) {
  std::string const target = namespaces.Versioned(service.name);
  Description description(service, target);
  description.AddElements(target);
  description.AddMessages();
  description.AddPortType();
  description.AddBinding(namespaces);
  description.AddAddress(url);
  return description.Text();
}

}  // namespace sandbox
