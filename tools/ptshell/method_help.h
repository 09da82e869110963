#pragma once

// The shell's own table of the methods of PerfTools.Tracer and the functions of PerfTools: what
// `help` shows, what completion offers, and which names a name-value method takes. The methods
// check their arguments themselves; this table only explains them.

#include <string>
#include <vector>

namespace ptshell {

struct ParameterHelp {
    std::string name;
    /// The default, as typed; empty for a required parameter or one without a default.
    std::string defaultValue;
    std::string description;
};

struct MethodHelp {
    /// "PerfTools.Tracer.saveToFile", "PerfTools.kssvStringTableDoGarbageCollection".
    std::string qualifiedName;
    /// The call with its parameters, e.g. "saveToFile(file)".
    std::string signature;
    std::string description;
    /// Whether the parameters are name-value pairs ('htmlfile', 'run.html', ...).
    bool nameValue = false;
    std::vector<ParameterHelp> parameters;
    std::string example;
};

/// Every documented method and function, in the order of `help`.
const std::vector<MethodHelp>& methodHelp();
/// The entry of a qualified name, or of a bare method name of PerfTools.Tracer; null if none.
const MethodHelp* findMethodHelp(const std::string& name);
/// The text of `help NAME`.
std::string helpText(const MethodHelp& method);
/// The text of `help` alone: the shell's statements, built-ins and the methods.
std::string helpOverview();

/// For an error of a name-value method: the first name among the arguments that the method does
/// not take, with the names it does take, as one sentence; empty when every name is valid.
std::string unknownNameHint(const MethodHelp& method, const std::vector<std::string>& names,
                            bool foldCase);

}  // namespace ptshell
