// Reading the command line: global options (before or after the subcommand),
// the subcommand, its own options and its arguments. A subcommand's option
// wins over a global option of the same name once the subcommand is named.
#pragma once

#include <string>
#include <string_view>

#include "command.h"
#include "session.h"

namespace quantor_cli {

struct CommandLine {
    const CommandSpec* command = nullptr;  // null: no subcommand given
    Invocation invocation;
    GlobalOptions global;
    bool help = false;
    bool version = false;
};

using CommandFinder = const CommandSpec* (*)(std::string_view name);

// False with `error` set when the command line is wrong; `line.command` is
// then the subcommand as far as it was read, for the usage line.
bool CommandLineRead(int argc, char** argv, CommandFinder find, CommandLine& line, std::string& error);

}  // namespace quantor_cli
