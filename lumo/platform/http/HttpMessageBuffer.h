#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "lumo/platform/core/Counted.h"
#include "lumo/platform/http/SignalledObject.h"

/// The bytes of a request or of a reply.
class LUMO_API HttpMessageBuffer : public lumo::Counted<HttpMessageBuffer> {
 public:
  /// Replaces the bytes.
  void SetMessage(char const* text, std::size_t length) { m_bytes.assign(text, length); }
  void SetMessage(std::string&& bytes) { m_bytes = std::move(bytes); }
  /// The bytes; nothing is said about what they are.
  std::string const& GetBytes() const { return m_bytes; }
  char const* Begin() const { return m_bytes.data(); }                 ///< the first byte
  char const* End() const { return m_bytes.data() + m_bytes.size(); }  ///< behind the last byte
  /// Set when the bytes are complete.
  SignalledObject& GetSignal() { return m_signal; }

 private:
  std::string m_bytes;
  SignalledObject m_signal;
};
