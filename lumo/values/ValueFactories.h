#pragma once

namespace lumo {

/// Makes the factories of all value classes that have one and fills the name registries. A type
/// code whose factory is gone gets the library's own again. Calling it twice does no harm.
void StartValues();
/// Destroys those factories and empties the registries.
void StopValues();

}  // namespace lumo
