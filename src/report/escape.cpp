#include "report/escape.h"

namespace pt::report {

std::string markupText(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        switch (c) {
            case '&': out += "&amp;"; break;
            case '<': out += "&lt;"; break;
            case '>': out += "&gt;"; break;
            case '"': out += "&quot;"; break;
            case '\'': out += "&#39;"; break;
            default: out += c;
        }
    }
    return out;
}

std::string scriptString(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        switch (c) {
            case '\\': out += "\\\\"; break;
            case '"': out += "\\\""; break;
            case '\'': out += "\\'"; break;
            case '<': out += "\\x3C"; break;
            case '\n': out += ' '; break;
            case '\r': out += "\\r"; break;
            default:
                // U+2028 and U+2029, in UTF-8 E2 80 A8 and E2 80 A9, end a line, and with it the
                // string, in the scripts of older browsers.
                if (c == '\xE2' && i + 2 < text.size() && text[i + 1] == '\x80' &&
                    (text[i + 2] == '\xA8' || text[i + 2] == '\xA9')) {
                    out += text[i + 2] == '\xA8' ? "\\u2028" : "\\u2029";
                    i += 2;
                } else {
                    out += c;
                }
        }
    }
    return out;
}

}  // namespace pt::report
