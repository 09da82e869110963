#include "evaluator.h"

#include <pt_platform/except.h>
#include <pt_platform/vos.h>

#include <cmath>
#include <cstring>

#include "display.h"
#include "method_help.h"
#include "values.h"

namespace ptshell {

void fail(const std::string& id, const std::string& message) { throw ShellError{id, message, ""}; }

namespace {

/// Which name a name-value method refused and which it takes, for the error line; the
/// method's own message says neither.
std::string nameHint(const std::string& path, const std::string& errorId,
                     const std::vector<const hvArray*>& inputs) {
    const std::string refused = ":InvalidNames";
    const MethodHelp* method = findMethodHelp(path);
    if (!method || !errorId.ends_with(refused)) {
        return {};
    }
    std::vector<std::string> names;
    for (std::size_t i = 0; i < inputs.size(); i += 2) {
        if (hvIsCharVector(inputs[i])) {
            names.push_back(hvArrayToStdString(inputs[i]));
        }
    }
    // Every method folds its names to lower case but the diagnostic report.
    return unknownNameHint(*method, names, path != "PerfTools.Tracer.diagnosticReport");
}

const char* const kOperandWord = "An operand";
/// Values nest no deeper than this; copying, showing and freeing them recurses.
constexpr std::size_t kMaxNesting = 200;

/// An index from 1 of a value with count elements, as a position from 0.
std::size_t position(const hvArray* index, std::size_t count) {
    const double i = realScalar(index, "An index");
    if (i != std::floor(i) || i < 1) {
        fail("ptshell:BadIndex", "Indices are whole numbers from 1.");
    }
    if (i > static_cast<double>(count)) {
        fail("ptshell:IndexOutOfRange",
             "Index " + numberText(i) + " exceeds the " + std::to_string(count) + " elements.");
    }
    return static_cast<std::size_t>(i) - 1;
}

/// The linear position of one or more indices.
std::size_t linearPosition(const hvArray* value, const std::vector<Operand>& indices) {
    const std::size_t count = hvGetNumberOfElements(value);
    if (indices.size() == 1) {
        return position(indices[0].get(), count);
    }
    const std::size_t ndim = hvGetNumberOfDimensions(value);
    const std::size_t* dims = hvGetDimensions(value);
    std::vector<std::size_t> subs;
    for (std::size_t d = 0; d < indices.size(); ++d) {
        // Past the last dimension only 1 is a valid index; the last given index covers the
        // dimensions after it.
        std::size_t extent = d < ndim ? dims[d] : 1;
        if (d + 1 == indices.size()) {
            for (std::size_t rest = d + 1; rest < ndim; ++rest) {
                extent *= dims[rest];
            }
        }
        subs.push_back(position(indices[d].get(), extent));
    }
    return hvCalcSingleSubscript(value, subs.size(), subs.data());
}

hvUniqueArray logical(bool flag) { return hvUniqueArray(hvCreateLogicalScalar(flag)); }

hvUniqueArray errorStruct(const ShellError& error) {
    const char* names[] = {"id", "message"};
    hvUniqueArray err(hvCreateStructMatrix(1, 1, 2, names));
    hvSetFieldByNumber(err.get(), 0, 0, hvCreateString(error.id));
    hvSetFieldByNumber(err.get(), 0, 1, hvCreateString(error.message));
    return err;
}

}  // namespace

hvUniqueArray Operand::take() {
    return _made ? std::move(_made) : hvUniqueArray(_value ? hvDuplicateArray(_value) : nullptr);
}

Evaluator::Evaluator(std::ostream& out, EvalOptions options) : _out(out), _options(options) {}

std::vector<std::string> Evaluator::variableNames() const {
    std::vector<std::string> names;
    for (const auto& entry : _variables) {
        names.push_back(entry.first);
    }
    return names;
}

const hvArray* Evaluator::variable(const std::string& name) const {
    const auto found = _variables.find(name);
    return found == _variables.end() ? nullptr : found->second.get();
}

void Evaluator::run(const Program& program) { runBlock(program); }

void Evaluator::runBlock(const std::vector<Statement>& statements) {
    for (const Statement& statement : statements) {
        execute(statement);
    }
}

void Evaluator::checkSize(const hvArray* value) const {
    // Cells can hold copies of themselves, so sizes could double at every step of a loop.
    if (deepCount(value, _options.maxElements) > _options.maxElements) {
        fail("ptshell:TooLarge", "The value has too many elements.");
    }
    if (nestingDepth(value, kMaxNesting) > kMaxNesting) {
        fail("ptshell:TooLarge", "The value nests too deeply.");
    }
}

void Evaluator::checkBytes(std::size_t bytes) const {
    if (bytes > _options.maxValueBytes) {
        fail("ptshell:TooLarge",
             "The value would take more than " + byteText(_options.maxValueBytes) + ".");
    }
}

void Evaluator::checkInterrupt() {
    if (_options.interrupt && _options.interrupt->exchange(false)) {
        fail("ptshell:Interrupted", "Interrupted");
    }
}

void Evaluator::countLoopStep() {
    checkInterrupt();
    if (++_loopSteps > _options.maxLoopSteps) {
        fail("ptshell:LoopLimit", "The run took more loop steps than it may.");
    }
}

void Evaluator::execute(const Statement& s) {
    checkInterrupt();
    switch (s.kind) {
        case Statement::Kind::Assign: {
            hvUniqueArray value = evaluate(*s.expr);
            if (s.display) {
                _out << displayValue(s.name, value.get());
            }
            _variables[s.name] = std::move(value);
            return;
        }
        case Statement::Kind::Expression: {
            const Expr& e = *s.expr;
            // A variable on its own is shown by its name.
            if (e.kind == Expr::Kind::Name && e.accessors.empty() && variable(e.text)) {
                if (s.display) {
                    _out << displayValue(e.text, variable(e.text));
                }
                return;
            }
            hvUniqueArray value =
                e.kind == Expr::Kind::Name ? evaluateName(e, 0).take() : evaluate(e);
            if (!value) {
                return;
            }
            if (s.display) {
                _out << displayValue("ans", value.get());
            }
            _variables["ans"] = std::move(value);
            return;
        }
        case Statement::Kind::For: {
            const hvUniqueArray values = evaluate(*s.expr);
            const std::size_t rows = hvGetM(values.get());
            const std::size_t columns = hvGetN(values.get());
            for (std::size_t column = 0; column < columns && rows > 0; ++column) {
                countLoopStep();
                _variables[s.name] = columnOf(values.get(), column);
                runBlock(s.body);
            }
            return;
        }
        case Statement::Kind::Try: try { runBlock(s.body);
            } catch (const ShellError& error) {
                if (!s.name.empty()) {
                    _variables[s.name] = errorStruct(error);
                }
                runBlock(s.handler);
            }
            return;
    }
}

hvUniqueArray Evaluator::evaluate(const Expr& e) {
    switch (e.kind) {
        case Expr::Kind::Number: return hvUniqueArray(hvCreateDoubleScalar(e.number));
        case Expr::Kind::String: return hvUniqueArray(hvCreateString(e.text));
        case Expr::Kind::Bool: return logical(e.flag);
        case Expr::Kind::Name: return operand(e).take();
        case Expr::Kind::Cell: return cell(e);
        case Expr::Kind::Matrix: return matrix(e);
        case Expr::Kind::Binary: return binary(e);
        case Expr::Kind::Unary: return unary(e);
        case Expr::Kind::Range: return range(e);
    }
    fail("ptshell:Internal", "unknown expression");
}

Operand Evaluator::operand(const Expr& e) {
    if (e.kind != Expr::Kind::Name) {
        return Operand(evaluate(e));
    }
    Operand value = evaluateName(e, 1);
    if (!value) {
        fail("ptshell:NoValue", "'" + e.text + "' gives no value here.");
    }
    return value;
}

std::vector<Operand> Evaluator::evaluateArguments(const std::vector<ExprPtr>& args) {
    std::vector<Operand> values;
    for (const ExprPtr& arg : args) {
        values.push_back(operand(*arg));
    }
    return values;
}

Operand Evaluator::evaluateName(const Expr& e, std::uint32_t nargout) {
    std::size_t next = 0;
    Operand value;
    if (const hvArray* found = variable(e.text)) {
        value = Operand::lent(found);
    } else if (const auto builtin = builtins().find(e.text); builtin != builtins().end()) {
        std::vector<Operand> args;
        if (!e.accessors.empty() && e.accessors[0].kind == Accessor::Kind::Paren) {
            args = evaluateArguments(e.accessors[0].args);
            next = 1;
        }
        try {
            value = Operand(builtin->second(*this, args));
        } catch (ShellError& error) {
            if (error.where.empty()) {
                error.where = e.text;
            }
            throw;
        }
    } else {
        // The longest run of .names that names a method or function of the class system.
        std::string path = e.text;
        std::string callable;
        std::size_t used = 0;
        for (std::size_t k = 0; k < e.accessors.size(); ++k) {
            if (e.accessors[k].kind != Accessor::Kind::Field) {
                break;
            }
            path += "." + e.accessors[k].field;
            if (vos::isCallable(path)) {
                callable = path;
                used = k + 1;
            }
        }
        if (callable.empty()) {
            if (e.accessors.empty() || e.accessors[0].kind != Accessor::Kind::Field) {
                fail("ptshell:UndefinedIdentifier",
                     "'" + e.text + "' is neither a variable nor a function.");
            }
            call(path, nullptr, nargout);  // the class system names what is missing
        }
        next = used;
        const Accessor* arguments = nullptr;
        if (next < e.accessors.size() && e.accessors[next].kind == Accessor::Kind::Paren) {
            arguments = &e.accessors[next];
            ++next;
        }
        // A call that others index into has to give a value.
        value = Operand(call(callable, arguments, next < e.accessors.size() ? 1 : nargout));
    }
    for (; next < e.accessors.size(); ++next) {
        if (!value) {
            fail("ptshell:NoValue", "'" + e.text + "' gives no value to index.");
        }
        value = access(std::move(value), e.accessors[next]);
    }
    return value;
}

hvUniqueArray Evaluator::call(const std::string& path, const Accessor* arguments,
                              std::uint32_t nargout) {
    std::vector<Operand> args;
    if (arguments) {
        args = evaluateArguments(arguments->args);
    }
    std::vector<const hvArray*> inputs;
    for (const auto& arg : args) {
        inputs.push_back(arg.get());
    }
    try {
        std::vector<hvUniqueArray> outputs = vos::invoke(path, nargout, inputs);
        // A call runs to its end; a Ctrl-C meanwhile stops the statement once it is back.
        checkInterrupt();
        return outputs.empty() ? nullptr : std::move(outputs[0]);
    } catch (const foundation::core::except::IMsgIDException& error) {
        throw ShellError{error.getErrorID(), error.getMessageText(), path,
                         nameHint(path, error.getErrorID(), inputs)};
    } catch (const ShellError&) {
        throw;
    } catch (const std::exception& error) {
        throw ShellError{"ptshell:HostError", error.what(), path};
    }
}

Operand Evaluator::access(Operand value, const Accessor& accessor) {
    switch (accessor.kind) {
        case Accessor::Kind::Field: {
            if (!hvIsStruct(value.get())) {
                fail("ptshell:WrongType", "Only a structure has fields, not a " +
                                              std::string(hvClassName(hvGetClassID(value.get()))) +
                                              ".");
            }
            if (hvGetNumberOfElements(value.get()) != 1) {
                fail("ptshell:WrongType", "Pick one element of the structure array first.");
            }
            const int field = hvGetFieldNumber(value.get(), accessor.field.c_str());
            if (field < 0) {
                fail("ptshell:NoSuchField", "There is no field '" + accessor.field + "'.");
            }
            const hvArray* content = hvGetFieldByNumber(value.get(), 0, field);
            return Operand(
                hvUniqueArray(content ? hvDuplicateArray(content) : hvCreateDoubleMatrix(0, 0)));
        }
        case Accessor::Kind::Paren: {
            const std::vector<Operand> indices = evaluateArguments(accessor.args);
            if (indices.empty()) {
                return value;
            }
            return Operand(elementOf(value.get(), linearPosition(value.get(), indices)));
        }
        case Accessor::Kind::Brace: {
            if (!hvIsCell(value.get())) {
                fail("ptshell:WrongType", "Only a cell has contents to take with { }.");
            }
            const std::vector<Operand> indices = evaluateArguments(accessor.args);
            if (indices.empty()) {
                fail("ptshell:BadIndex", "{ } needs an index.");
            }
            const hvArray* content = hvGetCell(value.get(), linearPosition(value.get(), indices));
            return Operand(
                hvUniqueArray(content ? hvDuplicateArray(content) : hvCreateDoubleMatrix(0, 0)));
        }
    }
    return value;
}

namespace {

hvUniqueArray applyOperator(const std::string& op, double a, double b) {
    if (op == "+")
        return hvUniqueArray(hvCreateDoubleScalar(a + b));
    if (op == "-")
        return hvUniqueArray(hvCreateDoubleScalar(a - b));
    if (op == "*")
        return hvUniqueArray(hvCreateDoubleScalar(a * b));
    if (op == "/")
        return hvUniqueArray(hvCreateDoubleScalar(a / b));
    if (op == "==")
        return logical(a == b);
    if (op == "~=")
        return logical(a != b);
    if (op == "<")
        return logical(a < b);
    if (op == "<=")
        return logical(a <= b);
    if (op == ">")
        return logical(a > b);
    return logical(a >= b);
}

}  // namespace

hvUniqueArray Evaluator::binary(const Expr& e) {
    // From the left, as (a + b) - c: each result is the left operand of the next operator.
    hvUniqueArray result = evaluate(*e.operands.at(0));
    for (std::size_t i = 0; i < e.operators.size(); ++i) {
        checkInterrupt();
        const hvUniqueArray right = evaluate(*e.operands.at(i + 1));
        const double a = realScalar(result.get(), kOperandWord);
        const double b = realScalar(right.get(), kOperandWord);
        result = applyOperator(e.operators[i], a, b);
    }
    return result;
}

hvUniqueArray Evaluator::unary(const Expr& e) {
    const hvUniqueArray operand = evaluate(*e.left);
    const double a = realScalar(operand.get(), kOperandWord);
    if (e.text == "~") {
        return logical(a == 0.0);
    }
    return hvUniqueArray(hvCreateDoubleScalar(e.text == "-" ? -a : a));
}

hvUniqueArray Evaluator::range(const Expr& e) {
    const hvUniqueArray from = evaluate(*e.left);
    const hvUniqueArray to = evaluate(*e.right);
    const double a = realScalar(from.get(), "The start of a range");
    const double b = realScalar(to.get(), "The end of a range");
    if (std::isnan(a) || std::isnan(b) || b < a) {
        return hvUniqueArray(hvCreateDoubleMatrix(1, 0));
    }
    const double count = std::floor(b - a) + 1;
    if (count > static_cast<double>(_options.maxElements)) {
        fail("ptshell:TooLarge", "The range has too many elements.");
    }
    checkBytes(count >= static_cast<double>(_options.maxValueBytes)
                   ? std::numeric_limits<std::size_t>::max()
                   : newValueBytes(hvClassID::Double, static_cast<std::size_t>(count)));
    hvUniqueArray row(hvCreateDoubleMatrix(1, static_cast<std::size_t>(count)));
    double* numbers = hvGetDoubles(row.get());
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        numbers[i] = a + static_cast<double>(i);
    }
    return row;
}

