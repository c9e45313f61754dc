#include "lumo/session/OperationBase.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <new>
#include <string_view>

#include "lumo/platform/core/Time.h"
#include "lumo/xml/NodeWriter.h"
#include "lumo/xml/XMLUtilites.h"

namespace {

constexpr int kTimingLevel = 3;
constexpr std::size_t kBeginning = 80;

/// Six decimals, whatever the process locale.
std::string SecondsText(double seconds) {
  char text[64];
  auto const end =
      std::to_chars(std::begin(text), std::end(text), seconds, std::chars_format::fixed, 6).ptr;
  return {text, static_cast<std::size_t>(end - text)};
}

/// The beginning of a reply, for an error text, cut between two characters of UTF-8.
std::string_view Beginning(HttpMessageBuffer const& reply) {
  std::string const& bytes = reply.GetBytes();
  std::size_t end = std::min(bytes.size(), kBeginning);
  auto const continues = [&bytes](std::size_t at) {
    return at < bytes.size() && (static_cast<unsigned char>(bytes[at]) & 0xC0) == 0x80;
  };
  while (end != 0 && continues(end)) --end;
  return std::string_view(bytes).substr(0, end);
}

}  // namespace

OperationBase::OperationBase(LumoSession* session, std::string const& serviceNamespace,
                             std::string const& prefix)
    : m_session(session), m_namespace(serviceNamespace), m_prefix(prefix) {
  if (session == nullptr) return;
  m_baseTypesNamespace = session->GetZorandBaseTypeDefinition();
  m_headerNamespace = session->GetNamespaceBase() + "headers";
  m_actAsReadUser = session->GetActAsReadUser();
  m_applicationName = session->GetApplicationName();
}

std::string OperationBase::GetRootTagName() const { return GetOperationName(); }

std::string OperationBase::GetResponseTagName() const { return GetOperationName() + "Response"; }

SmartPtr<HttpMessage> OperationBase::BuildRequestHandle(SmartPtr<IRequest> const& request) const {
  auto message = HttpMessage::CreateOne();
  message->SetIsWrite(m_isWrite);
  BuildRequest(message, request);
  return message;
}

void OperationBase::BuildRequest(SmartPtr<HttpMessage> const& message,
                                 SmartPtr<IRequest> const& request) const {
  if (m_session == nullptr || !message) return;  // nothing can be sent
  m_session->FillRequestHeaders(message, m_namespace + "/" + GetOperationName() + "Request");

  auto const document = std::make_unique<XmlDocument<char>>();
  XmlNode<char>* const envelopeNode =
      XMLUtilites::CreateSOAPHeader(document.get(), m_baseTypesNamespace, m_headerNamespace);
  lumo::NodeWriter envelope(envelopeNode);
  envelope.Attribute("xmlns:" + m_prefix, m_namespace);
  PopulateHeaderNode(envelope.Into("soapenv:Header").Node(), document.get());
  lumo::NodeWriter body = envelope.Into("soapenv:Body");
  if (request) request->CreateXMLNode(body.Into(m_prefix + ":" + GetRootTagName()).Node());

  SmartPtr<HttpMessageBuffer> const buffer = message->GetRequestBuffer();
  buffer->SetMessage(XMLUtilites::Print(*document));
  buffer->GetSignal().Set();
}

void OperationBase::PopulateHeaderNode(XmlNode<char>* header, XmlDocument<char>* document) const {
  if (header == nullptr || document == nullptr) return;
  if (m_actAsReadUser == HeaderVals::True) {  // the element's presence alone means true
    header->append_node(XMLUtilites::CreateNode("header:actAsReadUser", "", document));
  }
  if (!m_applicationName.empty()) {
    header->append_node(
        XMLUtilites::CreateNode("header:applicationName", m_applicationName, document));
  }
}

ILogger* OperationBase::SessionLogger() const {
  return m_session == nullptr ? nullptr : m_session->GetLogger();
}

void OperationBase::Log(ILogger* logger, int level, std::string const& text) const {
  if (logger != nullptr) logger->Log(level, GetOperationName() + ": " + text);
}

void OperationBase::LogTiming(ILogger* logger, std::uint64_t start,
                              HttpMessage const& message) const {
  if (logger == nullptr) return;
  float const total = Time::PerformanceTimeToSeconds(Time::GetPerformanceTime() - start);
  Log(logger, kTimingLevel,
      "Call took a total time " + SecondsText(total) + "s, with a " +
          SecondsText(message.GetServiceLayerTime()) + "s spent in Lumo:ServiceLayer.");
}

void OperationBase::ReserveOutcome() { m_outOfMemory = MakeOutOfMemory(); }

SmartPtr<ServiceLayerResponse> OperationBase::MakeOutOfMemory() const {
  auto exchange = HttpMessage::CreateOne();
  exchange->SetFailure(eHttpFailure_OutOfMemory, "out of memory");
  exchange->GetReport()->phase = eHttpPhase_Receiving;  // as far as the call may have come
  auto outcome = ServiceLayerResponse::CreateOne();
  outcome->SetNoReply(GetOperationName(), exchange->GetTransportError());
  outcome->SetExchange(GetOperationName(), exchange);
  return outcome;
}

