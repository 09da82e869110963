#pragma once

// Text taken from data (names, labels, titles, system information) where it enters a page.
// Text without the characters named here comes out exactly as it went in.

#include <string>
#include <string_view>

namespace pt::report {

/// For markup: &, <, > and both quote marks as character references.
std::string markupText(std::string_view text);

/// For the inside of a script string in either quote marks: a backslash before a backslash or
/// a quote mark, < as \x3C (so that no "</script>" can end the script), a line feed as a
/// blank, and the other characters that end a line, the carriage return, U+2028 and U+2029, as
/// the escapes \r, \u2028 and \u2029.
std::string scriptString(std::string_view text);

}  // namespace pt::report
