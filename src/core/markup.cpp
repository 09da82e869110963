#include "markup.h"

namespace pt {

std::string escapeMarkup(std::string_view text) {
    if (text.find_first_of("&<>\"'") == std::string_view::npos) {
        return std::string(text);
    }
    std::string escaped;
    escaped.reserve(text.size() + 16);
    for (char c : text) {
        switch (c) {
            case '&': escaped += "&amp;"; break;
            case '<': escaped += "&lt;"; break;
            case '>': escaped += "&gt;"; break;
            case '"': escaped += "&quot;"; break;
            case '\'': escaped += "&#39;"; break;
            default: escaped += c;
        }
    }
    return escaped;
}

}  // namespace pt
