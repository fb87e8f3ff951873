// XML as a stream of elements.
#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace kpTables::kpbook::input {

/// The attributes of an element.
class XmlAttributes {
public:
    explicit XmlAttributes(const char** pairs) noexcept : pairs_(pairs) {}
    /// By its name without a prefix; "" when it is not there.
    std::string_view operator[](std::string_view name) const noexcept;

private:
    const char** pairs_;
};

/// Calls back for what it reads; names come without their prefix. A document type is refused.
class XmlParser {
public:
    /// Reads the next bytes, at most size; returns their number, 0 at the end.
    using Source = std::function<std::size_t(char* buffer, std::size_t size)>;

    explicit XmlParser(Source source);
    ~XmlParser();
    XmlParser(const XmlParser&) = delete;
    XmlParser& operator=(const XmlParser&) = delete;

    std::function<void(std::string_view name, const XmlAttributes& attributes)> onStart;
    std::function<void(std::string_view name)> onEnd;
    std::function<void(std::string_view text)> onText;

    /// Reads on, to the end or until Pause is called from a callback; false at the end. A CommandError says on which
    /// line the text is no XML.
    bool Run();
    void Pause();

private:
    struct Handle;

    Source source_;
    std::unique_ptr<Handle> handle_;
    bool paused_ = false;
    bool ended_ = false;
    std::exception_ptr failure_;
};

}  // namespace kpTables::kpbook::input
