#include "sandbox/wire/Soap.h"

#include <sstream>
#include <utility>
#include <vector>

#include "sandbox/Fault.h"
#include "sandbox/wire/Checker.h"
#include "sandbox/wire/WellFormed.h"

namespace sandbox {
namespace {

constexpr char kSoapNamespace[] = "http://schemas.xmlsoap.org/soap/envelope/";
constexpr char kSchemaInstance[] = "http://www.w3.org/2001/XMLSchema-instance";
/// The namespace of the code by which service hosts refuse an action.
constexpr char kAddressing[] = "http://schemas.microsoft.com/ws/2005/05/addressing/none";

using Attributes = std::vector<std::pair<std::string, std::string>>;

void CheckAttributes(pugi::xml_node node, Attributes const& expected) {
  auto attribute = node.attributes_begin();
  for (auto const& [name, value] : expected) {
    if (attribute == node.attributes_end() || attribute->name() != name ||
        attribute->value() != value) {
      throw Fault("<" + std::string(node.name()) + "> must carry " + name + "=\"" + value +
                  "\" in its place");
    }
    ++attribute;
  }
  if (attribute != node.attributes_end()) {
    throw Fault("<" + std::string(node.name()) +
                "> has an attribute too many: " + attribute->name());
  }
}

char const* CodeOf(Blame blame) {
  switch (blame) {
    case Blame::Client: return "s:Client";
    case Blame::Action: return "a:ActionNotSupported";
    case Blame::Server: break;
  }
  return "s:Server";
}

void CheckHeader(pugi::xml_node header) {
  Checker in(header);
  if (auto const flag = in.Optional("header:actAsReadUser"); flag && flag.first_child()) {
    throw Fault("<header:actAsReadUser> must be empty");
  }
  if (auto const name = in.Optional("header:applicationName")) FilledTextOf(name);
  in.End();
}

}  // namespace

Namespaces::Namespaces(std::string base)
    : m_base(base.empty() ? LUMO_NAMESPACE_BASE : std::move(base)) {
  if (m_base.back() != '/') m_base += '/';
}

std::string Namespaces::Versioned(std::string_view name) const {
  return m_base + "16/01/" + std::string(name);
}

pugi::xml_node CheckEnvelope(pugi::xml_document const& document, Service const& service,
                             Namespaces const& namespaces) {
  pugi::xml_node const declaration = document.first_child();
  if (declaration.type() != pugi::node_declaration) throw Fault("the XML declaration is broken");
  CheckAttributes(declaration, {{"version", "1.0"}, {"encoding", "UTF-8"}});

  pugi::xml_node const envelope = declaration.next_sibling();
  if (std::string_view(envelope.name()) != "soapenv:Envelope" || envelope.next_sibling()) {
    throw Fault("the document must hold one <soapenv:Envelope> and nothing else");
  }
  CheckAttributes(envelope,
                  {{"xmlns:zbt", namespaces.Versioned("ZorandBaseTypes")},
                   {"xmlns:soapenv", kSoapNamespace},
                   {"xmlns:xsi", kSchemaInstance},
                   {"xmlns:header", namespaces.Headers()},
                   {"xmlns:" + std::string(service.prefix), namespaces.Versioned(service.name)}});
  Checker in(envelope);
  CheckHeader(in.Required("soapenv:Header"));
  pugi::xml_node const body = in.Required("soapenv:Body");
  in.End();
  return body;
}

pugi::xml_node StartReply(pugi::xml_document& document, Service const& service,
                          Namespaces const& namespaces, std::string const& element) {
  pugi::xml_node envelope = document.append_child("s:Envelope");
  envelope.append_attribute("xmlns:s") = kSoapNamespace;
  pugi::xml_node response = envelope.append_child("s:Body").append_child(element.c_str());
  response.append_attribute("xmlns") = namespaces.Versioned(service.name).c_str();
  response.append_attribute("xmlns:b") = namespaces.Versioned("ZorandBaseTypes").c_str();
  response.append_attribute("xmlns:i") = kSchemaInstance;
  return response;
}

std::string FaultReply(Blame blame, std::string const& text) {
  pugi::xml_document document;
  pugi::xml_node envelope = document.append_child("s:Envelope");
  envelope.append_attribute("xmlns:s") = kSoapNamespace;
  pugi::xml_node fault = envelope.append_child("s:Body").append_child("s:Fault");
  pugi::xml_node code = AddText(fault, "faultcode", CodeOf(blame));
  if (blame == Blame::Action) code.append_attribute("xmlns:a") = kAddressing;
  AddText(fault, "faultstring", Legible(text)).append_attribute("xml:lang") = "en";
  return Print(document);
}

std::string Print(pugi::xml_document const& document) {
  std::ostringstream text;
  document.save(text, "", pugi::format_raw | pugi::format_no_declaration);
  return text.str();
}

pugi::xml_node AddText(pugi::xml_node parent, char const* name, std::string const& text) {
  pugi::xml_node child = parent.append_child(name);
  child.text().set(text.c_str());
  return child;
}

}  // namespace sandbox
