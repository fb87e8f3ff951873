// Objects of the host that lack every member of a grid or a progress bar.
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "kpTables/LateBoundMember.h"

namespace kpTables::latebound {

namespace {

[[noreturn]] void RaiseNoMember(const char* name) { Raise(ErrorNumber::UnknownMember, name); }

class NoGrid final : public Grid {
public:
    std::int32_t Cols() const override { RaiseNoMember("cols"); }
    void SetCols(std::int32_t) override { RaiseNoMember("cols"); }
    std::int32_t Rows() const override { RaiseNoMember("Rows"); }
    std::int32_t FixedRows() const override { RaiseNoMember("FixedRows"); }
    std::string ColKey(std::int32_t) const override { RaiseNoMember("colkey"); }
    void SetColKey(std::int32_t, const std::string&) override { RaiseNoMember("colkey"); }
    std::int32_t ColIndex(std::string_view) const override { RaiseNoMember("ColIndex"); }
    void SetColPosition(std::int32_t, std::int32_t) override { RaiseNoMember("ColPosition"); }
    bool ColHidden(std::int32_t) const override { RaiseNoMember("ColHidden"); }
    void SetColHidden(std::int32_t, bool) override { RaiseNoMember("ColHidden"); }
    double ColWidth(std::int32_t) const override { RaiseNoMember("colwidth"); }
    void SetColWidth(std::int32_t, double) override { RaiseNoMember("colwidth"); }
    std::string TextMatrix(std::int32_t, std::int32_t) const override { RaiseNoMember("TextMatrix"); }
    void SetTextMatrix(std::int32_t, std::int32_t, const std::string&) override { RaiseNoMember("TextMatrix"); }
    double ValueMatrix(std::int32_t, std::int32_t) const override { RaiseNoMember("ValueMatrix"); }
};

class NoProgressBar final : public ProgressBar {
public:
    void SetVisible(bool) override { RaiseNoMember("Visible"); }
    void SetValue(double) override { RaiseNoMember("Value"); }
};

}  // namespace

template <>
std::shared_ptr<Grid> Memberless<Grid>() {
    static const auto grid = std::make_shared<NoGrid>();
    return grid;
}

template <>
std::shared_ptr<ProgressBar> Memberless<ProgressBar>() {
    static const auto bar = std::make_shared<NoProgressBar>();
    return bar;
}

}  // namespace kpTables::latebound
