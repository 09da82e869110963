// A recursive-descent parser. Precedence, lowest first: ranges (a:b), comparisons, + and -,
// * and /, unary minus and ~, then names with their accessors and the other primaries.
//
// Inside [ ] and { } blank space can separate elements, as in [1 -2 'x']: a sign with blank
// space before it and none after it starts a new element, and so does any token that can only
// begin a value.

#include "parser.h"

namespace ptshell {

namespace {

/// Deeper nesting than this is refused rather than risking the stack.
constexpr int kMaxDepth = 200;

class Parser {
public:
    explicit Parser(std::vector<Token> tokens) : _tokens(std::move(tokens)) {}

    Program program() {
        Program statements = block(false);
        if (peek().kind != TokenKind::End) {
            fail("'" + peek().text + "' without a block to close");
        }
        return statements;
    }

private:
    // ---- Tokens ----

    const Token& peek(std::size_t ahead = 0) const {
        const std::size_t i = std::min(_i + ahead, _tokens.size() - 1);
        return _tokens[i];
    }
    const Token& take() {
        const Token& token = _tokens[_i];
        if (_i + 1 < _tokens.size()) {
            ++_i;
        }
        return token;
    }
    bool isOperator(const Token& token, const char* op) const {
        return token.kind == TokenKind::Operator && token.text == op;
    }
    bool isKeyword(const Token& token, const char* word) const {
        return token.kind == TokenKind::Keyword && token.text == word;
    }
    bool isTerminator(const Token& token) const {
        return token.kind == TokenKind::Newline || token.kind == TokenKind::Semicolon ||
               token.kind == TokenKind::Comma;
    }

    [[noreturn]] void fail(const std::string& message) const { fail(message, peek()); }
    [[noreturn]] void fail(const std::string& message, const Token& at) const {
        throw SyntaxError{message, at.line, at.column, at.kind == TokenKind::End};
    }

    void expectOperator(const char* op) {
        if (!isOperator(peek(), op)) {
            fail(peek().kind == TokenKind::End ? std::string("the text ends before '") + op + "'"
                                               : std::string("expected '") + op + "'");
        }
        take();
    }

    struct Depth {
        Depth(Parser& parser) : _parser(parser) {
            if (++_parser._depth > kMaxDepth) {
                _parser.fail("the statement nests too deeply");
            }
        }
        ~Depth() { --_parser._depth; }
        Parser& _parser;
    };

    // ---- Statements ----

    /// "help NAME" with a dotted name, as one types it at a prompt: the call help('NAME').
    ExprPtr helpCommand() {
        ExprPtr call = node(Expr::Kind::Name, peek());
        call->text = take().text;
        const Token& first = take();
        ExprPtr topic = node(Expr::Kind::String, first);
        topic->text = first.text;
        while (isOperator(peek(), ".") && peek(1).kind == TokenKind::Identifier) {
            take();
            topic->text += "." + take().text;
        }
        Accessor arguments{Accessor::Kind::Paren, "", {}, first.line, first.column};
        arguments.args.push_back(std::move(topic));
        call->accessors.push_back(std::move(arguments));
        return call;
    }

    /// Statements up to 'end', 'catch' (inside a block) or the end of the text.
    Program block(bool inside) {
        Program statements;
        for (;;) {
            while (isTerminator(peek())) {
                take();
            }
            const Token& token = peek();
            if (token.kind == TokenKind::End) {
                if (inside) {
                    fail("the block has no 'end'");
                }
                return statements;
            }
            if (isKeyword(token, "end") || isKeyword(token, "catch")) {
                if (!inside) {
                    fail("'" + token.text + "' without a block to close");
                }
                return statements;
            }
            statements.push_back(statement());
        }
    }

