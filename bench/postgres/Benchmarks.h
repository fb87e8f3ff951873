// The benchmarks of books on a server.
#pragma once

#include <cstdio>
#include <string>

#include "../BookMaker.h"
#include "../Results.h"
#include "Server.h"

namespace kpTables::bench {

struct ServerSetting {
    std::string folder;
    BookSize size;
    int runs = 5;
    Results* results = nullptr;
};

/// Adds one run's cost to the rows of its processor time and of its seconds; scale: figures of the rows' unit in one
/// second.
inline void Note(Row& processor, Row& seconds, const Cost& ours, const Cost& theirs, double scale = 1) {
    processor.ours.push_back(ours.Processor() * scale);
    processor.theirs.push_back(theirs.Processor() * scale);
    seconds.ours.push_back(ours.seconds * scale);
    seconds.theirs.push_back(theirs.seconds * scale);
    std::fprintf(stderr, "%s: client %.4f + server %.4f, by hand %.4f + %.4f (%s)\n", processor.work.c_str(),
                 ours.client * scale, ours.server * scale, theirs.client * scale, theirs.server * scale,
                 processor.unit.c_str());
}

// Each makes its own books; false when the answers are not the same as those by hand.
bool BenchServerClosing(const ServerSetting& setting);
bool BenchServerReports(const ServerSetting& setting, const std::string& book);
bool BenchServerCalls(const ServerSetting& setting, const std::string& book);
bool BenchServerImport(const ServerSetting& setting);

}  // namespace kpTables::bench
