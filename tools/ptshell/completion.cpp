#include "completion.h"

#include <algorithm>

#include "evaluator.h"
#include "method_help.h"

namespace ptshell {

namespace {

bool startsWith(const std::string& text, const std::string& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}

/// The name-value method whose argument list is open at pos, or null: the last
/// "PerfTools.Tracer.NAME(" before pos whose parenthesis is not closed yet.
const MethodHelp* openCall(const std::string& line, std::size_t pos) {
    const std::string head = line.substr(0, pos);
    const std::string marker = "PerfTools.Tracer.";
    for (std::size_t at = head.rfind(marker); at != std::string::npos;
         at = at == 0 ? std::string::npos : head.rfind(marker, at - 1)) {
        const std::size_t paren = head.find('(', at);
        if (paren == std::string::npos) {
            continue;
        }
        int depth = 0;
        bool quoted = false;
        for (std::size_t i = paren; i < head.size(); ++i) {
            if (head[i] == '\'') {
                quoted = !quoted;
            } else if (!quoted && (head[i] == '(' || head[i] == '{' || head[i] == '[')) {
                ++depth;
            } else if (!quoted && (head[i] == ')' || head[i] == '}' || head[i] == ']')) {
                --depth;
            }
        }
        if (depth <= 0) {
            return nullptr;  // the innermost call is closed already
        }
        const MethodHelp* method = findMethodHelp(head.substr(at, paren - at));
        return method && method->nameValue ? method : nullptr;
    }
    return nullptr;
}

}  // namespace

std::vector<std::string> completeWord(const std::string& line, std::size_t start, std::size_t end,
                                      const std::vector<std::string>& variables) {
    start = std::min(start, line.size());
    end = std::clamp(end, start, line.size());
    const std::string word = line.substr(start, end - start);
    std::vector<std::string> candidates;
    if (start > 0 && line[start - 1] == '\'') {
        if (const MethodHelp* method = openCall(line, start)) {
            for (const ParameterHelp& parameter : method->parameters) {
                candidates.push_back(parameter.name + "'");
            }
        }
    } else if (startsWith(word, "PerfTools.")) {
        for (const MethodHelp& method : methodHelp()) {
            candidates.push_back(method.qualifiedName);
        }
        candidates.push_back("PerfTools.Tracer.");
    } else {
        candidates = variables;
        for (const auto& builtin : builtins()) {
            candidates.push_back(builtin.first);
        }
        for (const char* keyword : {"for", "end", "try", "catch", "true", "false", "PerfTools."}) {
            candidates.push_back(keyword);
        }
    }
    std::erase_if(candidates, [&](const std::string& c) { return !startsWith(c, word); });
    std::sort(candidates.begin(), candidates.end());
    candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
    return candidates;
}

}  // namespace ptshell
