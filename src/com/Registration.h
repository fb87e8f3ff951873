// The server's entries in the registry.
#pragma once

#include <winerror.h>

namespace kpTables::com {

enum class Scope { Machine, User };

/// Writes the entries anew, or leaves none when one cannot be written.
HRESULT Register(Scope scope);
/// Removes them; those that are not there are none to remove.
HRESULT Unregister(Scope scope);

}  // namespace kpTables::com
