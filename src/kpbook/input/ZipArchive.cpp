#include "kpbook/input/ZipArchive.h"

#include <minizip/unzip.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"

namespace kpTables::kpbook::input {

/// What the library reads from, by functions like those of files.
struct ZipArchive::Bytes {
    std::string bytes;
    std::uint64_t at = 0;

    static Bytes& Of(void* stream) { return *static_cast<Bytes*>(stream); }
    static void* Open(void* opaque, const void*, int) { return opaque; }
    static uLong Read(void*, void* stream, void* buffer, uLong size) {
        auto& self = Of(stream);
        const auto count = std::min<std::uint64_t>(size, self.bytes.size() - self.at);
        std::memcpy(buffer, self.bytes.data() + self.at, count);
        self.at += count;
        return static_cast<uLong>(count);
    }
    static uLong Write(void*, void*, const void*, uLong) { return 0; }
    static ZPOS64_T Tell(void*, void* stream) { return Of(stream).at; }
    static long Seek(void*, void* stream, ZPOS64_T offset, int origin) {
        auto& self = Of(stream);
        const std::uint64_t base = origin == ZLIB_FILEFUNC_SEEK_SET   ? 0
                                   : origin == ZLIB_FILEFUNC_SEEK_CUR ? self.at
                                                                      : self.bytes.size();
        if (offset > self.bytes.size() - base) return -1;
        self.at = base + offset;
        return 0;
    }
    static int Nothing(void*, void*) { return 0; }
};

ZipArchive::ZipArchive(std::string bytes, std::string name)
    : name_(std::move(name)), bytes_(std::make_unique<Bytes>(Bytes{std::move(bytes), 0})) {
    zlib_filefunc64_def functions{Bytes::Open, Bytes::Read,    Bytes::Write,   Bytes::Tell,
                                  Bytes::Seek, Bytes::Nothing, Bytes::Nothing, bytes_.get()};
    zip_ = unzOpen2_64(name_.c_str(), &functions);
    if (!zip_) Fail();
}

ZipArchive::~ZipArchive() {
    if (isOpen_) unzCloseCurrentFile(zip_);
    if (zip_) unzClose(zip_);
}

bool ZipArchive::Open(const std::string& path) {
    constexpr int kCaseMatters = 1;
    Close();
    if (unzLocateFile(zip_, path.c_str(), kCaseMatters) != UNZ_OK) return false;
    if (unzOpenCurrentFile(zip_) != UNZ_OK) Fail();
    isOpen_ = true;
    return true;
}

std::size_t ZipArchive::Read(char* buffer, std::size_t size) {
    const int count = unzReadCurrentFile(zip_, buffer, static_cast<unsigned>(size));
    if (count < 0) Fail();
    // Closing compares the checksum of what has been read.
    if (count == 0) Close();
    return static_cast<std::size_t>(count);
}

void ZipArchive::Close() {
    if (isOpen_ && std::exchange(isOpen_, false) && unzCloseCurrentFile(zip_) != UNZ_OK) Fail();
}

void ZipArchive::Fail() const { throw CommandError(Message("{1}: is no workbook, or a damaged one", name_)); }

}  // namespace kpTables::kpbook::input
