#include "lumo/session/ServiceLayerResponse.h"

#include <memory>

#include "lumo/xml/XMLUtilites.h"

namespace {

constexpr int kSuccess = 200;

/// Text of a message: printed when it is XML, otherwise as it is.
lumo::LazyText PrintedText(SmartPtr<HttpMessageBuffer> const& buffer) {
  if (!buffer) return {};
  return lumo::LazyText([buffer]() -> std::string {
    auto const document = std::make_unique<XmlDocument<char>>();
    bool const isXml = XMLUtilites::Parse(buffer->Begin(), buffer->End(), *document);
    return isXml ? XMLUtilites::Print(*document) : buffer->GetBytes();
  });
}

std::string FaultText(std::string const& reply) {
  auto const document = std::make_unique<XmlDocument<char>>();
  if (!XMLUtilites::Parse(reply.data(), reply.data() + reply.size(), *document)) return {};
  XmlNode<char> const* node = document.get();
  for (char const* name : {"s:Envelope", "s:Body", "s:Fault", "faultstring"}) {
    node = node->first_node(name);
    if (node == nullptr) return {};
  }
  return XMLUtilites::GetText(node);
}

lumo::LazyText FaultOf(lumo::LazyText const& reply, int responseCode) {
  if (responseCode == kSuccess) return {};
  return lumo::LazyText([reply] { return FaultText(reply.Get()); });
}

}  // namespace

ServiceLayerResponse::ServiceLayerResponse(std::string const& responseText, int responseCode)
    : m_responseText(responseText),
      m_responseCode(responseCode),
      m_errorMessage(FaultOf(m_responseText, responseCode)) {}

ServiceLayerResponse::ServiceLayerResponse(SmartPtr<HttpMessageBuffer> const& reply,
                                           int responseCode)
    : m_responseText(PrintedText(reply)),
      m_responseCode(responseCode),
      m_errorMessage(FaultOf(m_responseText, responseCode)) {}

void ServiceLayerResponse::SetRequestBuffer(SmartPtr<HttpMessageBuffer> const& request) {
  m_requestText = PrintedText(request);
}

std::string ServiceLayerResponse::GetErrorMessage() const { return m_errorMessage.Get(); }
