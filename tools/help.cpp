// The help texts. Global options, the exit status and the environment are
// described once here; each subcommand brings its own lines from the table.
#include "help.h"

#include <quantor/setting_names.h>

#include <cctype>
#include <cstdio>
#include <string>

#include "text.h"

namespace quantor_cli {

namespace {

constexpr const char* kGlobalOptions =
    "options:\n"
    "  --lang CODE        language of unit names: en, de, fr, es or a language id\n"
    "                     (0x0407 or 0407 is hexadecimal, 1031 decimal)\n"
    "  --region NAME      currency region (see below) or its mode number\n"
    "  --units-dir DIR    read the catalogue from DIR instead of the shipped one\n"
    "  --file F           load description file F instead of the catalogue\n"
    "                     (repeatable; files load in the given order)\n"
    "  --json             write machine-readable JSON\n"
    "  -h, --help         show this help (quantor help COMMAND for one command)\n"
    "  --version          show the version\n";

constexpr const char* kTrailer =
    "\n"
    "exit status: 0 done, 1 a conversion, lookup or check failed, 2 wrong usage.\n"
    "environment: QUANTOR_UNITS_DIR, QUANTOR_LANGUAGE_ID and QUANTOR_CURRENCY_MODE\n"
    "take the same values as --units-dir, --lang and --region.\n";

std::string Padded(std::string text, size_t width) {
    if (text.size() < width) text.append(width - text.size(), ' ');
    return text;
}

std::string Usage(const CommandSpec& command) {
    std::string usage = std::string("quantor ") + command.name;
    if (!command.options.empty()) usage += " [OPTIONS]";
    if (*command.synopsis) usage += std::string(" ") + command.synopsis;
    return usage;
}

std::string RegionList() {
    std::string text = "currency regions:\n";
    for (const QtrSettingName& region : QtrCurrencyRegionNames())
        text += "  " + Padded(Utf8(region.name), 19) + Padded(std::to_string(region.value), 4) + Utf8(region.description) + "\n";
    return text;
}

}  // namespace

void HelpPrint(std::span<const CommandSpec> commands, Output& out) {
    out.Write("usage: quantor [OPTIONS] COMMAND [ARGS...]\n\n"
              "Converts values between units of measure and shows and checks the unit\n"
              "catalogue that the library reads from description files.\n\ncommands:\n");
    for (const CommandSpec& command : commands) {
        if (command.hidden) continue;
        const std::string head = std::string(command.name) + " " + command.synopsis;
        out.Line("  " + Padded(head, 24) + " " + command.summary);
    }
    out.Write(std::string("\n") + kGlobalOptions + "\n" + RegionList() + kTrailer);
}

void CommandHelpPrint(const CommandSpec& command, Output& out) {
    out.Line("usage: " + Usage(command));
    out.Line("");
    std::string summary = command.summary;
    summary[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(summary[0])));
    out.Line(summary + ".");
    if (*command.details) out.Write(std::string("\n") + command.details);
    if (!command.options.empty()) {
        out.Write("\noptions of " + std::string(command.name) + ":\n");
        for (const OptionSpec& option : command.options) {
            const std::string head = std::string(option.name) + (option.valueName ? std::string(" ") + option.valueName : "");
            out.Line("  " + Padded(head, 18) + " " + option.help);
        }
    }
    out.Write(std::string("\n") + kGlobalOptions + kTrailer);
}

void UsagePrint(std::span<const CommandSpec> commands, const CommandSpec* command) {
    std::string text;
    if (command) {
        text = "usage: " + Usage(*command) + "\n       (quantor help " + command->name + " for more)\n";
    } else {
        text = "usage: quantor [OPTIONS] COMMAND [ARGS...]\ncommands:";
        for (const CommandSpec& each : commands)
            if (!each.hidden) text += std::string(" ") + each.name;
        text += "\n       (quantor --help for more)\n";
    }
    std::fputs(text.c_str(), stderr);
}

}  // namespace quantor_cli
