#include "lexer.h"

#include <cctype>
#include <cstdlib>

namespace ptshell {

namespace {

bool isIdentifierStart(char c) { return std::isalpha(static_cast<unsigned char>(c)) || c == '_'; }
bool isIdentifierPart(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }
bool isDigit(char c) { return std::isdigit(static_cast<unsigned char>(c)); }

bool isKeyword(const std::string& word) {
    return word == "for" || word == "end" || word == "try" || word == "catch" || word == "true" ||
           word == "false";
}

class Lexer {
public:
    explicit Lexer(const std::string& source) : _s(source) {}

    std::vector<Token> run() {
        std::vector<Token> tokens;
        for (;;) {
            const bool space = skipBlanks();
            Token token = next();
            token.spaceBefore = space;
            tokens.push_back(token);
            if (token.kind == TokenKind::End) {
                return tokens;
            }
        }
    }

private:
    /// Skips blanks, tabs and comments; true if anything was skipped.
    bool skipBlanks() {
        const std::size_t start = _i;
        for (;;) {
            if (_i < _s.size() && (_s[_i] == ' ' || _s[_i] == '\t' || _s[_i] == '\r')) {
                advance();
            } else if (_i < _s.size() && _s[_i] == '#') {
                while (_i < _s.size() && _s[_i] != '\n') {
                    advance();
                }
            } else {
                return _i != start;
            }
        }
    }

    void advance() {
        if (_s[_i] == '\n') {
            ++_line;
            _column = 1;
        } else {
            ++_column;
        }
        ++_i;
    }

    Token make(TokenKind kind, std::string text, int line, int column) const {
        Token token{kind, std::move(text)};
        token.line = line;
        token.column = column;
        return token;
    }

    Token next() {
        const int line = _line;
        const int column = _column;
        if (_i >= _s.size()) {
            return make(TokenKind::End, "", line, column);
        }
        const char c = _s[_i];
        if (c == '\n') {
            advance();
            return make(TokenKind::Newline, "\n", line, column);
        }
        if (c == ',' || c == ';') {
            advance();
            return make(c == ',' ? TokenKind::Comma : TokenKind::Semicolon, std::string(1, c), line,
                        column);
        }
        if (isIdentifierStart(c)) {
            std::string word;
            while (_i < _s.size() && isIdentifierPart(_s[_i])) {
                word += _s[_i];
                advance();
            }
            return make(isKeyword(word) ? TokenKind::Keyword : TokenKind::Identifier, word, line,
                        column);
        }
        if (isDigit(c) || (c == '.' && _i + 1 < _s.size() && isDigit(_s[_i + 1]))) {
            return number(line, column);
        }
        if (c == '\'') {
            return string(line, column);
        }
        for (const char* op : {"==", "~=", "<=", ">="}) {
            if (_s.compare(_i, 2, op) == 0) {
                advance();
                advance();
                return make(TokenKind::Operator, op, line, column);
            }
        }
        if (std::string("+-*/<>=:~.(){}[]").find(c) != std::string::npos) {
            advance();
            return make(TokenKind::Operator, std::string(1, c), line, column);
        }
        throw SyntaxError{std::string("unexpected character '") + c + "'", line, column};
    }

    Token number(int line, int column) {
        std::string digits;
        const auto take = [&] {
            digits += _s[_i];
            advance();
        };
        while (_i < _s.size() && isDigit(_s[_i])) {
            take();
        }
        if (_i < _s.size() && _s[_i] == '.') {
            take();
            while (_i < _s.size() && isDigit(_s[_i])) {
                take();
            }
        }
        if (_i < _s.size() && (_s[_i] == 'e' || _s[_i] == 'E')) {
            const std::size_t save = _i;
            const int saveColumn = _column;
            std::string exponent(1, _s[_i]);
            ++_i, ++_column;
            if (_i < _s.size() && (_s[_i] == '+' || _s[_i] == '-')) {
                exponent += _s[_i];
                ++_i, ++_column;
            }
            if (_i < _s.size() && isDigit(_s[_i])) {
                digits += exponent;
                while (_i < _s.size() && isDigit(_s[_i])) {
                    take();
                }
            } else {
                _i = save;  // not an exponent after all
                _column = saveColumn;
            }
        }
        Token token = make(TokenKind::Number, digits, line, column);
        token.number = std::strtod(digits.c_str(), nullptr);
        return token;
    }

    Token string(int line, int column) {
        advance();  // the opening quote
        std::string value;
        for (;;) {
            if (_i >= _s.size() || _s[_i] == '\n') {
                throw SyntaxError{"the text has no closing quote", line, column, _i >= _s.size()};
            }
            if (_s[_i] == '\'') {
                advance();
                if (_i < _s.size() && _s[_i] == '\'') {  // '' stands for one quote
                    value += '\'';
                    advance();
                    continue;
                }
                return make(TokenKind::String, value, line, column);
            }
            value += _s[_i];
            advance();
        }
    }

    const std::string& _s;
    std::size_t _i = 0;
    int _line = 1;
    int _column = 1;
};

}  // namespace

std::vector<Token> tokenize(const std::string& source) { return Lexer(source).run(); }

}  // namespace ptshell
