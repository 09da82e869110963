#pragma once

// Runs parsed statements over host values: variables, built-ins, and calls of class methods
// and package functions through the class system.

#include <pt_platform/hv.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "ast.h"
#include "shell_error.h"

namespace ptshell {

struct EvalOptions {
    /// sleep and exit may be switched off, so that a run can neither wait nor end the process.
    bool allowSleep = true;
    bool allowExit = true;
    /// Loop iterations allowed in one run, all loops together.
    std::uint64_t maxLoopSteps = std::numeric_limits<std::uint64_t>::max();
    /// The most elements a range or a concatenation may make.
    std::size_t maxElements = std::size_t{1} << 26;
};

class Evaluator {
public:
    explicit Evaluator(std::ostream& out, EvalOptions options = {});

    /// Runs the statements in order. An uncaught error is raised as ShellError; exit and quit
    /// raise ExitRequest.
    void run(const Program& program);

    const hvArray* variable(const std::string& name) const;
    /// The names of the variables, in order.
    std::vector<std::string> variableNames() const;

    /// A built-in: takes its arguments and answers a value, or null for none.
    using Builtin = std::function<hvUniqueArray(Evaluator&, std::vector<hvUniqueArray>&)>;

    std::ostream& out() { return _out; }
    const EvalOptions& options() const { return _options; }

private:
    void execute(const Statement& statement);
    void runBlock(const std::vector<Statement>& statements);

    /// The value of an expression; an expression without a value is an error.
    hvUniqueArray evaluate(const Expr& expr);
    /// The value of a name with its accessors, or null when a call at the top of a statement
    /// (nargout 0) answers nothing.
    hvUniqueArray evaluateName(const Expr& expr, std::uint32_t nargout);
    hvUniqueArray call(const std::string& path, const Accessor* arguments, std::uint32_t nargout);
    hvUniqueArray access(hvUniqueArray value, const Accessor& accessor);
    std::vector<hvUniqueArray> evaluateArguments(const std::vector<ExprPtr>& args);

    hvUniqueArray binary(const Expr& expr);
    hvUniqueArray unary(const Expr& expr);
    hvUniqueArray range(const Expr& expr);
    hvUniqueArray matrix(const Expr& expr);
    hvUniqueArray cell(const Expr& expr);

    void countLoopStep();

public:
    /// Refuses a value with more elements, all nested ones counted, than a run may make.
    void checkSize(const hvArray* value) const;

private:
    std::ostream& _out;
    EvalOptions _options;
    std::uint64_t _loopSteps = 0;
    std::map<std::string, hvUniqueArray> _variables;
};

/// The built-ins by name.
const std::map<std::string, Evaluator::Builtin>& builtins();

/// A shell error raised outside any call.
[[noreturn]] void fail(const std::string& id, const std::string& message);

}  // namespace ptshell
