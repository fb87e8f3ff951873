#include "engines/postgres/Parameters.h"

#include <array>
#include <charconv>
#include <utility>

#include "engines/common/ValueSink.h"

namespace kpTables::engines::postgres {

static_assert(engines::ValueSink<Parameters>);

namespace {

constexpr std::size_t kLongestNumber = 32;

template <class Number>
void Write(std::string& text, Number value) {
    std::array<char, kLongestNumber> written;
    const auto end = std::to_chars(written.data(), written.data() + written.size(), value).ptr;
    text.assign(written.data(), end);
}

}  // namespace

std::string& Parameters::Place(int parameter, bool binary) {
    const auto count = static_cast<std::size_t>(parameter);
    if (values_.size() < count) {
        values_.resize(count);
        nulls_.resize(count);
        lengths_.resize(count);
        formats_.resize(count);
    }
    nulls_[count - 1] = false;
    formats_[count - 1] = binary ? 1 : 0;
    return values_[count - 1];
}

void Parameters::BindNull(int parameter) {
    Place(parameter, false).clear();
    nulls_[static_cast<std::size_t>(parameter) - 1] = true;
}

void Parameters::BindInteger(int parameter, std::int64_t value) { Write(Place(parameter, false), value); }

void Parameters::BindReal(int parameter, double value) { Write(Place(parameter, false), value); }

void Parameters::BindDate(int parameter, Date value) { Place(parameter, false) = value.ToIso(); }

void Parameters::BindText(int parameter, std::string_view text) {
    Place(parameter, true) = text;
    lengths_[static_cast<std::size_t>(parameter) - 1] = static_cast<int>(text.size());
}

void Parameters::BindBytes(int parameter, std::string bytes) {
    std::string& place = Place(parameter, true);
    place = std::move(bytes);
    lengths_[static_cast<std::size_t>(parameter) - 1] = static_cast<int>(place.size());
}

const char* const* Parameters::Values() const {
    pointers_.clear();
    for (std::size_t i = 0; i < values_.size(); ++i) pointers_.push_back(nulls_[i] ? nullptr : values_[i].c_str());
    return pointers_.data();
}

}  // namespace kpTables::engines::postgres
