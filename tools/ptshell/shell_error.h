#pragma once

#include <string>

namespace ptshell {

/// An error in a session: its identifier, its message, and the method, function or built-in
/// that raised it (empty for the shell's own evaluation).
struct ShellError {
    std::string id;
    std::string message;
    std::string where;
    /// What the shell adds to the line it prints, e.g. which names a method takes; never part
    /// of the message that a catch sees.
    std::string hint = {};
};

/// The line that reports an uncaught error.
inline std::string errorLine(const ShellError& error) {
    return (error.where.empty() ? std::string("Error: ") : "Error in " + error.where + ": ") +
           error.message + (error.hint.empty() ? "" : " " + error.hint);
}

/// Raised by exit and quit.
struct ExitRequest {
    int status;
};

}  // namespace ptshell
