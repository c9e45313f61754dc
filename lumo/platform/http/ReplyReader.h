#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "lumo/platform/http/HttpReport.h"

namespace lumo {

/// Why this side ends an exchange; without a kind it goes on. The text is a literal.
struct Refusal {
  eHttpFailure kind = eHttpFailure_None;
  char const* text = "";
  explicit operator bool() const { return kind != eHttpFailure_None; }
};

/// Without blanks and line ends around it.
std::string_view TrimmedHeader(std::string_view text);

/// Puts a reply together from what libcurl hands over: heads, of which all but the last belong to
/// interim replies, to challenges or to a proxy, and the body behind the last.
///
/// libcurl is told to hand over a line of a head twice: among the bytes of the body, before it
/// stores the line, and then as a line. The first time is the chance to refuse what it would store
/// wrongly: it adds a header that begins with a blank to the last one of the transfer before, in
/// memory that is no longer its own, when the head has no header yet.
class ReplyReader {
 public:
  ReplyReader() = default;
  /// `largest` is the longest body that is taken, in bytes; 0 for any.
  explicit ReplyReader(std::size_t largest) : m_largest(largest) {}

  /// A connection is made, or a request goes out on one: what comes next is a head. Heads of a
  /// proxy that is asked for a tunnel have no body.
  void ExpectHead(bool isFromProxy);
  /// Whether the next line tells a status, and whether that is a proxy's word on a tunnel.
  bool ExpectsStatus() const { return m_isInHead && m_expectsStatus; }
  bool IsFromProxy() const { return m_isFromProxy; }
  /// Whether the next byte is the body's first.
  bool IsAtBody() const { return !m_isInHead && m_body.empty(); }

  Refusal TakeStatus(int status);
  /// A line of a head, or a header behind the body.
  Refusal TakeLine(std::string_view line);
  /// How long the body is going to be, as the server says.
  Refusal TakeLength(std::size_t length);
  /// A piece of the body, or of a line that comes to `TakeLine` next.
  Refusal TakeBytes(std::string_view bytes);

  /// Status, headers and body of the last head that came; whole when it came to its end and is
  /// neither interim nor a proxy's.
  int Status() const { return m_status; }
  bool IsWholeHead() const { return m_isWholeHead; }
  HttpHeaders& AccessHeaders() { return m_headers; }
  std::string& AccessBody() { return m_body; }

 private:
  void EndHead();

  std::size_t m_largest = 0;
  bool m_isInHead = true;
  bool m_expectsStatus = true;
  bool m_isInLine = false;  // a piece of a line came to `TakeBytes`
  bool m_isFromProxy = false;
  bool m_isInterim = false;
  bool m_isWholeHead = false;
  int m_status = 0;
  int m_interimReplies = 0;
  std::size_t m_headBytes = 0;
  HttpHeaders m_headers;
  std::string m_body;
};

}  // namespace lumo
