// Help texts built from the command table: the overview (`quantor --help`),
// one subcommand's help (`quantor help CMD`) and the short usage that a
// wrong command line gets on standard error.
#pragma once

#include <span>

#include "command.h"
#include "output.h"

namespace quantor_cli {

void HelpPrint(std::span<const CommandSpec> commands, Output& out);
void CommandHelpPrint(const CommandSpec& command, Output& out);
// On stderr: the usage line of `command`, or of the whole command when null.
void UsagePrint(std::span<const CommandSpec> commands, const CommandSpec* command);

}  // namespace quantor_cli
