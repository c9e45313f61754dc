#pragma once

#include <string>

#include "lumo/platform/core/Counted.h"
#include "lumo/platform/http/HttpMessage.h"
#include "lumo/session/CallOutcomes.h"
#include "lumo/session/LazyText.h"
#include "lumo/xml/Xml.h"

/// Outcome of a call: what it came to, status and texts. Every response holds one after its call;
/// through it a caller learns of a failure:
///
///     auto outcome = response.GetServiceLayerResponse();
///     if (!outcome->Succeeded()) std::cerr << outcome->ErrorText() << '\n';
///
/// The texts of request and reply are made when they are first asked for; nothing else is read from
/// the reply again.
class LUMO_API ServiceLayerResponse : public lumo::Counted<ServiceLayerResponse> {
 public:
  ServiceLayerResponse() = default;
  /// Outcome of a reply by its text. With status 200, any XML but a fault counts as a success.
  ServiceLayerResponse(std::string const& responseText, int responseCode);

  /// What the call came to.
  CallOutcomes::eCallOutcome GetOutcome() const { return m_outcome; }
  /// Whether the response was read.
  bool Succeeded() const { return m_outcome == CallOutcomes::Success; }
  /// What went wrong, on one line that begins with the operation's name; empty when the call
  /// succeeded, and only then.
  std::string ErrorText() const;

  /// The SOAP fault's code such as "s:Client", its text, and the content of its detail as XML;
  /// empty without a fault. They are read whatever prefix and status the fault came with.
  std::string const& GetFaultCode() const { return m_faultCode; }
  /// See `GetFaultCode`.
  std::string const& GetFaultText() const { return m_faultText; }
  /// See `GetFaultCode`.
  std::string const& GetFaultDetail() const { return m_faultDetail; }

  /// HTTP status of the reply; 500 when none arrived, 0 before any call.
  int GetResponseCode() const { return m_responseCode; }
  /// The reply document without indentation, the raw reply when it is not XML, or
  /// "<operation> FAILED" when none arrived.
  std::string const& GetResponseMessage() const { return m_responseText.Get(); }
  /// The request document without indentation and without the XML declaration.
  std::string const& GetRequestMessage() const { return m_requestText.Get(); }
  void SetRequestMessage(std::string const& text) { m_requestText = lumo::LazyText(text); }
  /// Has the request text printed from the bytes that were sent.
  void SetRequestBuffer(SmartPtr<HttpMessageBuffer> const& request);
  /// Why no reply arrived, in the transport's words; empty when one did.
  std::string const& GetTransportError() const { return m_transportError; }
  /// The text of a SOAP fault in an envelope with the prefix "s"; empty with status 200 and when
  /// the reply holds no such fault. `ErrorText` tells of every failure.
  std::string GetErrorMessage() const { return m_errorMessage; }

  /// Name of the operation that was called, such as "GetTables"; empty before any call.
  std::string const& GetOperationName() const { return m_operationName; }
  /// The exchange itself, with the reply's headers and bytes and the timings; null before any call.
  SmartPtr<HttpMessage> const& GetExchange() const { return m_exchange; }
  /// What the exchange told beside its bytes: the kind of a failure, the reply's headers, the
  /// log-on, the proxy, the times. Empty before any call.
  HttpReport const& GetHttpReport() const;

  // What follows is for the pipeline of a call.

  /// Keeps the messages, from which the texts of request and reply are printed.
  void SetExchange(std::string const& operationName, SmartPtr<HttpMessage> const& exchange) {
    m_operationName = operationName;
    m_exchange = exchange;
  }

  /// Keeps status and bytes of a reply, from which its text is printed.
  void SetReply(SmartPtr<HttpMessageBuffer> const& reply, int responseCode);
  /// Gives the reply's text, where it is at hand.
  void SetResponseMessage(std::string const& text) { m_responseText = lumo::LazyText(text); }
  /// Ends without a reply. `transportError` may be empty.
  void SetNoReply(std::string const& operation, std::string const& transportError);
  /// Ends with the fault in the document; false, and no change, when there is none.
  bool SetFault(std::string const& operation, XmlDocument<char> const& reply);
  /// Ends with another outcome; `what` went wrong, empty for a success.
  void SetOutcome(CallOutcomes::eCallOutcome outcome, std::string const& operation,
                  std::string const& what);

 private:
  CallOutcomes::eCallOutcome m_outcome = CallOutcomes::NotSet;
  int m_responseCode = 0;
  lumo::LazyText m_responseText;
  lumo::LazyText m_requestText;
  std::string m_transportError;
  std::string m_errorText;
  std::string m_faultCode;
  std::string m_faultText;
  std::string m_faultDetail;
  std::string m_errorMessage;
  std::string m_operationName;
  SmartPtr<HttpMessage> m_exchange;
};
