// The component's host on Windows: the system's message box, and the version record of the server's file.
#pragma once

#include "kpTables/Host.h"

namespace kpTables::com {

class SystemHost : public Host {
public:
    MessageAnswer MsgBox(const std::string& text, MessageButtons buttons, const std::string& title) override;
    /// Of the server's own file; error 5 when it has no version record.
    VersionNumber ComponentVersion() override;
};

}  // namespace kpTables::com
