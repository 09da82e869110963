#pragma once

// The tokens of ptshell's statements.

#include <cstddef>
#include <string>
#include <vector>

namespace ptshell {

enum class TokenKind {
    Identifier,
    Number,
    String,
    Keyword,   // for, end, try, catch, true, false
    Operator,  // + - * / == ~= < <= > >= = : ~ . ( ) { } [ ]
    Comma,
    Semicolon,
    Newline,
    End,
};

struct Token {
    TokenKind kind;
    std::string text;  // the characters of the token; a string's value without its quotes
    double number = 0.0;
    int line = 1;
    int column = 1;
    /// Blank space stands right before the token; inside brackets it can separate elements.
    bool spaceBefore = false;
};

/// A lexing or parsing error: what is wrong and where.
struct SyntaxError {
    std::string message;
    int line;
    int column;
    /// The text ended where more was expected (an open block, bracket or string); an
    /// interactive session can read on.
    bool incomplete = false;
};

/// The tokens of a text, ending with an End token. Raises SyntaxError.
std::vector<Token> tokenize(const std::string& source);

}  // namespace ptshell
