#pragma once

#include <emmintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace lumo {

/// Collects the text of a document from many short pieces.
class TextOut {
 public:
  /// `expected` is the size that the text may come to.
  explicit TextOut(std::size_t expected) { m_text.reserve(expected); }

  TextOut& Put(char c) {
    if (m_used == sizeof m_buffer) Flush();
    m_buffer[m_used++] = c;
    return *this;
  }
  TextOut& Put(std::string_view piece) {
    if (piece.size() > sizeof m_buffer - m_used) return PutLong(piece);
    Copy(m_buffer + m_used, piece.data(), piece.size());
    m_used += piece.size();
    return *this;
  }
  /// Puts text with the markup characters as references, except `keep`.
  TextOut& PutEscaped(std::string_view text, char keep = '\0');

  /// The whole text; nothing can be put behind it.
  std::string Take() {
    Flush();
    return std::move(m_text);
  }

 private:
  /// Most pieces are too short for a call of `memcpy`.
  static void Copy(char* to, char const* from, std::size_t size) {
    if (size > 32) {
      std::memcpy(to, from, size);
    } else if (size >= 16) {
      CopyEnds<__m128i>(to, from, size);
    } else if (size >= 8) {
      CopyEnds<std::uint64_t>(to, from, size);
    } else if (size >= 4) {
      CopyEnds<std::uint32_t>(to, from, size);
    } else {
      for (std::size_t i = 0; i < size; ++i) to[i] = from[i];
    }
  }
  /// Copies the first and the last word, which may overlap.
  template <class Word>
  static void CopyEnds(char* to, char const* from, std::size_t size) {
    Word first;
    Word last;
    std::memcpy(&first, from, sizeof first);
    std::memcpy(&last, from + size - sizeof last, sizeof last);
    std::memcpy(to, &first, sizeof first);
    std::memcpy(to + size - sizeof last, &last, sizeof last);
  }

  TextOut& PutLong(std::string_view piece);
  void Flush() {
    m_text.append(m_buffer, m_used);
    m_used = 0;
  }

  std::string m_text;
  std::size_t m_used = 0;
  char m_buffer[4096];  // behind the text, which grows in large steps
};

}  // namespace lumo
