#include "report/page_variant.h"

#include <cctype>
#include <stdexcept>
#include <vector>

namespace pt::report {

namespace {

/// A condition of a directive, read by recursive descent.
class Condition {
public:
    Condition(std::string_view text, const PageFlags& flags) : _text(text), _flags(flags) {}

    bool evaluate() {
        const bool value = anyOf();
        skipBlanks();
        if (_at != _text.size()) {
            fail("unexpected text");
        }
        return value;
    }

private:
    bool anyOf() {
        bool value = allOf();
        while (take("||")) {
            value = allOf() || value;
        }
        return value;
    }
    bool allOf() {
        bool value = single();
        while (take("&&")) {
            value = single() && value;
        }
        return value;
    }
    bool single() {
        if (take("!")) {
            return !single();
        }
        if (take("(")) {
            const bool value = anyOf();
            if (!take(")")) {
                fail("missing )");
            }
            return value;
        }
        skipBlanks();
        const std::size_t start = _at;
        while (_at < _text.size() &&
               (std::isalnum(static_cast<unsigned char>(_text[_at])) || _text[_at] == '_')) {
            ++_at;
        }
        const std::string_view name = _text.substr(start, _at - start);
        const auto flag = _flags.find(name);
        if (name.empty() || flag == _flags.end()) {
            fail("unknown flag '" + std::string(name) + "'");
        }
        return flag->second;
    }
    void skipBlanks() {
        while (_at < _text.size() && _text[_at] == ' ') {
            ++_at;
        }
    }
    bool take(std::string_view token) {
        skipBlanks();
        if (_text.substr(_at, token.size()) == token) {
            _at += token.size();
            return true;
        }
        return false;
    }
    [[noreturn]] void fail(const std::string& why) const {
        throw std::logic_error("page condition '" + std::string(_text) + "': " + why);
    }

    std::string_view _text;
    const PageFlags& _flags;
    std::size_t _at = 0;
};

/// The directive of a line, without its markers, or empty text for an ordinary line.
std::string_view directiveOf(std::string_view line) {
    const std::size_t start = line.find_first_not_of(" \t");
    if (start == std::string_view::npos) {
        return {};
    }
    line.remove_prefix(start);
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r' || line.back() == ' ')) {
        line.remove_suffix(1);
    }
    if (line.starts_with("//@")) {
        return line.substr(3);
    }
    if (line.starts_with("/*@") && line.ends_with("*/")) {
        return line.substr(3, line.size() - 5);
    }
    return {};
}

void putValues(std::string_view line, const PageValues& values, std::string& out) {
    for (;;) {
        const std::size_t open = line.find("@@");
        if (open == std::string_view::npos) {
            break;
        }
        const std::size_t close = line.find("@@", open + 2);
        if (close == std::string_view::npos) {
            throw std::logic_error("page value without its closing @@");
        }
        const std::string_view name = line.substr(open + 2, close - open - 2);
        const auto value = values.find(name);
        if (value == values.end()) {
            throw std::logic_error("no page value '" + std::string(name) + "'");
        }
        out.append(line.substr(0, open));
        out.append(value->second);
        line.remove_prefix(close + 2);
    }
    out.append(line);
}

/// One level of nesting: whether its lines are written, and whether a branch was taken.
struct Section {
    bool writing;
    bool taken;
    bool outerWriting;
};

}  // namespace

std::string resolvePageText(std::string_view text, const PageFlags& flags,
                            const PageValues& values) {
    std::string out;
    out.reserve(text.size());
    std::vector<Section> sections;
    bool writing = true;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::size_t length = end == std::string_view::npos ? text.size() : end + 1;
        const std::string_view line = text.substr(0, length);
        text.remove_prefix(length);

        const std::string_view directive = directiveOf(line);
        const auto condition = [&](std::size_t keyword) {
            return Condition(directive.substr(keyword), flags).evaluate();
        };
        if (directive.starts_with("if ")) {
            const bool value = condition(3);
            sections.push_back({writing && value, value, writing});
            writing = sections.back().writing;
        } else if (directive.starts_with("elif ")) {
            if (sections.empty()) {
                throw std::logic_error("page //@elif without //@if");
            }
            Section& section = sections.back();
            const bool value = !section.taken && condition(5);
            section.taken = section.taken || value;
            writing = section.writing = section.outerWriting && value;
        } else if (directive.starts_with("else")) {
            if (sections.empty()) {
                throw std::logic_error("page //@else without //@if");
            }
            Section& section = sections.back();
            writing = section.writing = section.outerWriting && !section.taken;
            section.taken = true;
        } else if (directive.starts_with("endif")) {
            if (sections.empty()) {
                throw std::logic_error("page //@endif without //@if");
            }
            writing = sections.back().outerWriting;
            sections.pop_back();
        } else if (!directive.empty()) {
            throw std::logic_error("unknown page directive " + std::string(directive));
        } else if (writing) {
            putValues(line, values, out);
        }
    }
    if (!sections.empty()) {
        throw std::logic_error("page //@if without //@endif");
    }
    return out;
}

PageFlags pageFlags(const PageKind& kind) {
    const bool detailsTab = !kind.aggregatePage;
    return {
        {"comparison", kind.comparison},
        {"single", !kind.comparison},
        {"aggregatePage", kind.aggregatePage},
        {"detailsTab", detailsTab},
        {"callTreeTab", detailsTab && !kind.comparison},
        {"memChartTab", detailsTab && kind.metric == "detailedmemory"},
        {"time", kind.metric == "time"},
        {"basicmemory", kind.metric == "basicmemory"},
        {"detailedmemory", kind.metric == "detailedmemory"},
    };
}

}  // namespace pt::report
