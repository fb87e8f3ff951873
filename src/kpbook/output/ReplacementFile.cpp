#include "kpbook/output/ReplacementFile.h"

#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"

namespace kpTables::kpbook::output {

ReplacementFile::ReplacementFile(const std::string& target) { Check(file_.Begin(target)); }

void ReplacementFile::Keep() { Check(file_.Keep()); }

void ReplacementFile::Check(int code) const {
    if (code != 0) throw CommandError(Message("{1}: cannot be written: {2}", file_.Target(), SystemMessage(code)));
}

}  // namespace kpTables::kpbook::output
