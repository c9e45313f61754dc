#pragma once

namespace cli {

/// A sign on standard error, where that is a terminal, that shows once a second has passed without
/// a reply and goes by itself when something is printed. One for the whole command.
class Spinner {
 public:
  static void Start();
  /// For good, and before anything else is printed.
  static void Stop();
};

}  // namespace cli
