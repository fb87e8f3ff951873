#include <exception>
#include <new>

#include "kpTables/text/Message.h"
#include "kpbook/Catalogue.h"
#include "kpbook/CommandLine.h"
#include "kpbook/Exit.h"
#include "kpbook/Memory.h"
#include "kpbook/Terminal.h"
#include "kpbook/Utf8.h"
#include "platform/Program.h"
#include "platform/Signals.h"
#include "platform/Terminal.h"

// Memory may be short already for the objects that are made before main.
[[gnu::constructor(101)]] static void WatchMemoryFromTheStart() { kpTables::kpbook::WatchMemory(); }

int main(int count, char** words) {
    using namespace kpTables::kpbook;
    // A reader that goes away (head) must fail a write instead of killing the program, so that the book is closed
    // properly.
    kpTables::platform::PrepareStreams();
    kpTables::platform::WatchSignals();
    try {
        SpeakAskedLanguage();
        return RunCommandLine(kpTables::platform::CommandLineWords(count, words));
    } catch (const std::bad_alloc&) {
        // Nothing that tells of it may need memory.
        TellText("kpbook: ");
        TellText(kpTables::Translated("Out of memory"));
        TellText("\n");
        return kFailed;
    } catch (const std::exception& error) {
        TellLine("kpbook: " + ReplaceInvalidUtf8(error.what()));
        return kFailed;
    }
}
