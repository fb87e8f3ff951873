// A host's objects, late bound: a connection and recordsets with ADO's members over scripted ones, a grid, a bar.
#pragma once

#include <oaidl.h>

#include <memory>

#include "com/Pointer.h"
#include "kpTables/Connection.h"
#include "kpTables/Grid.h"
#include "kpTables/Host.h"

namespace kpTables::test {

com::Pointer<IDispatch> MakeConnectionDouble(ConnectionPtr connection);
com::Pointer<IDispatch> MakeGridDouble(GridPtr grid);
com::Pointer<IDispatch> MakeBarDouble(std::shared_ptr<ProgressBar> bar);
/// The object as a host has it: a grid's or bar's double, or what the server's own code makes of it.
Variant HostsOwn(const Variant& value);

/// While it lives, the class ADODB.Recordset is the double in this process. The test's prefix redirects its name.
class AdoRecordsetClass {
public:
    AdoRecordsetClass();
    ~AdoRecordsetClass();
    AdoRecordsetClass(const AdoRecordsetClass&) = delete;
    AdoRecordsetClass& operator=(const AdoRecordsetClass&) = delete;

private:
    DWORD cookie_ = 0;
};

}  // namespace kpTables::test
