// The functions of the system that a loaded module calls, replaced for a test.
#pragma once

#include <windows.h>

#include <deque>
#include <string>
#include <vector>

namespace kpTables::test {

/// Replaces what a module imports under a name; null when it imports nothing of the kind. Answers what was there.
void* ReplaceImport(HMODULE module, const char* name, void* function);

/// While it lives, the server's message boxes are answered from the script, and its day is 2006-08-19.
class ScriptedSystem {
public:
    ScriptedSystem(HMODULE server, std::deque<int> answers);
    ~ScriptedSystem();
    ScriptedSystem(const ScriptedSystem&) = delete;
    ScriptedSystem& operator=(const ScriptedSystem&) = delete;

    struct Box {
        std::wstring text;
        std::wstring title;
        UINT style;
    };
    const std::vector<Box>& Boxes() const { return boxes_; }
    int Answer(const Box& box);

private:
    HMODULE server_;
    std::deque<int> answers_;
    std::vector<Box> boxes_;
    void* messageBox_;
    void* time_;
};

}  // namespace kpTables::test
