#pragma once

#include <string>
#include <utility>
#include <vector>

#include "lumo/platform/core/Counted.h"
#include "lumo/platform/http/HttpEnums.h"
#include "lumo/platform/http/HttpMessageBuffer.h"

/// Name and value of a header, in the order of the wire.
using HttpHeaders = std::vector<std::pair<std::string, std::string>>;

/// How long the phases of an exchange took, in seconds since its start; 0 for a phase that did not
/// happen, such as connecting on a kept connection.
struct HttpTimings {
  double nameLookup = 0;
  double connect = 0;
  double tls = 0;
  double firstByte = 0;
  double total = 0;
};

/// One request and, once it was sent, its reply.
class LUMO_API HttpMessage : public lumo::Counted<HttpMessage> {
 public:
  eHttpVerb GetRequestVerb() const { return m_requestVerb; }
  void SetRequestVerb(eHttpVerb verb) { m_requestVerb = verb; }
  HttpHeaders const& AccessRequestHeaders() const { return m_requestHeaders; }
  /// Headers go out in the order in which they were added. CR, LF and NUL are dropped.
  void AddRequestHeader(std::string const& name, std::string const& value);
  /// Body of the request; never null.
  SmartPtr<HttpMessageBuffer> GetRequestBuffer() const { return m_requestBuffer; }
  /// Whether the server changes data: such a request goes out on a fresh connection and is never
  /// sent twice. Default false.
  bool GetIsWrite() const { return m_isWrite; }
  void SetIsWrite(bool isWrite) { m_isWrite = isWrite; }

  /// Body of the reply; null as long as no complete reply arrived.
  SmartPtr<HttpMessageBuffer> GetResponseBuffer() const { return m_responseBuffer; }
  eHttpStatusCode GetStatus() const { return eHttpStatusCode_FromNumber(m_statusCode); }
  /// Numeric status of the reply; 0 without one.
  int GetStatusCode() const { return m_statusCode; }
  HttpHeaders const& AccessResponseHeaders() const { return m_responseHeaders; }
  /// Called by the transport when a reply is complete.
  void SetResponse(int statusCode, HttpHeaders&& headers, std::string&& body);
  /// What went wrong when no reply arrived, in the transport's words; otherwise empty.
  std::string const& GetTransportError() const { return m_transportError; }
  void SetTransportError(std::string const& error) { m_transportError = error; }
  HttpTimings const& GetTimings() const { return m_timings; }
  void SetTimings(HttpTimings const& timings) { m_timings = timings; }

  /// Time spent on the server and on the way there and back, in seconds.
  float GetServiceLayerTime() const { return m_serviceLayerTime; }
  void AddServiceLayerTime(float seconds) { m_serviceLayerTime += seconds; }

 private:
  eHttpVerb m_requestVerb = eHttpVerb_Unknown;
  HttpHeaders m_requestHeaders;
  SmartPtr<HttpMessageBuffer> m_requestBuffer = HttpMessageBuffer::CreateOne();
  bool m_isWrite = false;
  SmartPtr<HttpMessageBuffer> m_responseBuffer;
  int m_statusCode = 0;
  HttpHeaders m_responseHeaders;
  std::string m_transportError;
  HttpTimings m_timings;
  float m_serviceLayerTime = 0;
};