hvUniqueArray Evaluator::cell(const Expr& e) {
    if (e.rows.empty()) {
        return hvUniqueArray(hvCreateCellMatrix(0, 0));
    }
    const std::size_t columns = e.rows[0].size();
    for (const auto& row : e.rows) {
        if (row.size() != columns) {
            fail("ptshell:Dimensions", "Every row of a cell needs the same number of elements.");
        }
    }
    const std::size_t rows = e.rows.size();
    // Variables are lent, and what the cell would hold is counted before anything is copied:
    // a cell of copies of a large value is refused without making one.
    std::vector<Operand> elements;
    std::size_t bytes = newValueBytes(hvClassID::Cell, rows * columns);
    for (std::size_t r = 0; r < rows; ++r) {
        for (std::size_t c = 0; c < columns; ++c) {
            elements.push_back(operand(*e.rows[r][c]));
            bytes = addBytes(bytes, valueBytes(elements.back().get(), _options.maxValueBytes));
            checkBytes(bytes);
        }
    }
    hvUniqueArray out(hvCreateCellMatrix(rows, columns));
    for (std::size_t r = 0; r < rows; ++r) {
        for (std::size_t c = 0; c < columns; ++c) {
            hvSetCell(out.get(), r + c * rows, elements[r * columns + c].take().release());
        }
    }
    checkSize(out.get());
    return out;
}

