#include "kpbook/shell/LineEditor.h"

#include <langinfo.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <string_view>
#include <utility>

#include "kpbook/Interruption.h"
#include "kpbook/Utf8.h"
#include "kpbook/shell/EditLibrary.h"
#include "kpbook/shell/WideText.h"
#include "platform/Input.h"

namespace kpTables::kpbook::shell {

namespace {

constexpr int kHistoryLines = 1000;

/// The library shows characters by the program's locale; books are UTF-8 whatever the user's is.
void ShowUtf8() {
    std::setlocale(LC_CTYPE, "");
    if (std::string_view(::nl_langinfo(CODESET)) != "UTF-8") std::setlocale(LC_CTYPE, "C.UTF-8");
}

class TerminalEditor : public LineEditor {
public:
    TerminalEditor(const EditLibrary& library, std::function<Completion(const std::string&)> complete)
        : library_(library), complete_(std::move(complete)) {
        ShowUtf8();
        editor_ = library_.begin("kpbook", stdin, stdout, stderr);
        history_ = library_.beginHistory();
        const wchar_t* const noMore = nullptr;
        current_ = this;
        library_.set(editor_, EL_SIGNAL, 0);
        library_.set(editor_, EL_EDITOR, L"emacs");
        library_.set(editor_, EL_PROMPT, &Prompt);
        library_.set(editor_, EL_GETCFN, &ReadCharacter);
        library_.set(editor_, EL_ADDFN, L"kpbook-complete", L"Complete the word", &CompleteWord);
        library_.set(editor_, EL_BIND, L"\t", L"kpbook-complete", noMore);
        library_.set(editor_, EL_BIND, L"^R", L"em-inc-search-prev", noMore);
        HistEventW event{};
        library_.history(history_, &event, H_SETSIZE, kHistoryLines);
        library_.history(history_, &event, H_SETUNIQUE, 1);
        library_.set(editor_, EL_HIST, library_.history, history_);
    }
    ~TerminalEditor() override {
        library_.endHistory(history_);
        library_.end(editor_);
        current_ = nullptr;
    }
    TerminalEditor(const TerminalEditor&) = delete;
    TerminalEditor& operator=(const TerminalEditor&) = delete;

    std::optional<std::string> Read(const std::string& prompt) override {
        prompt_ = WideText(prompt);
        interrupted_ = false;
        library_.resize(editor_);
        int count = 0;
        const wchar_t* const line = library_.readLine(editor_, &count);
        if (interrupted_) {
            std::fputs("^C\n", stdout);
            throw Interrupted();
        }
        if (!line || count <= 0) return std::nullopt;
        std::string text = NarrowText({line, static_cast<std::size_t>(count)});
        if (text.ends_with('\n')) text.pop_back();
        return text;
    }

    void Remember(const std::string& line) override {
        HistEventW event{};
        library_.history(history_, &event, H_ENTER, WideText(line).c_str());
    }

private:
    // The library's functions know the editor, but are C: there is one editor at a time.
    static inline TerminalEditor* current_ = nullptr;

    static wchar_t* Prompt(EditLine* /*editor*/) { return current_->prompt_.data(); }

    static int ReadCharacter(EditLine* /*editor*/, wchar_t* character) {
        std::string bytes;
        try {
            do {
                char byte = 0;
                const auto count = platform::ReadInput(platform::kStandardInput, &byte, 1);
                ThrowIfInterrupted();
                if (count != 1) return 0;
                bytes += byte;
            } while (bytes.size() < SequenceLength(bytes.front()));
        } catch (const Interrupted&) {
            current_->interrupted_ = true;
            return -1;
        }
        *character = WideText(ReplaceInvalidUtf8(bytes)).front();
        return 1;
    }

    static unsigned char CompleteWord(EditLine* editor, wint_t /*key*/) { return current_->Complete(editor); }

    unsigned char Complete(EditLine* editor) {
        const LineInfoW* const line = library_.line(editor);
        const std::string before = NarrowText({line->buffer, static_cast<std::size_t>(line->cursor - line->buffer)});
        const Completion found = complete_(before);
        if (found.texts.empty()) return CC_ERROR;
        const std::string word = before.substr(found.from);
        const std::string common = CommonBeginning(found.texts);
        if (found.texts.size() > 1 && common.size() <= word.size()) {
            List(found.texts);
            return CC_REDISPLAY;
        }
        library_.erase(editor, static_cast<int>(WideText(word).size()));
        library_.insert(editor, WideText(common).c_str());
        return CC_REFRESH;
    }

    static void List(const std::vector<std::string>& texts) {
        constexpr std::size_t kLineWidth = 78;
        std::size_t width = 0;
        for (const auto& text : texts) width = std::max(width, DisplayWidth(text) + 2);
        std::fputc('\n', stdout);
        std::size_t used = 0;
        for (const auto& text : texts) {
            if (used > 0 && used + width > kLineWidth) {
                std::fputc('\n', stdout);
                used = 0;
            }
            std::fputs((text + std::string(width - DisplayWidth(text), ' ')).c_str(), stdout);
            used += width;
        }
        std::fputc('\n', stdout);
    }

    const EditLibrary& library_;
    std::function<Completion(const std::string&)> complete_;
    EditLine* editor_ = nullptr;
    HistoryW* history_ = nullptr;
    std::wstring prompt_;
    bool interrupted_ = false;
};

}  // namespace

std::unique_ptr<LineEditor> LineEditor::Make(std::function<Completion(const std::string& before)> complete) {
    const EditLibrary* const library = LoadEditLibrary();
    if (!library) return nullptr;
    return std::make_unique<TerminalEditor>(*library, std::move(complete));
}

}  // namespace kpTables::kpbook::shell
