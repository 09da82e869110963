#pragma once

// The statements and expressions of ptshell after parsing.

#include <memory>
#include <string>
#include <vector>

namespace ptshell {

struct Expr;
using ExprPtr = std::unique_ptr<Expr>;

/// What follows a name: .field, (arguments) or {arguments}.
struct Accessor {
    enum class Kind { Field, Paren, Brace };
    Kind kind;
    std::string field;
    std::vector<ExprPtr> args;
    int line = 0;
    int column = 0;
};

struct Expr {
    enum class Kind { Number, String, Bool, Name, Cell, Matrix, Binary, Unary, Range };
    Kind kind;
    int line = 0;
    int column = 0;

    double number = 0.0;              // Number
    std::string text;                 // String; Name: the first identifier; Unary: the operator
    bool flag = false;                // Bool
    std::vector<Accessor> accessors;  // Name
    std::vector<std::vector<ExprPtr>> rows;  // Cell, Matrix
    ExprPtr left;                            // Range; Unary: the operand
    ExprPtr right;                           // Range
    /// Binary: a chain of operators of one precedence, as in a + b - c, taken from the left.
    /// A chain of any length is one node, so that nothing recurses once per operator.
    std::vector<ExprPtr> operands;
    std::vector<std::string> operators;  // operators[i] stands between operands i and i + 1
};

struct Statement {
    enum class Kind { Expression, Assign, For, Try };
    Kind kind;
    int line = 0;
    int column = 0;
    /// Not followed by ';': the result is shown.
    bool display = true;
    ExprPtr expr;                    // Expression; Assign: the value; For: the range
    std::string name;                // Assign: the variable; For: the loop variable; Try: the error
    std::vector<Statement> body;     // For, Try
    std::vector<Statement> handler;  // Try: after catch
};

using Program = std::vector<Statement>;

}  // namespace ptshell