    Statement statement() {
        Depth depth(*this);
        const Token& first = peek();
        Statement s;
        s.line = first.line;
        s.column = first.column;
        if (isKeyword(first, "for")) {
            take();
            if (peek().kind != TokenKind::Identifier) {
                fail("expected the loop variable after 'for'");
            }
            s.kind = Statement::Kind::For;
            s.name = take().text;
            expectOperator("=");
            s.expr = expression();
            s.body = block(true);
            if (!isKeyword(peek(), "end")) {
                fail("expected 'end' of the loop");
            }
            take();
        } else if (isKeyword(first, "try")) {
            take();
            s.kind = Statement::Kind::Try;
            s.body = block(true);
            if (!isKeyword(peek(), "catch") && !isKeyword(peek(), "end")) {
                fail("expected 'catch' or 'end'");
            }
            if (isKeyword(take(), "catch")) {
                // "catch err" names the error when nothing else follows on that line.
                if (peek().kind == TokenKind::Identifier &&
                    (isTerminator(peek(1)) || peek(1).kind == TokenKind::End ||
                     isKeyword(peek(1), "end"))) {
                    s.name = take().text;
                }
                s.handler = block(true);
                if (!isKeyword(peek(), "end")) {
                    fail("expected 'end' of the try block");
                }
                take();
            }
        } else if (first.kind == TokenKind::Identifier && first.text == "help" &&
                   peek(1).kind == TokenKind::Identifier) {
            s.kind = Statement::Kind::Expression;
            s.expr = helpCommand();
        } else {
            ExprPtr value = expression();
            if (isOperator(peek(), "=")) {
                if (value->kind != Expr::Kind::Name || !value->accessors.empty()) {
                    fail("only a variable can be assigned to");
                }
                take();
                s.kind = Statement::Kind::Assign;
                s.name = value->text;
                s.expr = expression();
            } else {
                s.kind = Statement::Kind::Expression;
                s.expr = std::move(value);
            }
        }
        const Token& after = peek();
        if (after.kind == TokenKind::Semicolon) {
            s.display = false;
        } else if (!isTerminator(after) && after.kind != TokenKind::End &&
                   !isKeyword(after, "end") && !isKeyword(after, "catch")) {
            fail("unexpected '" + after.text + "'");
        }
        return s;
    }

    // ---- Expressions ----

    ExprPtr node(Expr::Kind kind, const Token& at) {
        auto e = std::make_unique<Expr>();
        e->kind = kind;
        e->line = at.line;
        e->column = at.column;
        return e;
    }

    ExprPtr expression() {
        Depth depth(*this);
        ExprPtr left = comparison();
        if (isOperator(peek(), ":") && !endsElement(peek())) {
            const Token& op = take();
            ExprPtr range = node(Expr::Kind::Range, op);
            range->left = std::move(left);
            range->right = comparison();
            return range;
        }
        return left;
    }

    /// Inside brackets, whether a sign with space before and none after starts a new element.
    bool endsElement(const Token& op) const {
        return inBrackets() && op.spaceBefore && !peek(1).spaceBefore &&
               (op.text == "+" || op.text == "-");
    }

    /// Operands joined by operators of one precedence. The chain is read in a loop into one
    /// node, however long it is.
    ExprPtr binary(ExprPtr (Parser::*operand)(), std::initializer_list<const char*> ops) {
        ExprPtr first = (this->*operand)();
        ExprPtr chain;
        for (;;) {
            const Token& op = peek();
            bool matches = false;
            for (const char* candidate : ops) {
                matches = matches || isOperator(op, candidate);
            }
            if (!matches || endsElement(op)) {
                return chain ? std::move(chain) : std::move(first);
            }
            take();
            if (!chain) {
                chain = node(Expr::Kind::Binary, op);
                chain->operands.push_back(std::move(first));
            }
            chain->operators.push_back(op.text);
            chain->operands.push_back((this->*operand)());
        }
    }

    ExprPtr comparison() { return binary(&Parser::additive, {"==", "~=", "<", "<=", ">", ">="}); }
    ExprPtr additive() { return binary(&Parser::multiplicative, {"+", "-"}); }
    ExprPtr multiplicative() { return binary(&Parser::unary, {"*", "/"}); }

    ExprPtr unary() {
        Depth depth(*this);
        const Token& op = peek();
        if (isOperator(op, "-") || isOperator(op, "+") || isOperator(op, "~")) {
            take();
            ExprPtr e = node(Expr::Kind::Unary, op);
            e->text = op.text;
            e->left = unary();
            return e;
        }
        return postfix();
    }

