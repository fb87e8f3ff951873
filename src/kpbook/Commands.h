// The commands. Each answers with the program's exit code; a failure is an Error or a CommandError.
#pragma once

#include <stdexcept>
#include <string>

#include "kpbook/Options.h"

namespace kpTables::kpbook {

enum ExitCode : int { kSucceeded = 0, kFailed = 1, kWrongUsage = 2 };

/// A command that cannot go on; the text says why.
class CommandError : public std::runtime_error {
public:
    explicit CommandError(const std::string& text) : std::runtime_error(text) {}
};

int NewBook(const NewOptions& options, const GlobalOptions& global);
int Info(const InfoOptions& options, const GlobalOptions& global);
int Stock(const StockOptions& options, const GlobalOptions& global);
int Report(const ReportOptions& options, const GlobalOptions& global);
int Operators(const OperatorsOptions& options, const GlobalOptions& global);
int Log(const LogOptions& options, const GlobalOptions& global);
int Payroll(const PayrollOptions& options, const GlobalOptions& global);
int Import(const ImportOptions& options, const GlobalOptions& global);
int Call(const CallOptions& options, const GlobalOptions& global);
int Batch(const BatchOptions& options, const GlobalOptions& global);
int Sql(const SqlOptions& options, const GlobalOptions& global);
int Close(const CloseOptions& options, const GlobalOptions& global);
int Methods(const MethodsOptions& options, const GlobalOptions& global);

}  // namespace kpTables::kpbook
