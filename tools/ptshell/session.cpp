#include "session.h"

#include "completion.h"
#include "parser.h"

namespace ptshell {

Session::Session(std::ostream& out, std::ostream& err, EvalOptions options)
    : _evaluator(out, options), _out(out), _err(err) {}

Session::Outcome Session::run(const std::string& text, int& status) {
    // What the statements showed comes before the error that stopped them.
    struct Flush {
        std::ostream& out;
        ~Flush() { out.flush(); }
    } flush{_out};
    try {
        const Program program = parse(text);
        _evaluator.run(program);
        return Outcome::Done;
    } catch (const SyntaxError& error) {
        _out.flush();
        _err << errorLine({"ptshell:SyntaxError",
                           "Syntax error at line " + std::to_string(error.line) + ", column " +
                               std::to_string(error.column) + ": " + error.message + ".",
                           ""})
             << std::endl;
    } catch (const ShellError& error) {
        _out.flush();
        _err << errorLine(error) << std::endl;
    } catch (const ExitRequest& request) {
        status = request.status;
        return Outcome::Exited;
    } catch (const std::exception& error) {
        _out.flush();
        _err << errorLine({"ptshell:InternalError", error.what(), ""}) << std::endl;
    }
    return Outcome::Failed;
}

std::vector<std::string> Session::completions(const std::string& line, std::size_t start,
                                              std::size_t end) const {
    return completeWord(line, start, end, _evaluator.variableNames());
}

bool Session::isComplete(const std::string& text) {
    try {
        parse(text);
    } catch (const SyntaxError& error) {
        return !error.incomplete;
    }
    return true;
}

}  // namespace ptshell
