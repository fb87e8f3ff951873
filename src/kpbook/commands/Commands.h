// The commands. Each returns the program's exit code; a failure is an Error or a CommandError.
#pragma once

#include "kpbook/Exit.h"
#include "kpbook/GlobalOptions.h"
#include "kpbook/commands/Options.h"

namespace kpTables::kpbook::commands {

int NewBook(const NewOptions& options, const GlobalOptions& global);
int Opening(const OpeningOptions& options, const GlobalOptions& global);
int Copy(const CopyOptions& options, const GlobalOptions& global);
int Books(const BooksOptions& options, const GlobalOptions& global);
int Schema(const SchemaOptions& options, const GlobalOptions& global);
int Grant(const GrantOptions& options, const GlobalOptions& global);
int Revoke(const GrantOptions& options, const GlobalOptions& global);
int Info(const InfoOptions& options, const GlobalOptions& global);
int Stock(const StockOptions& options, const GlobalOptions& global);
int Report(const ReportOptions& options, const GlobalOptions& global);
int AddMasterRow(const MasterOptions& options, const GlobalOptions& global);
int EditMasterRow(const MasterOptions& options, const GlobalOptions& global);
int RemoveMasterRow(const MasterOptions& options, const GlobalOptions& global);
int ListMasterRows(const MasterOptions& options, const GlobalOptions& global);
int Operators(const OperatorsOptions& options, const GlobalOptions& global);
int Log(const LogOptions& options, const GlobalOptions& global);
int Payroll(const PayrollOptions& options, const GlobalOptions& global);
int Import(const ImportOptions& options, const GlobalOptions& global);
int Export(const ExportOptions& options, const GlobalOptions& global);
int Call(const CallOptions& options, const GlobalOptions& global);
int Sql(const SqlOptions& options, const GlobalOptions& global);
int Close(const CloseOptions& options, const GlobalOptions& global);
int Reopen(const ReopenOptions& options, const GlobalOptions& global);
int Check(const CheckOptions& options, const GlobalOptions& global);
int Backup(const BackupOptions& options, const GlobalOptions& global);
int Upgrade(const UpgradeOptions& options, const GlobalOptions& global);
int Methods(const MethodsOptions& options, const GlobalOptions& global);

}  // namespace kpTables::kpbook::commands
