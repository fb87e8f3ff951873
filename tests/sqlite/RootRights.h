// Tests of what a system's file permissions keep from users.
#pragma once

namespace kpTables::test {

/// Runs the code as a user whom file permissions hold back, when the tests are run by root.
class WithoutRootRights {
public:
    WithoutRootRights();
    ~WithoutRootRights();
    WithoutRootRights(const WithoutRootRights&) = delete;
    WithoutRootRights& operator=(const WithoutRootRights&) = delete;

private:
    bool wasRoot_;
};

}  // namespace kpTables::test
