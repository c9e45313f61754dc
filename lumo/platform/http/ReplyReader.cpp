#include "lumo/platform/http/ReplyReader.h"

#include <algorithm>

namespace lumo {
namespace {

constexpr std::size_t kMaxReserve = std::size_t{256} * 1024 * 1024;
constexpr std::size_t kMaxHeadBytes = std::size_t{1024} * 1024;
constexpr int kMaxInterimReplies = 100;
constexpr int kSwitchingProtocols = 101;

bool BeginsWithBlank(std::string_view line) {
  return !line.empty() && (line[0] == ' ' || line[0] == '\t');
}

constexpr Refusal kTooLong = {eHttpFailure_TooLarge, "the reply is larger than the limit"};

}  // namespace

std::string_view TrimmedHeader(std::string_view text) {
  std::size_t const first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

void ReplyReader::ExpectHead(bool isFromProxy) {
  m_isInHead = true;
  m_expectsStatus = true;
  m_isInLine = false;
  m_isFromProxy = isFromProxy;
}

Refusal ReplyReader::TakeStatus(int status) {
  m_isInLine = false;
  m_expectsStatus = false;
  m_isWholeHead = false;
  m_headBytes = 0;
  m_headers.clear();  // those before belong to another head
  m_status = status;
  m_isInterim = status / 100 == 1 && status != kSwitchingProtocols;
  if (m_isInterim && ++m_interimReplies > kMaxInterimReplies) {
    return {eHttpFailure_NotUnderstood, "the server sent more than 100 interim replies"};
  }
  return {};
}

Refusal ReplyReader::TakeLine(std::string_view line) {
  m_isInLine = false;
  m_headBytes += line.size();
  if (m_headBytes > kMaxHeadBytes) {
    return {eHttpFailure_TooLarge, "the reply's headers are too large"};
  }
  if (m_isInHead && (line[0] == '\r' || line[0] == '\n')) {
    EndHead();
  } else if (BeginsWithBlank(line) && !m_headers.empty()) {  // goes on with the header before
    m_headers.back().second.append(" ").append(TrimmedHeader(line));
  } else if (std::size_t const colon = line.find(':'); colon != std::string_view::npos) {
    m_headers.emplace_back(TrimmedHeader(line.substr(0, colon)),
                           TrimmedHeader(line.substr(colon + 1)));
  }
  return {};
}

void ReplyReader::EndHead() {
  bool const isReply = !m_isInterim && !m_isFromProxy;
  m_isWholeHead = isReply;
  m_isInHead = !isReply;
  m_expectsStatus = true;
}

Refusal ReplyReader::TakeLength(std::size_t length) {
  if (m_largest != 0 && length > m_largest) return kTooLong;
  m_body.reserve(std::min(length, kMaxReserve));
  return {};
}

Refusal ReplyReader::TakeBytes(std::string_view bytes) {
  if (m_isInHead) {
    bool const isStray = !m_isInLine && m_headers.empty() && BeginsWithBlank(bytes);
    m_isInLine = true;
    if (isStray)
      return {eHttpFailure_NotUnderstood, "the reply's first header begins with a blank"};
    return {};
  }
  if (m_largest != 0 && bytes.size() > m_largest - std::min(m_largest, m_body.size())) {
    return kTooLong;
  }
  m_body.append(bytes);
  return {};
}

}  // namespace lumo
