#pragma once

#include <string>

#include "ast.h"
#include "lexer.h"

namespace ptshell {

/// Parses a whole text. Raises SyntaxError with the line and column of the fault.
Program parse(const std::string& source);

}  // namespace ptshell
