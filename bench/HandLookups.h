// Single answers as a specialist would query them: statements prepared once and bound anew for each call.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "RawDatabase.h"
#include "kpTables/Variant.h"

namespace kpTables::bench {

/// The same answers as the members of CTables of the same names; Get商品资料 only for the attributes in kAttributes.
class HandLookups {
public:
    static constexpr std::array kAttributes = {"商品名称", "计量单位", "规格", "默认单价", "生产厂商"};

    explicit HandLookups(const std::string& path);

    std::string Get仓库名称(std::int32_t dpID);
    Variant Get商品资料(std::int32_t rpdID, const std::string& rWhich);
    std::int32_t Get商品ID(const std::string& theName);
    double Get本期库存(std::int32_t rdpID, std::int32_t rpdID, std::int16_t rMonth, const std::string& What);
    std::string Get_Option(const std::string& rItem);

private:
    RawDatabase database_;
    RawStatement depotName_;
    std::array<RawStatement, kAttributes.size()> attributes_;
    std::array<RawStatement, 4> productIds_;  ///< in the order in which they are queried
    RawStatement quantity_;
    RawStatement amount_;
    RawStatement option_;
};

}  // namespace kpTables::bench
