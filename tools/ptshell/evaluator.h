#pragma once

// Runs parsed statements over host values: variables, built-ins, and calls of class methods
// and package functions through the class system.

#include <pt_platform/hv.h>

#include <atomic>
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
    /// The most elements a value may hold, those in its cells and fields included; no limit
    /// of its own unless set.
    std::size_t maxElements = std::numeric_limits<std::size_t>::max();
    /// The most bytes a value that the shell makes may hold, its cells' and fields' contents
    /// included. A value that would hold more is refused before it is made.
    std::size_t maxValueBytes = std::size_t{1} << 30;
    /// When set, the running statement stops with the error "Interrupted" at its next step
    /// (the flag is cleared then). A signal handler may set it.
    std::atomic<bool>* interrupt = nullptr;
};

/// A value that an expression gives: lent by a variable when the expression is the variable's
/// name alone, or made for it. Nothing that an expression does can change a variable, so a lent
/// value stays valid while the expression is evaluated.
class Operand {
public:
    Operand() = default;
    explicit Operand(hvUniqueArray made) : _made(std::move(made)), _value(_made.get()) {}
    static Operand lent(const hvArray* value) {
        Operand operand;
        operand._value = value;
        return operand;
    }

    const hvArray* get() const { return _value; }
    explicit operator bool() const { return _value != nullptr; }
    /// The value to keep: the one made, or a copy of the lent one.
    hvUniqueArray take();

private:
    hvUniqueArray _made;
    const hvArray* _value = nullptr;
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
    using Builtin = std::function<hvUniqueArray(Evaluator&, std::vector<Operand>&)>;

    std::ostream& out() { return _out; }
    const EvalOptions& options() const { return _options; }

    /// Refuses a value with more elements, all nested ones counted, than a run may make, or
    /// one that nests too deeply.
    void checkSize(const hvArray* value) const;
    /// Refuses to make a value of this many bytes when it is more than a value may hold.
    void checkBytes(std::size_t bytes) const;
    /// Stops the running statement with "Interrupted" when an interrupt was asked for.
    void checkInterrupt();

private:
    void execute(const Statement& statement);
    void runBlock(const std::vector<Statement>& statements);

    /// The value of an expression; an expression without a value is an error.
    hvUniqueArray evaluate(const Expr& expr);
    /// The same, lent where the expression is a variable's name alone.
    Operand operand(const Expr& expr);
    /// The value of a name with its accessors, or null when a call at the top of a statement
    /// (nargout 0) answers nothing. A variable without accessors is lent.
    Operand evaluateName(const Expr& expr, std::uint32_t nargout);
    hvUniqueArray call(const std::string& path, const Accessor* arguments, std::uint32_t nargout);
    Operand access(Operand value, const Accessor& accessor);
    std::vector<Operand> evaluateArguments(const std::vector<ExprPtr>& args);

    hvUniqueArray binary(const Expr& expr);
    hvUniqueArray unary(const Expr& expr);
    hvUniqueArray range(const Expr& expr);
    hvUniqueArray matrix(const Expr& expr);
    hvUniqueArray cell(const Expr& expr);

    void countLoopStep();

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
