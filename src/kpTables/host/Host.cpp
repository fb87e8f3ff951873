#include "kpTables/Host.h"

#include "kpTables/Error.h"
#include "kpTables/Version.h"
#include "text/LocalTime.h"

namespace kpTables {

MessageAnswer Host::MsgBox(const std::string& text, MessageButtons, const std::string& title) {
    Raise(ErrorNumber::InvalidCall, "nobody is there to answer the message box \"" + title + "\": " + text);
}

Date Host::Today() {
    const std::tm local = text::LocalTime();
    return Date::FromYearMonthDay(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
}

VersionNumber Host::ComponentVersion() { return {kVersionMajor, kVersionMinor, kVersionBuild, kVersionRevision}; }

}  // namespace kpTables
