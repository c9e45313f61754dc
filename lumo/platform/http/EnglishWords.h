#pragma once

#include <locale.h>

namespace lumo {

/// While it lives, the libraries that this thread calls say what goes wrong in English, whatever
/// the process's locale: reasons of a refused log-on are told apart by their words, since GSSAPI's
/// codes do not come through libcurl. The locale's other parts stay as they are.
class EnglishWords {
 public:
  explicit EnglishWords(bool isWanted) {
    if (!isWanted) return;
    m_before = uselocale(nullptr);
    locale_t const copy = duplocale(m_before);
    if (copy == nullptr) return;
    m_english = newlocale(LC_MESSAGES_MASK, "C", copy);
    if (m_english == nullptr) {
      freelocale(copy);
    } else {
      uselocale(m_english);
    }
  }
  ~EnglishWords() {
    if (m_english == nullptr) return;
    uselocale(m_before);
    freelocale(m_english);
  }
  EnglishWords(EnglishWords const&) = delete;
  EnglishWords& operator=(EnglishWords const&) = delete;

 private:
  locale_t m_before = nullptr;
  locale_t m_english = nullptr;
};

}  // namespace lumo
