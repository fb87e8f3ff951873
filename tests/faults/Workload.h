// What kpbook is asked to do while things fail, and what it promises about it.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace kpTables::faults {

/// The files of a folder and what they hold.
using Folder = std::map<std::string, std::string>;
using FolderPtr = std::shared_ptr<const Folder>;

/// Empties the current folder and puts these files there.
void PutInPlace(const Folder& folder);
/// The files of the current folder.
Folder TakeFolder();

enum class Promise {
    AllOrNothing,  ///< success: all is done; failure: all or nothing, and the same command can be given again
    EachLine,      ///< a batch: what a line confirmed is there; a line that failed did all or nothing
    Transaction,   ///< a batch within one transaction: the same for all of its lines together
    TrueAnswer,    ///< success: the answer and the book are those of a run without faults; failure says why
};

struct Workload {
    std::string name;
    Promise promise;
    FolderPtr before;
    std::vector<std::string> words;
    std::string input = {};
    /// The books that are compared.
    std::vector<std::string> books = {"b.kpbook"};
};

/// Commands and batches on a small book, and on a larger one when large is set.
std::vector<Workload> Commands(bool large);
/// A call of every method of the late-bound table: one that changes the book where there is one.
std::vector<Workload> MethodCalls();

}  // namespace kpTables::faults
