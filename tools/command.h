// The shape of a subcommand: its row in the command table (name, synopsis,
// help, options, argument counts, handler) and what a handler receives (its
// arguments and options, and the session that holds the catalogue).
#pragma once

#include <cstddef>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace quantor_cli {

// Exit status: done; a conversion, lookup or check failed; the command line was wrong.
enum ExitCode { kExitOk = 0, kExitFailed = 1, kExitUsage = 2 };

class Session;
struct CommandSpec;

// A subcommand's own option; `valueName` is null for a flag.
struct OptionSpec {
    const char* name;
    const char* valueName;
    const char* help;
};

// One subcommand's arguments after its options were taken out.
struct Invocation {
    const CommandSpec* command = nullptr;
    std::vector<std::string> args;
    std::map<std::string, std::string> options;  // option name (with "--") to its value, "" for a flag

    bool Has(const std::string& name) const { return options.count(name) != 0; }
    const std::string& Value(const std::string& name) const { return options.at(name); }
};

using Handler = int (*)(Session& session, const Invocation& invocation);

struct CommandSpec {
    const char* name;
    const char* synopsis;  // the arguments, as in "quantor NAME SYNOPSIS"
    const char* summary;   // one line for the command list
    const char* details;   // the rest of "quantor help NAME"
    std::span<const OptionSpec> options;
    size_t minArgs;
    size_t maxArgs;
    Handler run;
    bool hidden = false;  // left out of the help (used by the shell completion)
};

// Prints "quantor: MESSAGE" and the command's usage line on stderr; answers kExitUsage.
int UsageError(const Invocation& invocation, const std::string& message);

// The handlers of the command table.
int ConvertRun(Session& session, const Invocation& invocation);
int CheckRun(Session& session, const Invocation& invocation);
int InfoRun(Session& session, const Invocation& invocation);
int CategoriesRun(Session& session, const Invocation& invocation);
int UnitsRun(Session& session, const Invocation& invocation);
int PrintRun(Session& session, const Invocation& invocation);
int ValueRun(Session& session, const Invocation& invocation);
int ReadRun(Session& session, const Invocation& invocation);
int TranslateRun(Session& session, const Invocation& invocation);
int NamesRun(Session& session, const Invocation& invocation);

}  // namespace quantor_cli