    ExprPtr postfix() {
        const Token& token = peek();
        if (token.kind != TokenKind::Identifier) {
            return primary();
        }
        take();
        ExprPtr e = node(Expr::Kind::Name, token);
        e->text = token.text;
        for (;;) {
            const Token& next = peek();
            // Inside brackets, "a (1)" is two elements, "a(1)" one.
            const bool spaced = inBrackets() && next.spaceBefore;
            Accessor accessor;
            accessor.line = next.line;
            accessor.column = next.column;
            if (isOperator(next, ".")) {
                take();
                if (peek().kind != TokenKind::Identifier) {
                    fail("expected a field or method name after '.'");
                }
                accessor.kind = Accessor::Kind::Field;
                accessor.field = take().text;
            } else if (isOperator(next, "(") && !spaced) {
                take();
                accessor.kind = Accessor::Kind::Paren;
                accessor.args = arguments(")");
            } else if (isOperator(next, "{") && !spaced) {
                take();
                accessor.kind = Accessor::Kind::Brace;
                accessor.args = arguments("}");
            } else {
                return e;
            }
            e->accessors.push_back(std::move(accessor));
        }
    }

    std::vector<ExprPtr> arguments(const char* close) {
        _brackets.push_back(false);
        std::vector<ExprPtr> args;
        if (!isOperator(peek(), close)) {
            for (;;) {
                args.push_back(expression());
                if (peek().kind != TokenKind::Comma) {
                    break;
                }
                take();
            }
        }
        expectOperator(close);
        _brackets.pop_back();
        return args;
    }

    ExprPtr primary() {
        Depth depth(*this);
        const Token& token = peek();
        switch (token.kind) {
            case TokenKind::Number: {
                take();
                ExprPtr e = node(Expr::Kind::Number, token);
                e->number = token.number;
                return e;
            }
            case TokenKind::String: {
                take();
                ExprPtr e = node(Expr::Kind::String, token);
                e->text = token.text;
                return e;
            }
            case TokenKind::Keyword:
                if (token.text == "true" || token.text == "false") {
                    take();
                    ExprPtr e = node(Expr::Kind::Bool, token);
                    e->flag = token.text == "true";
                    return e;
                }
                break;
            case TokenKind::Operator:
                if (token.text == "(") {
                    take();
                    _brackets.push_back(false);
                    ExprPtr inner = expression();
                    expectOperator(")");
                    _brackets.pop_back();
                    return inner;
                }
                if (token.text == "[" || token.text == "{") {
                    return literal();
                }
                break;
            case TokenKind::End: fail("the text ends where a value was expected");
            default: break;
        }
        fail("unexpected '" + token.text + "'");
    }

    /// [ rows ] or { rows }: elements separated by commas or blank space, rows by semicolons
    /// or line breaks.
    ExprPtr literal() {
        const Token& open = take();
        const bool isCell = open.text == "{";
        const char* close = isCell ? "}" : "]";
        ExprPtr e = node(isCell ? Expr::Kind::Cell : Expr::Kind::Matrix, open);
        _brackets.push_back(true);
        std::vector<ExprPtr> row;
        for (;;) {
            const Token& token = peek();
            if (isOperator(token, close)) {
                take();
                break;
            }
            if (token.kind == TokenKind::End) {
                fail(std::string("the text ends before '") + close + "'");
            }
            if (token.kind == TokenKind::Semicolon || token.kind == TokenKind::Newline) {
                take();
                if (!row.empty()) {
                    e->rows.push_back(std::move(row));
                    row.clear();
                }
                continue;
            }
            if (token.kind == TokenKind::Comma) {
                take();
                continue;
            }
            row.push_back(expression());
        }
        if (!row.empty()) {
            e->rows.push_back(std::move(row));
        }
        _brackets.pop_back();
        return e;
    }

    bool inBrackets() const { return !_brackets.empty() && _brackets.back(); }

    std::vector<Token> _tokens;
    std::size_t _i = 0;
    int _depth = 0;
    /// For each open bracket, parenthesis or argument list: whether blank space separates.
    std::vector<bool> _brackets;
};

}  // namespace

Program parse(const std::string& source) { return Parser(tokenize(source)).program(); }

}  // namespace ptshell
