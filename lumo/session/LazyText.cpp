#include "lumo/session/LazyText.h"

#include <mutex>
#include <utility>

namespace lumo {

struct LazyText::State {
  std::once_flag once;
  std::function<std::string()> make;
  std::string text;
};

LazyText::LazyText(std::string text) : m_state(std::make_shared<State>()) {
  m_state->text = std::move(text);
}

LazyText::LazyText(std::function<std::string()> make) : m_state(std::make_shared<State>()) {
  m_state->make = std::move(make);
}

std::string const& LazyText::Get() const {
  static std::string const kEmpty;
  if (!m_state) return kEmpty;
  std::call_once(m_state->once, [&state = *m_state] {
    if (!state.make) return;
    state.text = state.make();
    state.make = nullptr;  // lets go of what the text was made from
  });
  return m_state->text;
}

}  // namespace lumo
