#pragma once

// What Tab offers at the prompt: for the word that ends at the cursor, every name that
// continues it.

#include <string>
#include <vector>

namespace ptshell {

/// The characters that end a word for completion: a quote does, so that a parameter's name
/// completes inside its quotes; a dot does not, so that "PerfTools.Tracer.sa" is one word.
inline constexpr char kWordBreaks[] = " \t\n\"'(){}[],;=+-*/<>~:";

/// The names that complete the word line[start, end): inside the quotes of a name-value
/// method's argument list, the method's parameter names (with their closing quote); after
/// "PerfTools." or "PerfTools.Tracer.", the functions and methods; elsewhere variables,
/// built-ins, keywords and "PerfTools.". Sorted, without repeats.
std::vector<std::string> completeWord(const std::string& line, std::size_t start, std::size_t end,
                                      const std::vector<std::string>& variables);

}  // namespace ptshell
