#include "engines/postgres/extension/Body.h"

#include <algorithm>
#include <array>
#include <exception>
#include <new>
#include <string>
#include <string_view>

#include "functions/Fault.h"
#include "functions/Function.h"
#include "functions/FunctionTable.h"
#include "text/DateText.h"

namespace kpTables::engines::postgres::extension {

namespace {

using functions::Value;

static_assert(kMostCells == functions::kMostArguments);

/// The text of the last result: the server copies it when no frame of ours is left.
std::string& KeptText() {
    static std::string text;
    return text;
}

Value ValueOf(const Cell& cell, std::array<char, text::kLongestIsoDate>& date) {
    switch (cell.kind) {
        case Cell::Kind::Null:
            break;
        case Cell::Kind::Whole:
            return Value(cell.whole);
        case Cell::Kind::Real:
            return Value(cell.real);
        case Cell::Kind::Text:
            return Value(std::string_view(cell.text, cell.size));
        case Cell::Kind::Date: {
            const char* const end = text::WriteIsoDate(date.data(), functions::CheckedDate(cell.real));
            return Value(std::string_view(date.data(), end));
        }
    }
    return {};
}

Cell CellOf(const Value& value, bool wantsDate) {
    Cell cell;
    switch (value.Type()) {
        case Value::Kind::Null:
            break;
        case Value::Kind::Whole:
            cell.kind = Cell::Kind::Whole;
            cell.whole = value.Whole();
            break;
        case Value::Kind::Real:
            cell.kind = Cell::Kind::Real;
            cell.real = value.Real();
            break;
        case Value::Kind::Text:
            if (const auto serial = wantsDate ? text::ParseIsoDate(value.Text()) : std::nullopt) {
                cell.kind = Cell::Kind::Date;
                cell.real = *serial;
                break;
            }
            KeptText() = value.Text();
            cell.kind = Cell::Kind::Text;
            cell.text = KeptText().data();
            cell.size = KeptText().size();
    }
    return cell;
}

void Report(Outcome& outcome, int error, std::string_view message) noexcept {
    outcome.error = error;
    std::size_t size = std::min(message.size(), sizeof outcome.message - 1);
    // A character is not cut.
    while (size < message.size() && size > 0 && (static_cast<unsigned char>(message[size]) & 0xC0U) == 0x80U) --size;
    std::copy_n(message.data(), size, outcome.message);
    outcome.message[size] = 0;
}

}  // namespace

const void* FindBody(const char* name, int arguments) noexcept {
    try {
        const functions::Function* const found = functions::FindFunction("kp_" + std::string(name));
        const bool fits = found && found->minimumArguments <= arguments && arguments <= found->maximumArguments;
        return fits ? found : nullptr;
    } catch (...) {
        return nullptr;
    }
}

void CallBody(const void* body, const Cell* arguments, int count, bool wantsDate, Outcome& outcome) noexcept {
    try {
        std::array<Value, kMostCells> values;
        std::array<std::array<char, text::kLongestIsoDate>, kMostCells> dates;
        const auto size = static_cast<std::size_t>(count);
        for (std::size_t i = 0; i < size; ++i) values[i] = ValueOf(arguments[i], dates[i]);
        const functions::Arguments given({values.data(), size});
        functions::Answer answer;
        functions::Call(*static_cast<const functions::Function*>(body), given, answer);
        outcome.value = CellOf(answer.Get(), wantsDate);
    } catch (const functions::Fault& fault) {
        Report(outcome, static_cast<int>(fault.Number()), fault.what());
    } catch (const std::bad_alloc&) {
        Report(outcome, kOutOfMemory, "out of memory");
    } catch (const std::exception& error) {
        Report(outcome, kInternalError, error.what());
    } catch (...) {
        Report(outcome, kInternalError, "unknown error");
    }
}

}  // namespace kpTables::engines::postgres::extension
