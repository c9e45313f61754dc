#include "lumo/session/ServiceLayerResponse.h"

#include <initializer_list>
#include <memory>
#include <utility>

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/Print.h"

namespace {

constexpr int kSuccess = 200;
constexpr int kLocalFailure = 500;

/// Text of a message: printed when it is XML, otherwise as it is.
lumo::LazyText PrintedText(SmartPtr<HttpMessageBuffer> const& buffer) {
  if (!buffer) return {};
  return lumo::LazyText([buffer]() -> std::string {
    std::string text;
    if (lumo::PrintPlain(buffer->GetBytes(), text)) return text;
    auto const document = std::make_unique<XmlDocument<char>>();
    bool const isXml = lumo::ParseXml(buffer->Begin(), buffer->End(), *document);
    return isXml ? XMLUtilites::Print(*document) : buffer->GetBytes();
  });
}

/// The fault in an envelope with the prefix of our servers, which `GetErrorMessage` asks for.
XmlNode<char> const* OwnFault(XmlDocument<char> const& reply) {
  XmlNode<char> const* node = &reply;
  for (char const* const name : {"s:Envelope", "s:Body", "s:Fault"}) {
    if (node != nullptr) node = node->first_node(name);
  }
  return node;
}

/// The fault in any envelope, such as a gateway sends.
XmlNode<char> const* AnyFault(XmlDocument<char> const& reply) {
  XmlNode<char> const* node = &reply;
  for (char const* const name : {"Envelope", "Body", "Fault"}) {
    node = XMLUtilites::GetNode(name, node);
  }
  return node;
}

/// The text with every run of white space and control characters as one blank.
std::string OneLine(std::string const& text) {
  std::string line;
  for (char const c : text) {
    bool const isBlank = static_cast<unsigned char>(c) <= ' ' || c == '\x7F';
    if (!isBlank) {
      line += c;
    } else if (!line.empty() && line.back() != ' ') {
      line += ' ';
    }
  }
  if (!line.empty() && line.back() == ' ') line.pop_back();
  return line;
}

}  // namespace

ServiceLayerResponse::ServiceLayerResponse(std::string const& responseText, int responseCode)
    : m_responseCode(responseCode), m_responseText(responseText) {
  auto const document = std::make_unique<XmlDocument<char>>();
  char const* const text = responseText.data();
  bool const isXml = lumo::ParseXml(text, text + responseText.size(), *document);
  if (SetFault("", *document)) return;
  if (responseCode != kSuccess) {
    SetOutcome(CallOutcomes::OtherStatus, "", "status " + std::to_string(responseCode));
  } else if (!isXml) {
    SetOutcome(CallOutcomes::NotUnderstood, "", "not well-formed XML");
  } else {
    SetOutcome(CallOutcomes::Success, "", "");
  }
}

std::string ServiceLayerResponse::ErrorText() const {
  return m_outcome == CallOutcomes::NotSet ? "no call was made" : m_errorText;
}

HttpReport const& ServiceLayerResponse::GetHttpReport() const {
  static HttpReport const kNone;
  return m_exchange ? *m_exchange->GetReport() : kNone;
}

void ServiceLayerResponse::SetRequestBuffer(SmartPtr<HttpMessageBuffer> const& request) {
  m_requestText = PrintedText(request);
}

void ServiceLayerResponse::SetReply(SmartPtr<HttpMessageBuffer> const& reply, int responseCode) {
  m_responseText = PrintedText(reply);
  m_responseCode = responseCode;
}

void ServiceLayerResponse::SetNoReply(std::string const& operation,
                                      std::string const& transportError) {
  m_responseText = lumo::LazyText(operation + " FAILED");
  m_responseCode = kLocalFailure;
  m_transportError = transportError;
  SetOutcome(CallOutcomes::NoReply, operation,
             transportError.empty() ? "no reply" : "no reply: " + transportError);
}

bool ServiceLayerResponse::SetFault(std::string const& operation, XmlDocument<char> const& reply) {
  XmlNode<char> const* const own = OwnFault(reply);
  XmlNode<char> const* const fault = own != nullptr ? own : AnyFault(reply);
  if (fault == nullptr) return false;
  lumo::NodeReader in(fault);
  in.Child("faultcode", m_faultCode);
  in.Child("faultstring", m_faultText);
  m_faultDetail = lumo::PrintContent(XMLUtilites::GetNode("detail", fault));
  bool const hasSuccess = m_responseCode == kSuccess;
  if (own != nullptr && !hasSuccess) {
    m_errorMessage = XMLUtilites::GetText(own->first_node("faultstring"));
  }
  std::string said = OneLine(m_faultText);
  if (said.empty()) said = OneLine(m_faultCode);
  if (said.empty()) said = "status " + std::to_string(m_responseCode);
  SetOutcome(hasSuccess ? CallOutcomes::FaultInSuccess : CallOutcomes::Fault, operation,
             "the server reports a fault: " + said);
  return true;
}

void ServiceLayerResponse::SetOutcome(CallOutcomes::eCallOutcome outcome,
                                      std::string const& operation, std::string const& what) {
  m_outcome = outcome;
  m_errorText = OneLine(operation.empty() || what.empty() ? what : operation + ": " + what);
}
