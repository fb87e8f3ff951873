#include "kpbook/commands/CompletionCommand.h"

#include "kpbook/Exit.h"
#include "kpbook/commands/CommandTree.h"
#include "kpbook/output/Output.h"

namespace kpTables::kpbook::commands {

namespace {

std::string Joined(const std::vector<std::string>& words, std::string_view separator = " ") {
    std::string text;
    for (const auto& word : words) {
        if (!text.empty()) text += separator;
        text += word;
    }
    return text;
}

std::string Replaced(std::string text, std::string_view what, std::string_view by) {
    for (auto at = text.find(what); at != text.npos; at = text.find(what, at + by.size())) {
        text.replace(at, what.size(), by);
    }
    return text;
}

/// In single quotes of sh and fish.
std::string InQuotes(const std::string& text, bool fish = false) {
    if (fish) return "'" + Replaced(Replaced(text, "\\", "\\\\"), "'", "\\'") + "'";
    return "'" + Replaced(text, "'", "'\\''") + "'";
}

std::vector<std::string> NamesOf(const std::vector<OptionEntry>& options) {
    std::vector<std::string> names;
    for (const auto& option : options) names.insert(names.end(), option.names.begin(), option.names.end());
    return names;
}

/// "sql:-f|sql:--file": the pattern of an option of a command; "*" is any command.
std::string PatternOf(const std::string& command, const OptionEntry& option) {
    std::vector<std::string> patterns;
    for (const auto& name : option.names) patterns.push_back((command.empty() ? "*" : InQuotes(command)) + ":" + name);
    return Joined(patterns, "|");
}

/// The script's cases.
struct BashCases {
    std::string nested;   ///< commands of commands
    std::string valued;   ///< the pattern of all options that take a value
    std::string choices;  ///< for options with a list of values
    std::string options;  ///< for commands
    std::string words;    ///< for places behind a command
};

BashCases BashCasesOf(const std::vector<CommandPage>& pages) {
    BashCases cases;
    for (const auto& page : pages) {
        for (const auto& child : page.children) {
            const std::string name = (page.name.empty() ? "" : page.name + " ") + child;
            cases.nested += "        " + InQuotes(page.name + ":" + child) + ") command=" + InQuotes(name) + " ;;\n";
        }
        if (!page.children.empty()) {
            cases.words +=
                "        " + InQuotes(page.name + ":0") + ") words=" + InQuotes(Joined(page.children)) + " ;;\n";
        }
        for (const auto& option : page.options) {
            if (option.value.empty()) continue;
            if (!cases.valued.empty()) cases.valued += "|";
            cases.valued += PatternOf(page.name, option);
            if (!option.choices.empty()) {
                cases.choices +=
                    "        " + PatternOf(page.name, option) + ") words=" + InQuotes(Joined(option.choices)) + " ;;\n";
            }
        }
        if (page.name.empty()) continue;
        cases.options +=
            "        " + InQuotes(page.name) + ") options=" + InQuotes(Joined(NamesOf(page.options))) + " ;;\n";
        for (std::size_t i = 0; i < page.words.size(); ++i) {
            if (page.words[i].choices.empty()) continue;
            cases.words += "        " + InQuotes(page.name + ":" + std::to_string(i)) +
                           ") words=" + InQuotes(Joined(page.words[i].choices)) + " ;;\n";
        }
    }
    return cases;
}

std::string BashScript(const std::vector<CommandPage>& pages) {
    const BashCases cases = BashCasesOf(pages);
    const std::string shared = InQuotes(Joined(NamesOf(pages.front().options)));
    return R"(# Completion of kpbook for bash, made by kpbook completion bash.
_kpbook() {
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]}
    local command= position=0 words= options= i
    for ((i = 1; i < COMP_CWORD; i++)); do
        case "$command:${COMP_WORDS[i]}" in
        )" +
           cases.valued + R"() ((i++)) ;;
        *:-*) ;;
)" + cases.nested +
           R"(        *) ((position++)) ;;
        esac
    done
    COMPREPLY=()
    case "$command:$prev" in
)" + cases.choices +
           "        " + cases.valued + R"() return ;;
    *)
        case "$command" in
)" + cases.options +
           R"(        *) ;;
        esac
        case "$command:$position" in
)" + cases.words +
           R"(        *) ;;
        esac
        [[ $cur == -* ]] && words="$options ")" +
           shared + R"(
        ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$cur")
}
complete -o default -F _kpbook kpbook
)";
}

