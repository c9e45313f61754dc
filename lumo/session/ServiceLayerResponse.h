#pragma once

#include <string>

#include "lumo/platform/core/Counted.h"
#include "lumo/platform/http/HttpMessageBuffer.h"
#include "lumo/session/LazyText.h"

/// Outcome of a call: status and texts. Every response holds one after its call; through it a
/// caller learns of a failure:
///
///     auto outcome = response.GetServiceLayerResponse();
///     if (outcome->GetResponseCode() != 200) std::cerr << outcome->GetErrorMessage() << '\n';
///
/// The texts are made when they are first asked for.
class LUMO_API ServiceLayerResponse : public lumo::Counted<ServiceLayerResponse> {
 public:
  ServiceLayerResponse() = default;
  ServiceLayerResponse(std::string const& responseText, int responseCode);
  /// Outcome of an exchange whose texts are printed from the buffers. Null stands for no text.
  ServiceLayerResponse(SmartPtr<HttpMessageBuffer> const& reply, int responseCode);

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
  void SetTransportError(std::string const& error) { m_transportError = error; }
  /// The SOAP fault's text; empty on success and when the reply holds no fault.
  std::string GetErrorMessage() const;

 private:
  lumo::LazyText m_responseText;
  lumo::LazyText m_requestText;
  int m_responseCode = 0;
  std::string m_transportError;
  lumo::LazyText m_errorMessage;
};
