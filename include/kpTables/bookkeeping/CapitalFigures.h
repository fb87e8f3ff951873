// Amounts as Chinese capital figures, as bills and cheques state them.
#pragma once

#include <string>

#include "kpTables/Currency.h"

namespace kpTables::bookkeeping {

/// "壹万零伍拾元整", "叁佰贰拾伍元零肆分", "壹元伍角整", "负伍分", "零元整". Rounded to the fen, a half away from zero.
std::string CapitalFigures(Currency amount);

}  // namespace kpTables::bookkeeping
