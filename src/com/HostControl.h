// A grid and a progress bar of the host's, by the members that the component uses.
#pragma once

#include "com/HostMembers.h"
#include "kpTables/Grid.h"
#include "kpTables/Host.h"

namespace kpTables::com {

class HostGrid : public Grid, public virtual HostMembers {
public:
    std::int32_t Cols() const override;
    void SetCols(std::int32_t count) override;
    std::int32_t Rows() const override;
    std::int32_t FixedRows() const override;
    std::string ColKey(std::int32_t col) const override;
    void SetColKey(std::int32_t col, const std::string& key) override;
    std::int32_t ColIndex(std::string_view key) const override;
    void SetColPosition(std::int32_t col, std::int32_t position) override;
    bool ColHidden(std::int32_t col) const override;
    void SetColHidden(std::int32_t col, bool hidden) override;
    double ColWidth(std::int32_t col) const override;
    void SetColWidth(std::int32_t col, double width) override;
    std::string TextMatrix(std::int32_t row, std::int32_t col) const override;
    void SetTextMatrix(std::int32_t row, std::int32_t col, const std::string& text) override;
    double ValueMatrix(std::int32_t row, std::int32_t col) const override;

protected:
    HostGrid() noexcept : HostMembers(LateBoundObject(nullptr)) {}
};

class HostProgressBar : public ProgressBar, public virtual HostMembers {
public:
    void SetVisible(bool visible) override;
    void SetValue(double value) override;

protected:
    HostProgressBar() noexcept : HostMembers(LateBoundObject(nullptr)) {}
};

}  // namespace kpTables::com
