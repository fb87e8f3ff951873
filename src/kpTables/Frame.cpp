// The object itself: properties, version, event and value helpers.
#include <algorithm>
#include <utility>

#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/Numbers.h"
#include "kpTables/Version.h"
#include "text/CodePage936.h"
#include "text/Utf8.h"

namespace kpTables {

CTables::CTables(std::shared_ptr<Host> host) : host_(host ? std::move(host) : std::make_shared<Host>()) {}

CTables::~CTables() = default;

ConnectionPtr CTables::Cnn() const { return cnn_; }
void CTables::Cnn(ConnectionPtr value) { cnn_ = std::move(value); }

const std::string& CTables::Speciality() const { return speciality_; }
void CTables::Speciality(const std::string& value) { speciality_ = value; }

bool CTables::isSQL() const { return isSQL_; }
void CTables::isSQL(bool value) { isSQL_ = value; }

std::int32_t CTables::Advise(__CTables& listener) {
    listeners_.push_back({++lastCookie_, &listener});
    return lastCookie_;
}

void CTables::Unadvise(std::int32_t cookie) {
    if (std::erase_if(listeners_, [cookie](const Listener& each) { return each.cookie == cookie; }) == 0)
        Raise(ErrorNumber::InvalidCall);
}

std::string CTables::Version() const {
    const VersionNumber version = host_->ComponentVersion();
    return VersionText(version.major, version.minor, version.build, version.revision);
}

Variant CTables::Update(const std::string& ProcName, const std::string& TableName, std::int32_t ID) {
    // Listeners may advise and unadvise while they are called: who left is skipped, who came has to wait.
    const auto current = listeners_;
    for (const Listener& each : current) {
        const bool stays = std::any_of(listeners_.begin(), listeners_.end(),
                                       [&each](const Listener& other) { return other.cookie == each.cookie; });
        if (stays) each.sink->TableChanged(ProcName, TableName, ID);
    }
    return {};
}

std::string CTables::AllTrim(const std::string& rStr) const {
    // The position counter is a 16-bit one, and it counts UTF-16 units.
    constexpr std::size_t kLongest = 32767;
    if (text::Utf16Length(rStr) > kLongest) Raise(ErrorNumber::Overflow);
    std::string kept;
    for (std::string_view rest = rStr; !rest.empty();) {
        const auto [character, bytes] = text::DecodeUtf8(rest);
        const bool passes =
            character == U'-' || (character >= U'A' && character <= U'Z') || text::IsDoubleByte936(character);
        if (passes) kept += rest.substr(0, bytes);
        rest.remove_prefix(bytes);
    }
    return kept;
}

double CTables::CalcPrice(InOut<Variant> Account, InOut<Variant> Number) const {
    return kpTables::CalcPrice(Account.get(), Number.get());
}

std::string CTables::Get单据中文日期(Recordset* rs) const {
    if (!rs) Raise(ErrorNumber::ObjectNotSet);
    const std::string month = Format(rs->Fields("月份").Value(), "00月");
    return month + Format(rs->Fields("日子").Value(), "00日");
}

}  // namespace kpTables
