#include "lumo/platform/http/HttpMessage.h"

#include <algorithm>

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
  m_responseHeaders = std::move(headers);
}
