// ptreport: reports, exports and checks of saved runs from the command line.
//
//     ptreport SUBCOMMAND [OPTIONS] FILES...
//
// Exit status: 0 success, 1 a check that found what it looks for, 2 a usage error, bad input,
// or a file that cannot be read or written, with one line on standard error.

#include <performance_tracer/runs.h>

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "commands.h"

namespace {

using ptreport::Command;

void printOverview() {
    std::FILE* out = stdout;
    std::fprintf(out,
                 "usage: ptreport SUBCOMMAND [OPTIONS] FILES...\n"
                 "\n"
                 "Reports of runs saved by the tracer (value files, .hvf):\n\n");
    for (const Command& command : ptreport::commands()) {
        std::fprintf(out, "  %-10s %s\n", command.name, command.summary);
    }
    std::fprintf(out,
                 "\n"
                 "'ptreport SUBCOMMAND --help' tells more. Exit status: 0 success, 1 a check that\n"
                 "found what it looks for, 2 a usage error, bad input or an unreadable or\n"
                 "unwritable file.\n");
}

const Command* find(const std::string& name) {
    for (const Command& command : ptreport::commands()) {
        if (name == command.name) {
            return &command;
        }
    }
    return nullptr;
}

}  // namespace

int main(int argc, char** argv) {
    namespace status = ptreport::exit_status;
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words.empty()) {
        std::fprintf(stderr, "ptreport: which subcommand? 'ptreport --help' lists them\n");
        return status::kFailure;
    }
    if (words[0] == "--help" || words[0] == "-h" || words[0] == "help") {
        printOverview();
        return status::kSuccess;
    }
    if (words[0] == "--version") {
        std::printf("ptreport %s\n", PT_VERSION);
        return status::kSuccess;
    }
    const Command* command = find(words[0]);
    if (!command) {
        std::fprintf(stderr, "ptreport: unknown subcommand '%s'; 'ptreport --help' lists them\n",
                     words[0].c_str());
        return status::kFailure;
    }
    const std::vector<std::string> rest(words.begin() + 1, words.end());
    for (const std::string& word : rest) {
        if (word == "--help" || word == "-h") {
            std::fputs(command->help, stdout);
            return status::kSuccess;
        }
    }
    try {
        return command->run(ptreport::Arguments(rest, command->options));
    } catch (const ptreport::UsageError& error) {
        std::fprintf(stderr, "ptreport %s: %s; 'ptreport %s --help' tells how\n", command->name,
                     error.what(), command->name);
    } catch (const pt::Error& error) {
        std::fprintf(stderr, "ptreport %s: %s\n", command->name, error.what());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "ptreport %s: %s\n", command->name, error.what());
    }
    return status::kFailure;
}
