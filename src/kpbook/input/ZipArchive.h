// The files inside a zip archive.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace kpTables::kpbook::input {

/// An archive in memory. A CommandError says what is damaged, and begins with the archive's name.
class ZipArchive {
public:
    /// name: for messages.
    ZipArchive(std::string bytes, std::string name);
    ~ZipArchive();
    ZipArchive(const ZipArchive&) = delete;
    ZipArchive& operator=(const ZipArchive&) = delete;

    /// Goes to a file; false when there is none. Read then gives its bytes.
    bool Open(const std::string& path);
    /// The file's next bytes, at most size; 0 at the end.
    std::size_t Read(char* buffer, std::size_t size);

private:
    struct Bytes;

    [[noreturn]] void Fail() const;
    void Close();

    std::string name_;
    std::unique_ptr<Bytes> bytes_;
    void* zip_ = nullptr;
    bool isOpen_ = false;
};

}  // namespace kpTables::kpbook::input
