#include "kpbook/input/XmlParser.h"

#include <expat.h>

#include <exception>
#include <new>
#include <utility>

#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"

namespace kpTables::kpbook::input {

namespace {

std::string_view WithoutPrefix(std::string_view name) noexcept {
    const auto colon = name.find(':');
    return colon == name.npos ? name : name.substr(colon + 1);
}

}  // namespace

std::string_view XmlAttributes::operator[](std::string_view name) const noexcept {
    for (const char** pair = pairs_; *pair; pair += 2) {
        if (WithoutPrefix(pair[0]) == name) return pair[1];
    }
    return {};
}

/// The library's parser. An exception must not pass through it: it is kept, and raised when the library has returned.
struct XmlParser::Handle {
    explicit Handle(XmlParser& owner) : parser(XML_ParserCreate("UTF-8")) {
        if (!parser) throw std::bad_alloc();
        XML_SetUserData(parser, &owner);
        XML_SetElementHandler(parser, Start, End);
        XML_SetCharacterDataHandler(parser, Text);
        XML_SetStartDoctypeDeclHandler(parser, [](void* user, const char*, const char*, const char*, int) {
            Guarded(user, [](XmlParser&) { throw CommandError(Message("a document type, which no workbook has")); });
        });
    }
    ~Handle() { XML_ParserFree(parser); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    template <class Body>
    static void Guarded(void* user, Body body) noexcept {
        auto& owner = *static_cast<XmlParser*>(user);
        if (owner.failure_) return;
        try {
            body(owner);
        } catch (...) {
            owner.failure_ = std::current_exception();
            XML_StopParser(owner.handle_->parser, XML_FALSE);
        }
    }
    static void Start(void* user, const char* name, const char** pairs) {
        Guarded(user, [&](XmlParser& owner) {
            if (owner.onStart) owner.onStart(WithoutPrefix(name), XmlAttributes(pairs));
        });
    }
    static void End(void* user, const char* name) {
        Guarded(user, [&](XmlParser& owner) {
            if (owner.onEnd) owner.onEnd(WithoutPrefix(name));
        });
    }
    static void Text(void* user, const char* text, int size) {
        Guarded(user, [&](XmlParser& owner) {
            if (owner.onText) owner.onText({text, static_cast<std::size_t>(size)});
        });
    }

    XML_Parser parser;
};

XmlParser::XmlParser(Source source) : source_(std::move(source)), handle_(std::make_unique<Handle>(*this)) {}

XmlParser::~XmlParser() = default;

void XmlParser::Pause() {
    paused_ = true;
    XML_StopParser(handle_->parser, XML_TRUE);
}

bool XmlParser::Run() {
    constexpr int kPiece = 1 << 16;
    XML_Parser parser = handle_->parser;
    while (paused_ || !ended_) {
        XML_Status status = XML_STATUS_OK;
        if (std::exchange(paused_, false)) {
            status = XML_ResumeParser(parser);
        } else {
            auto* buffer = static_cast<char*>(XML_GetBuffer(parser, kPiece));
            if (!buffer) throw std::bad_alloc();
            const auto count = source_(buffer, kPiece);
            ended_ = count == 0;
            status = XML_ParseBuffer(parser, static_cast<int>(count), ended_);
        }
        if (failure_) std::rethrow_exception(failure_);
        if (status == XML_STATUS_ERROR) {
            throw CommandError(Message("line {1} of its XML: {2}", XML_GetCurrentLineNumber(parser),
                                       XML_ErrorString(XML_GetErrorCode(parser))));
        }
        if (paused_) return true;
    }
    return false;
}

}  // namespace kpTables::kpbook::input
