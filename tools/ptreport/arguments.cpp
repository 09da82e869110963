#include "arguments.h"

#include <algorithm>

namespace ptreport {

namespace {

bool isOption(const std::string& word) { return word.size() >= 2 && word[0] == '-'; }

}  // namespace

Arguments::Arguments(const std::vector<std::string>& words,
                     const std::vector<OptionSpec>& options) {
    bool optionsEnded = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        std::string word = words[i];
        if (optionsEnded || !isOption(word)) {
            _inputs.push_back(word);
            continue;
        }
        if (word == "--") {
            optionsEnded = true;
            continue;
        }
        if (word == "-o") {
            word = "--output";
        }
        std::string name = word.substr(2);
        std::string value;
        bool inlineValue = false;
        if (const std::size_t equals = name.find('='); equals != std::string::npos) {
            value = name.substr(equals + 1);
            name.resize(equals);
            inlineValue = true;
        }
        const auto known = std::find_if(options.begin(), options.end(),
                                        [&](const OptionSpec& o) { return o.name == name; });
        if (word.rfind("--", 0) != 0 || known == options.end()) {
            throw UsageError("unknown option " + words[i]);
        }
        if (known->takesList) {
            std::vector<std::string>& list = _values[name];
            if (inlineValue) {
                list.push_back(value);
            }
            const std::size_t before = list.size();
            while (i + 1 < words.size() && !isOption(words[i + 1])) {
                list.push_back(words[++i]);
            }
            if (!inlineValue && list.size() == before) {
                throw UsageError("--" + name + " needs at least one value");
            }
            continue;
        }
        if (!known->takesValue) {
            if (inlineValue) {
                throw UsageError("--" + name + " takes no value");
            }
        } else if (!inlineValue) {
            if (i + 1 >= words.size()) {
                throw UsageError("--" + name + " needs a value");
            }
            value = words[++i];
        }
        if (!known->repeatable && has(name)) {
            throw UsageError("--" + name + " given twice");
        }
        _values[name].push_back(value);
    }
}

std::string Arguments::value(const std::string& option, const std::string& fallback) const {
    const auto found = _values.find(option);
    return found == _values.end() ? fallback : found->second.back();
}

std::vector<std::string> Arguments::values(const std::string& option) const {
    const auto found = _values.find(option);
    return found == _values.end() ? std::vector<std::string>{} : found->second;
}

}  // namespace ptreport
