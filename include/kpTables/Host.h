// What the component needs from its host: a message box, today's date, a progress bar.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "kpTables/Date.h"
#include "kpTables/Variant.h"

namespace kpTables {

/// Button sets of a message box, with MsgBox's numbers.
enum class MessageButtons : int { OkOnly = 0, YesNo = 4 };
/// Answers, with MsgBox's numbers.
enum class MessageAnswer : int { Ok = 1, Yes = 6, No = 7 };

/// The four numbers of a version record.
struct VersionNumber {
    int major = 0;
    int minor = 0;
    int build = 0;
    int revision = 0;
};

/// The host's message box and clock, and the version record of the file that the component is part of.
class Host {
public:
    virtual ~Host() = default;
    /// Shows text under title and waits for an answer. The default raises error 5: there is no user to ask.
    virtual MessageAnswer MsgBox(const std::string& text, MessageButtons buttons, const std::string& title);
    /// Today's date, without a time. The default is the system's local date.
    virtual Date Today();
    /// What CTables::Version answers with. The default is this library's own version.
    virtual VersionNumber ComponentVersion();
};

/// The caller's progress bar. A member that fails raises an Error.
class ProgressBar : public Object {
public:
    virtual void SetVisible(bool visible) = 0;
    /// 0 to 100.
    virtual void SetValue(double value) = 0;
};

}  // namespace kpTables
