#include "functions/Fault.h"

#include "text/ErrorText.h"

namespace kpTables::functions {

void Raise(FaultNumber number, const std::string& detail) {
    std::string text = text::ErrorText(static_cast<std::int32_t>(number));
    if (!detail.empty()) text += ": " + detail;
    throw Fault(number, text);
}

void RaiseMismatch(std::string_view text, std::string_view complaint) {
    std::string detail = "'";
    Raise(FaultNumber::TypeMismatch, detail.append(text).append("' ").append(complaint));
}

}  // namespace kpTables::functions
