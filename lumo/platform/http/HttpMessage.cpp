#include "lumo/platform/http/HttpMessage.h"

#include <algorithm>
#include <utility>

namespace {

/// Without the bytes by which a value could end its header and begin another.
std::string OneLine(std::string text) {
  auto const breaksLine = [](char c) { return c == '\r' || c == '\n' || c == '\0'; };
  text.erase(std::remove_if(text.begin(), text.end(), breaksLine), text.end());
  return text;
}

}  // namespace

void HttpMessage::AddRequestHeader(std::string const& name, std::string const& value) {
  m_requestHeaders.reserve(8);  // what a call sends, without growing on the way
  m_requestHeaders.emplace_back(OneLine(name), OneLine(value));
}

void HttpMessage::SetResponse(int statusCode, HttpHeaders&& headers, std::string&& body) {
  auto buffer = HttpMessageBuffer::CreateOne();
  buffer->SetMessage(std::move(body));
  buffer->GetSignal().Set();
  m_responseBuffer = buffer;
  m_statusCode = statusCode;
  m_report->headers = std::move(headers);
  m_report->failure = eHttpFailure_None;
}

void HttpMessage::SetFailure(eHttpFailure failure, std::string const& error) {
  m_report->error = error;
  m_report->failure = failure;
}

void HttpMessage::ForgetExchange() {
  bool const isNew = m_report->phase == eHttpPhase_None && m_report->error.empty();
  if (isNew && !m_responseBuffer) return;
  m_report = HttpReport::CreateOne();  // the old one may have been handed on
  m_responseBuffer.Reset();
  m_statusCode = 0;
}
