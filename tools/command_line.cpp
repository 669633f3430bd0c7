// The command-line reader. Options take their value as "--name VALUE" or
// "--name=VALUE"; "--" ends the options; "-" and negative numbers are
// arguments, not options.
#include "command_line.h"

#include <quantor/setting_names.h>

#include "text.h"

namespace quantor_cli {

namespace {

struct Reader {
    int argc;
    char** argv;
    int next = 1;

    bool AtEnd() const { return next >= argc; }
    std::string_view Take() { return argv[next++]; }
};

// Splits "--name=value" into its name and value.
std::string_view OptionName(std::string_view word, std::optional<std::string_view>& inlineValue) {
    const size_t equals = word.find('=');
    if (word.rfind("--", 0) != 0 || equals == std::string_view::npos) return word;
    inlineValue = word.substr(equals + 1);
    return word.substr(0, equals);
}

bool ValueTake(Reader& reader, std::string_view name, std::optional<std::string_view> inlineValue,
               std::string& value, std::string& error) {
    if (inlineValue) {
        value = *inlineValue;
        return true;
    }
    if (reader.AtEnd()) {
        error = "option " + std::string(name) + " needs a value";
        return false;
    }
    value = reader.Take();
    return true;
}

std::string NameList(std::span<const QtrSettingName> table) {
    std::string list;
    for (const QtrSettingName& entry : table) list += (list.empty() ? "" : ", ") + Utf8(entry.name);
    return list;
}

using SettingRead = bool (*)(const wchar_t* text, int32_t& value);

// Reads a named or numbered setting into `target`; `what` and `hint` word the error.
bool SettingSet(const std::string& value, SettingRead read, std::span<const QtrSettingName> names, const char* what,
                const char* hint, std::optional<int32_t>& target, std::string& error) {
    int32_t number = 0;
    if (read(Wide(value).c_str(), number)) {
        target = number;
        return true;
    }
    error = std::string("unknown ") + what + ": " + value + " (use " + NameList(names) + " or " + hint + ")";
    return false;
}

enum class Taken { No, Yes, Failed };

// Reads a global option at the reader; Taken::No when `name` is none.
Taken GlobalOptionRead(Reader& reader, std::string_view name, std::optional<std::string_view> inlineValue,
                       CommandLine& line, std::string& error) {
    GlobalOptions& global = line.global;
    if (name == "--json") global.json = true;
    else if (name == "-h" || name == "--help") line.help = true;
    else if (name == "--version") line.version = true;
    else if (name == "--lang" || name == "--region" || name == "--units-dir" || name == "--file") {
        std::string value;
        if (!ValueTake(reader, name, inlineValue, value, error)) return Taken::Failed;
        if (name == "--lang" && !SettingSet(value, QtrLanguageIdRead, QtrLanguageNames(), "language",
                                            "a language id such as 0x0407", global.language, error))
            return Taken::Failed;
        if (name == "--region" && !SettingSet(value, QtrCurrencyModeRead, QtrCurrencyRegionNames(), "currency region",
                                              "a mode number", global.region, error))
            return Taken::Failed;
        if (name == "--units-dir") global.unitsDir = value;
        if (name == "--file") global.files.push_back(value);
    } else {
        return Taken::No;
    }
    return Taken::Yes;
}

const OptionSpec* CommandOptionFind(const CommandSpec& command, std::string_view name) {
    for (const OptionSpec& option : command.options)
        if (name == option.name) return &option;
    return nullptr;
}

// "-", a negative number and anything not starting with '-' are arguments.
bool IsArgument(std::string_view word) {
    double number = 0.0;
    return word.empty() || word[0] != '-' || word == "-" || NumberRead(word, number);
}

bool CountCheck(const CommandLine& line, std::string& error) {
    const CommandSpec& command = *line.command;
    const size_t count = line.invocation.args.size();
    if (count >= command.minArgs && count <= command.maxArgs) return true;
    error = std::string("quantor ") + command.name + (count < command.minArgs ? " needs " : " takes only ") +
            (*command.synopsis ? command.synopsis : "no arguments");
    return false;
}

bool WordRead(Reader& reader, CommandFinder find, CommandLine& line, bool& optionsEnded, std::string& error) {
    const std::string_view word = reader.Take();
    if (optionsEnded || IsArgument(word)) {
        if (line.command) {
            line.invocation.args.emplace_back(word);
            return true;
        }
        line.command = find(word);
        line.invocation.command = line.command;
        if (!line.command) error = "unknown command: " + std::string(word);
        return line.command != nullptr;
    }
    if (word == "--") return optionsEnded = true;
    std::optional<std::string_view> inlineValue;
    const std::string_view name = OptionName(word, inlineValue);
    if (const OptionSpec* option = line.command ? CommandOptionFind(*line.command, name) : nullptr) {
        std::string value;
        if (option->valueName && !ValueTake(reader, name, inlineValue, value, error)) return false;
        line.invocation.options[std::string(name)] = value;
        return true;
    }
    const Taken taken = GlobalOptionRead(reader, name, inlineValue, line, error);
    if (taken == Taken::No)
        error = "unknown option: " + std::string(word) + (line.command ? std::string(" for quantor ") + line.command->name : "");
    return taken == Taken::Yes;
}

}  // namespace

bool CommandLineRead(int argc, char** argv, CommandFinder find, CommandLine& line, std::string& error) {
    Reader reader{argc, argv};
    bool optionsEnded = false;
    while (!reader.AtEnd())
        if (!WordRead(reader, find, line, optionsEnded, error)) return false;
    if (line.help || line.version || !line.command) return true;
    return CountCheck(line, error);
}

}  // namespace quantor_cli
