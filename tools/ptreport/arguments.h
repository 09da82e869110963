#pragma once

// The command line of one subcommand: options with values, flags and positional inputs, read
// against the options the subcommand takes. Anything else is a usage error.

#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace ptreport {

/// A mistake on the command line; the message says which and how to do it right.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// An option a subcommand takes: "--name VALUE" (or "--name=VALUE"), or a flag without value.
/// A list takes every word up to the next option: "--name V1 V2 ..."; given again, it goes on.
struct OptionSpec {
    std::string name;
    bool takesValue = true;
    bool repeatable = false;
    bool takesList = false;
};

class Arguments {
public:
    /// Reads argv[first ...]; "-o" is a short name of "--output".
    Arguments(const std::vector<std::string>& words, const std::vector<OptionSpec>& options);

    bool has(const std::string& option) const { return _values.count(option) > 0; }
    /// The value of an option, or fallback when it is absent.
    std::string value(const std::string& option, const std::string& fallback = {}) const;
    /// Every value of a repeatable option, in order.
    std::vector<std::string> values(const std::string& option) const;
    const std::vector<std::string>& inputs() const { return _inputs; }

private:
    std::map<std::string, std::vector<std::string>> _values;
    std::vector<std::string> _inputs;
};

}  // namespace ptreport
