#pragma once

#include <string>

#include "lumo/platform/core/Counted.h"
#include "lumo/platform/http/HttpEnums.h"
#include "lumo/platform/http/HttpMessageBuffer.h"
#include "lumo/platform/http/HttpReport.h"

/// One request and, once it was sent, its reply.
class LUMO_API HttpMessage : public lumo::Counted<HttpMessage> {
 public:
  /// `eHttpVerb_Unknown` unless it is set.
  eHttpVerb GetRequestVerb() const { return m_requestVerb; }
  void SetRequestVerb(eHttpVerb verb) { m_requestVerb = verb; }
  /// Headers of the request, in the order in which they are sent.
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
  /// Status of the reply; `eHttpStatusCode_FromNumber` of 0 without one.
  eHttpStatusCode GetStatus() const { return eHttpStatusCode_FromNumber(m_statusCode); }
  /// Numeric status of the reply; 0 without one.
  int GetStatusCode() const { return m_statusCode; }
  /// Headers of the reply, in its order.
  HttpHeaders const& AccessResponseHeaders() const { return m_report->headers; }
  /// Called by the transport when a reply is complete.
  void SetResponse(int statusCode, HttpHeaders&& headers, std::string&& body);
  /// Called by the transport when no reply comes.
  void SetFailure(eHttpFailure failure, std::string const& error);
  /// Drops what an earlier exchange left; the client calls it before each.
  void ForgetExchange();

  /// What went wrong when no reply arrived, in the transport's words; otherwise empty.
  std::string const& GetTransportError() const { return m_report->error; }
  void SetTransportError(std::string const& error) {
    SetFailure(error.empty() ? eHttpFailure_None : eHttpFailure_Other, error);
  }
  /// How long the phases of the exchange took.
  HttpTimings const& GetTimings() const { return m_report->timings; }
  void SetTimings(HttpTimings const& timings) { m_report->timings = timings; }
  /// Why no reply came, the log-on, the way through a proxy; never null. The transport writes it.
  SmartPtr<HttpReport> GetReport() const { return m_report; }

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
  SmartPtr<HttpReport> m_report = HttpReport::CreateOne();
  float m_serviceLayerTime = 0;
};
