#include "engines/SchemaScript.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/output/Output.h"

namespace kpTables::kpbook::commands {

int Schema(const SchemaOptions& options, const GlobalOptions& global) {
    output::Output output(global.outputPath);
    output.Write(engines::SchemaScript(options.dialect));
    output.Close();
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