/// An option as _arguments takes it.
std::string ZshOption(const OptionEntry& option) {
    const std::string what = Replaced(Replaced(Replaced(option.what, "[", "("), "]", ")"), ":", "\\:");
    std::string texts;
    for (const auto& name : option.names) {
        std::string spec = (option.repeated ? "*" : "(" + Joined(option.names) + ")") + name + "[" + what + "]";
        if (!option.value.empty()) {
            spec += ":" + option.value + ":" +
                    (option.choices.empty() ? std::string("_files") : "(" + Joined(option.choices) + ")");
        }
        texts += " \\\n            " + InQuotes(spec);
    }
    return texts;
}

std::string ZshScript(const std::vector<CommandPage>& pages) {
    std::string commands;
    std::string cases;
    std::string shared;
    for (const auto& option : pages.front().options) shared += ZshOption(option);
    for (const auto& page : pages) {
        if (page.name.empty() || page.name.find(' ') != page.name.npos) continue;
        commands += "        " + InQuotes(page.name + ":" + page.what) + "\n";
        cases += "    " + page.name + ")\n        _arguments";
        for (const auto& option : page.options) cases += ZshOption(option);
        if (!page.children.empty()) {
            cases += " \\\n            " + InQuotes("1:command:(" + Joined(page.children) + ")");
            cases += " \\\n            '*:file:_files'";
        }
        for (const auto& word : page.words) {
            const std::string values = word.choices.empty() ? "_files" : "(" + Joined(word.choices) + ")";
            cases += " \\\n            " + InQuotes((word.repeated ? "*:" : ":") + word.positional + ":" + values);
        }
        cases += shared + "\n        ;;\n";
    }
    return "#compdef kpbook\n# Completion of kpbook for zsh, made by kpbook completion zsh.\n"
           "_kpbook() {\n"
           "    local -a commands\n"
           "    commands=(\n" +
           commands +
           "    )\n"
           "    local context state line\n"
           "    _arguments -C" +
           shared +
           " \\\n            '1:command:->command' '*::word:->word'\n"
           "    case $state in\n"
           "    command) _describe command commands; return ;;\n"
           "    word) ;;\n"
           "    *) return ;;\n"
           "    esac\n"
           "    case $line[1] in\n" +
           cases +
           "    esac\n"
           "}\n"
           "if [[ $funcstack[1] == _kpbook ]]; then _kpbook \"$@\"; else compdef _kpbook kpbook; fi\n";
}

std::string FishOption(const OptionEntry& option, const std::string& condition) {
    std::string line = "complete -c kpbook" + condition;
    for (const auto& name : option.names) {
        line += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    }
    if (!option.value.empty())
        line += option.choices.empty() ? " -r" : " -x -a " + InQuotes(Joined(option.choices), true);
    return line + " -d " + InQuotes(option.what, true) + "\n";
}

std::string FishScript(const std::vector<CommandPage>& pages) {
    std::string text = "# Completion of kpbook for fish, made by kpbook completion fish.\n";
    for (const auto& option : pages.front().options) text += FishOption(option, "");
    for (const auto& page : pages) {
        if (page.name.empty()) continue;
        const auto blank = page.name.find(' ');
        const bool isNested = blank != page.name.npos;
        const std::string parent = "__fish_seen_subcommand_from " + page.name.substr(0, blank);
        const std::string last = isNested ? page.name.substr(blank + 1) : page.name;
        const std::string condition =
            " -n '" + (isNested ? parent + "; and __fish_seen_subcommand_from " + last : parent) + "'";
        const std::string place = isNested ? InQuotes(parent) : "__fish_use_subcommand";
        text += "complete -c kpbook -n " + place + " -f -a " + last + " -d " + InQuotes(page.what, true) + "\n";
        for (const auto& option : page.options) text += FishOption(option, condition);
        for (const auto& word : page.words) {
            if (word.choices.empty()) continue;
            text += "complete -c kpbook" + condition + " -a " + InQuotes(Joined(word.choices), true) + " -d " +
                    InQuotes(word.what, true) + "\n";
        }
    }
    return text;
}

}  // namespace

void AddCompletion(CLI::App& app, CompletionOptions& options) {
    auto* command = AddCommand(app, "completion", "Write a script that completes kpbook's commands in a shell",
                               "The script knows the commands, their options, and the values that these may have.\n\n"
                               "Examples:\n"
                               "  kpbook completion bash > kpbook.bash\n"
                               "  kpbook completion zsh > _kpbook\n"
                               "  kpbook completion fish > kpbook.fish");
    command->add_option("SHELL", options.shell, "bash, zsh or fish")
        ->required()
        ->check(CLI::IsMember({"bash", "zsh", "fish"}))
        ->type_name("");
}

int Completion(const CLI::App& tree, const CompletionOptions& options, const GlobalOptions& global) {
    const auto pages = ReadCommandTree(tree);
    output::Output output(global.outputPath);
    output.Write(options.shell == "bash"  ? BashScript(pages)
                 : options.shell == "zsh" ? ZshScript(pages)
                                          : FishScript(pages));
    output.Close();
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
