#pragma once

// The subcommands of ptreport. Each reads its own options and answers an exit status:
// 0 success, 1 a check that found what it looks for, 2 a usage error, bad input, or a file that
// cannot be read or written (raised as an exception and reported by main).

#include <string>
#include <vector>

#include "arguments.h"

namespace ptreport {

namespace exit_status {
inline constexpr int kSuccess = 0;
inline constexpr int kFound = 1;
inline constexpr int kFailure = 2;
}  // namespace exit_status

struct Command {
    const char* name;
    /// One line for the overview of all subcommands.
    const char* summary;
    /// The text of "ptreport NAME --help".
    const char* help;
    std::vector<OptionSpec> options;
    int (*run)(const Arguments& arguments);
};

/// The report subcommands.
std::vector<Command> reportCommands();
/// The export subcommands.
std::vector<Command> exportCommands();
/// The check of many runs against many.
std::vector<Command> checkCommands();

/// Every subcommand, in the order of the overview.
const std::vector<Command>& commands();

}  // namespace ptreport