SmartPtr<ServiceLayerResponse> OperationBase::OutOfMemory(ILogger* logger) const {
  try {
    LogError(logger, "out of memory");
  } catch (std::bad_alloc const&) {  // the outcome tells it
  }
  return m_outOfMemory ? m_outOfMemory : MakeOutOfMemory();
}

void OperationBase::Post(SmartPtr<HttpMessage> const& message) const {
  SmartPtr<HttpClient> const client =
      m_session == nullptr ? SmartPtr<HttpClient>() : m_session->HttpClientPtr();
  if (!client) return message->SetFailure(eHttpFailure_Setup, "");  // nobody to send it
  std::string const& applicationName = m_session->GetApplicationName();
  if (!applicationName.empty()) {
    message->AddRequestHeader("X-Zorand-ApplicationName", applicationName);
  }
  std::uint64_t const start = Time::GetPerformanceTime();
  client->SendRequest(GetService(), eHttpVerb_Post, message);
  message->AddServiceLayerTime(Time::PerformanceTimeToSeconds(Time::GetPerformanceTime() - start));
}

SmartPtr<ServiceLayerResponse> OperationBase::MakeOutcome(HttpMessage const& message,
                                                          ILogger* logger) const {
  auto outcome = ServiceLayerResponse::CreateOne();
  outcome->SetRequestBuffer(message.GetRequestBuffer());
  if (SmartPtr<HttpMessageBuffer> const reply = message.GetResponseBuffer()) {
    outcome->SetReply(reply, message.GetStatusCode());
    return outcome;
  }
  outcome->SetNoReply(GetOperationName(), message.GetTransportError());
  if (logger != nullptr) {  // the text is not made for nobody
    LogError(logger,
             "Could not access the response object. Sent request: " + outcome->GetRequestMessage());
  }
  return outcome;
}

std::unique_ptr<XmlDocument<char>> OperationBase::ParseReply(HttpMessage const& message,
                                                             ServiceLayerResponse& outcome,
                                                             ILogger* logger) const {
  auto document = std::make_unique<XmlDocument<char>>();
  SmartPtr<HttpMessageBuffer> const reply = message.GetResponseBuffer();
  if (lumo::ParseXml(reply->Begin(), reply->End(), *document)) return document;
  std::string const error(lumo::LastXmlError());
  LogError(logger, "Response is not well-formed XML: " + error);
  outcome.SetOutcome(
      CallOutcomes::NotUnderstood, GetOperationName(),
      "the reply is not well-formed XML, " + error + ": " + std::string(Beginning(*reply)));
  return document;
}

void OperationBase::ReadFailure(HttpMessage const& message, ServiceLayerResponse& outcome,
                                ILogger* logger) const {
  std::unique_ptr<XmlDocument<char>> const document = ParseReply(message, outcome, logger);
  bool const isXml = outcome.GetOutcome() != CallOutcomes::NotUnderstood;
  std::string const code = std::to_string(outcome.GetResponseCode());
  if (!outcome.SetFault(GetOperationName(), *document)) {
    outcome.SetOutcome(CallOutcomes::OtherStatus, GetOperationName(),
                       "the server answers with status " + code);
  }
  if (logger == nullptr) return;  // the texts are not made for nobody
  outcome.SetResponseMessage(isXml ? XMLUtilites::Print(*document)
                                   : message.GetResponseBuffer()->GetBytes());
  LogError(logger, "Request failed and returned code: " + code +
                       ", Request: " + outcome.GetRequestMessage() +
                       " \n Response: " + outcome.GetResponseMessage());
}

void OperationBase::ConcludeRead(ServiceLayerResponse& outcome, std::size_t unbuiltValues,
                                 ILogger* logger) const {
  if (unbuiltValues == 0) {
    return outcome.SetOutcome(CallOutcomes::Success, GetOperationName(), "");
  }
  std::string const what =
      "kpxtkLumoServiceLayer::Initialize has not run, so that values of the reply are lost: " +
      std::to_string(unbuiltValues);
  LogError(logger, what);
  outcome.SetOutcome(CallOutcomes::NotInitialized, GetOperationName(), what);
}

void OperationBase::ConcludeUnread(HttpMessage const& message, ServiceLayerResponse& outcome,
                                   XmlDocument<char> const& document) const {
  if (outcome.GetOutcome() == CallOutcomes::NotUnderstood) return;  // it is not XML
  if (outcome.SetFault(GetOperationName(), document)) return;
  HttpMessageBuffer const& reply = *message.GetResponseBuffer();
  outcome.SetOutcome(CallOutcomes::NotUnderstood, GetOperationName(),
                     reply.GetBytes().empty() ? "the reply is empty"
                                              : "the reply has no " + GetResponseTagName() + ": " +
                                                    std::string(Beginning(reply)));
}

XmlNode<char> const* OperationBase::FindResponseNode(XmlDocument<char> const& document) const {
  XmlNode<char> const* const envelope = document.first_node("s:Envelope");
  XmlNode<char> const* const body = envelope == nullptr ? nullptr : envelope->first_node("s:Body");
  return XMLUtilites::GetNode(GetResponseTagName(), body);
}
