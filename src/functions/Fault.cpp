#include "functions/Fault.h"

#include "kpTables/text/Message.h"
#include "text/ErrorText.h"

namespace kpTables::functions {

void Raise(FaultNumber number, const std::string& detail) {
    std::string text = text::ErrorText(static_cast<std::int32_t>(number));
    if (!detail.empty()) text += ": " + detail;
    throw Fault(number, text);
}

void RaiseMismatch(std::string_view text, std::string_view complaint) {
    Raise(FaultNumber::TypeMismatch, Message("'{1}' {2}", text, complaint));
}

}  // namespace kpTables::functions
