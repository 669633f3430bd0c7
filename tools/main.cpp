// The quantor command: converts values between units of measure, converts
// whole files of values, checks description files and shows the catalogue.
// Subcommands are rows of a table (name, synopsis, help, options, handler);
// main reads the global options, picks the row and hands it its arguments.
#include <cstring>
#include <string>
#include <string_view>

#include "command.h"
#include "command_line.h"
#include "help.h"
#include "output.h"
#include "session.h"
#include "text.h"

namespace quantor_cli {

namespace {

constexpr OptionSpec kConvertOptions[] = {
    {"--digits", "P,Q", "format the result with P digits before and Q after the point, as the unit's rules shift them"},
    {"--file", "F", "convert the \"VALUE FROM [TO]\" lines of F (- for standard input)"},
};
constexpr OptionSpec kCheckOptions[] = {
    {"--strict", nullptr, "fail on warnings too"},
};
constexpr OptionSpec kPrintOptions[] = {
    {"--all-rules", nullptr, "print the derived rules too, not only those the files state"},
};

constexpr size_t kMany = static_cast<size_t>(-1);

const CommandSpec kCommands[] = {
    {"convert", "VALUE FROM [TO]", "convert a value from one unit into another",
     "FROM and TO are unit names (synonyms and display names of the chosen language\n"
     "work too); a category name stands for its default internal unit as FROM and\n"
     "its display unit as TO. Without TO the value is converted into the display\n"
     "unit of FROM's category. VALUE is a decimal number such as 2.5, -40 or 1e-3.\n"
     "\n"
     "quantor convert - (or --file F) reads one \"VALUE FROM [TO]\" per line and writes\n"
     "one result per line; a line that fails is reported on stderr with its line\n"
     "number, leaves an empty output line, and makes the exit status 1.\n",
     kConvertOptions, 0, 3, ConvertRun},
    {"check", "[FILE...]", "check description files and show every finding at its place",
     "Reads the files in the given order into one catalogue, as the defaults do, and\n"
     "prints each finding as file:line:column: error|warning: message, with the\n"
     "source line and a caret. Without FILE it checks the files of the default\n"
     "catalogue. Exit status 1 on any error (with --strict, on any warning too).\n",
     kCheckOptions, 0, kMany, CheckRun},
    {"info", "NAME", "show a unit or category with its default units and rules",
     "For a unit: its category, display name, the category's default units and every\n"
     "rule from and to the unit. For a category: its default units and its units.\n",
     {}, 1, 1, InfoRun},
    {"categories", "", "list categories with storage and display units", "", {}, 0, 0, CategoriesRun},
    {"units", "[CATEGORY]", "list units with their display names", "", {}, 0,
     1, UnitsRun},
    {"print", "", "print the catalogue in the description language",
     "With --file F, prints the catalogue that the files make.\n", kPrintOptions, 0, 0, PrintRun},
    {"value", "UNIT VALUE", "write an exact value-with-unit text",
     "The text (u:NAME i:IMAGE n:VALUE) keeps the exact bits of the value; unit names\n"
     "need at least four characters.\n",
     {}, 2, 2, ValueRun},
    {"read", "TEXT", "read a value-with-unit text back", "", {}, 1, 1, ReadRun},
    {"translate", "UNIT", "the display name of a unit in the chosen language", "", {}, 1, 1, TranslateRun},
    {"help", "[COMMAND]", "show help for the command or one subcommand", "", {}, 0, 1, nullptr},
    {"names", "", "every unit and category name, one a line (for shell completion)", "", {}, 0, 0, NamesRun,
     true},
};

const CommandSpec* CommandFind(std::string_view name) {
    for (const CommandSpec& command : kCommands)
        if (name == command.name) return &command;
    return nullptr;
}

int HelpRun(const std::vector<std::string>& args) {
    if (args.empty()) {
        HelpPrint(kCommands, Out());
        return kExitOk;
    }
    const CommandSpec* command = CommandFind(args[0]);
    if (!command) {
        ErrorLine("unknown command: " + args[0] + " (quantor help lists the commands)");
        return kExitUsage;
    }
    CommandHelpPrint(*command, Out());
    return kExitOk;
}

int Run(int argc, char** argv) {
    CommandLine line;
    std::string error;
    if (!CommandLineRead(argc, argv, CommandFind, line, error)) {
        ErrorLine(error);
        UsagePrint(kCommands, line.command);
        return kExitUsage;
    }
    if (line.version) {
        Out().Line("quantor " QUANTOR_VERSION);
        return kExitOk;
    }
    if (!line.command || line.command->run == nullptr) return HelpRun(line.invocation.args);
    if (line.help) {
        CommandHelpPrint(*line.command, Out());
        return kExitOk;
    }
    Session session(line.global);
    return line.command->run(session, line.invocation);
}

}  // namespace

int UsageError(const Invocation& invocation, const std::string& message) {
    ErrorLine(message);
    UsagePrint(kCommands, invocation.command);
    return kExitUsage;
}

}  // namespace quantor_cli

int main(int argc, char** argv) {
    const int status = quantor_cli::Run(argc, argv);
    quantor_cli::Out().Flush();
    return status;
}
