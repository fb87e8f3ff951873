#include "RootRights.h"

#include <unistd.h>

#include <cerrno>
#include <exception>
#include <system_error>

namespace kpTables::test {

namespace {

constexpr uid_t kNobody = 65534;

}  // namespace

WithoutRootRights::WithoutRootRights() : wasRoot_(geteuid() == 0) {
    if (wasRoot_ && seteuid(kNobody) != 0) throw std::system_error(errno, std::generic_category());
}

WithoutRootRights::~WithoutRootRights() {
    if (wasRoot_ && seteuid(0) != 0) std::terminate();
}

}  // namespace kpTables::test
