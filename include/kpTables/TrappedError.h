// What a method of the component trapped: an error that its answer does not show.
#pragma once

#include <exception>

namespace kpTables {

/// The last error that a method trapped in this thread since the last call of this function; null when there was none.
/// A host that must know whether an answer is one calls it before and after the method.
std::exception_ptr TakeTrappedError() noexcept;

}  // namespace kpTables
