#pragma once

// A session: texts parsed and run one after another over the same variables, with uncaught
// errors reported as one line each.

#include <ostream>
#include <string>
#include <vector>

#include "evaluator.h"

namespace ptshell {

class Session {
public:
    enum class Outcome { Done, Failed, Exited };

    Session(std::ostream& out, std::ostream& err, EvalOptions options = {});

    /// Runs a text; an uncaught error is printed and ends the text. After Exited, status holds
    /// the exit status.
    Outcome run(const std::string& text, int& status);
    /// Whether a text is complete: false while a block, bracket or text is still open, so that
    /// an interactive session reads another line.
    static bool isComplete(const std::string& text);
    /// The names that complete the word line[start, end) (see completeWord).
    std::vector<std::string> completions(const std::string& line, std::size_t start,
                                         std::size_t end) const;

private:
    Evaluator _evaluator;
    std::ostream& _out;
    std::ostream& _err;
};

}  // namespace ptshell
