#pragma once

/// Marks the definition of a global object that is made before those of callers and goes after
/// them: with a static library their constructors may come first otherwise.
#define LUMO_EARLY [[gnu::init_priority(1000)]]
