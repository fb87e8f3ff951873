#include "kpbook/Interruption.h"

#include "platform/Signals.h"

namespace kpTables::kpbook {

void ThrowIfInterrupted() {
    if (platform::ArrivedSignal() != 0) throw Interrupted();
}

}  // namespace kpTables::kpbook