hvUniqueArray Evaluator::matrix(const Expr& e) {
    struct Block {
        Operand value;
        std::size_t rows, columns;
    };
    std::vector<std::vector<Block>> grid;
    hvClassID result = hvClassID::Logical;
    bool any = false;
    for (const auto& row : e.rows) {
        std::vector<Block> blocks;
        for (const ExprPtr& element : row) {
            Operand value = operand(*element);
            const hvClassID cls = hvGetClassID(value.get());
            if (cls == hvClassID::Cell || cls == hvClassID::Struct) {
                fail("ptshell:WrongType", "[ ] joins numbers, logicals and text only.");
            }
            if (hvGetNumberOfDimensions(value.get()) != 2) {
                fail("ptshell:Dimensions", "[ ] joins two-dimensional values only.");
            }
            if (hvIsEmpty(value.get())) {
                continue;
            }
            // Text wins over numbers, integers over doubles, doubles over logicals.
            if (!any || cls == hvClassID::Char ||
                (result != hvClassID::Char && hvIsIntegerClass(cls)) ||
                (result == hvClassID::Logical && cls == hvClassID::Double)) {
                result = cls;
            }
            any = true;
            const std::size_t m = hvGetM(value.get());
            const std::size_t n = hvGetN(value.get());
            blocks.push_back({std::move(value), m, n});
        }
        if (!blocks.empty()) {
            grid.push_back(std::move(blocks));
        }
    }
    if (!any) {
        return hvUniqueArray(hvCreateDoubleMatrix(0, 0));
    }
    std::size_t totalRows = 0;
    std::size_t totalColumns = 0;
    for (std::size_t r = 0; r < grid.size(); ++r) {
        std::size_t width = 0;
        for (const Block& block : grid[r]) {
            if (block.rows != grid[r][0].rows) {
                fail("ptshell:Dimensions", "Values joined in a row need the same number of rows.");
            }
            width += block.columns;
        }
        if (r > 0 && width != totalColumns) {
            fail("ptshell:Dimensions", "Rows joined need the same number of columns.");
        }
        totalColumns = width;
        totalRows += grid[r][0].rows;
    }
    const double count = static_cast<double>(totalRows) * static_cast<double>(totalColumns);
    if (count > static_cast<double>(_options.maxElements)) {
        fail("ptshell:TooLarge", "The value has too many elements.");
    }
    checkBytes(count >= static_cast<double>(_options.maxValueBytes)
                   ? std::numeric_limits<std::size_t>::max()
                   : newValueBytes(hvClassID::Double, totalRows * totalColumns));
    hvUniqueArray all(hvCreateDoubleMatrix(totalRows, totalColumns));
    double* numbers = hvGetDoubles(all.get());
    std::size_t rowOffset = 0;
    for (const auto& blocks : grid) {
        std::size_t columnOffset = 0;
        for (const Block& block : blocks) {
            for (std::size_t c = 0; c < block.columns; ++c) {
                for (std::size_t r = 0; r < block.rows; ++r) {
                    numbers[(rowOffset + r) + (columnOffset + c) * totalRows] =
                        elementAsDouble(block.value.get(), r + c * block.rows);
                }
            }
            columnOffset += block.columns;
        }
        rowOffset += blocks[0].rows;
    }
    return result == hvClassID::Double ? std::move(all) : convertTo(all.get(), result);
}

}  // namespace ptshell
