#include "BookCopy.h"

#include <fcntl.h>
#include <unistd.h>

#include <stdexcept>

namespace kpTables::bench {

void CopyBook(const std::filesystem::path& from, const std::filesystem::path& to) {
    for (const char* log : {"-wal", "-shm"}) {
        std::filesystem::remove(to.string() + log);
    }
    std::filesystem::copy_file(from, to, std::filesystem::copy_options::overwrite_existing);
    const int file = open(to.c_str(), O_RDWR);
    if (file < 0 || fsync(file) != 0) {
        throw std::runtime_error("cannot write " + to.string());
    }
    close(file);
}

}  // namespace kpTables::bench
