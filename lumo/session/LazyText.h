#pragma once

#include <functional>
#include <memory>
#include <string>

#include "lumo/platform/core/Export.h"

namespace lumo {

/// A text that is made when it is first asked for, once for all copies. The first asking is safe
/// from several threads at once.
class LUMO_API LazyText {
 public:
  LazyText() = default;
  /// A text that is there already.
  explicit LazyText(std::string text);
  explicit LazyText(std::function<std::string()> make);
  /// Valid as long as this object or a copy of it keeps the text.
  std::string const& Get() const;

 private:
  struct State;
  std::shared_ptr<State> m_state;  // null: the empty text
};

}  // namespace lumo
