#include <pt_platform/hv.h>

// UTF-8 to 16-bit character codes and back, with the escape of stray bytes described in hv.h.

namespace {

constexpr char16_t kEscapeBase = 0xDC00;

/// Length of the well-formed UTF-8 sequence at the start of s, or 0; its code point in cp.
std::size_t decodeOne(std::string_view s, char32_t& cp) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(s[i]); };
    const unsigned char b0 = byte(0);
    if (b0 < 0x80) {
        cp = b0;
        return 1;
    }
    std::size_t length;
    char32_t min;
    if (b0 >= 0xC2 && b0 <= 0xDF) {
        length = 2, cp = b0 & 0x1F, min = 0x80;
    } else if (b0 >= 0xE0 && b0 <= 0xEF) {
        length = 3, cp = b0 & 0x0F, min = 0x800;
    } else if (b0 >= 0xF0 && b0 <= 0xF4) {
        length = 4, cp = b0 & 0x07, min = 0x10000;
    } else {
        return 0;
    }
    if (s.size() < length) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) {
            return 0;
        }
        cp = (cp << 6) | (byte(i) & 0x3F);
    }
    if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
        return 0;
    }
    return length;
}

void appendUtf8(std::string& out, char32_t cp) {
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

}  // namespace

std::u16string hvUtf8ToChars(std::string_view utf8) {
    std::u16string out;
    out.reserve(utf8.size());
    while (!utf8.empty()) {
        char32_t cp;
        std::size_t length = decodeOne(utf8, cp);
        if (length == 0) {
            out += static_cast<char16_t>(kEscapeBase + static_cast<unsigned char>(utf8[0]));
            length = 1;
        } else if (cp >= 0x10000) {
            cp -= 0x10000;
            out += static_cast<char16_t>(0xD800 + (cp >> 10));
            out += static_cast<char16_t>(0xDC00 + (cp & 0x3FF));
        } else {
            out += static_cast<char16_t>(cp);
        }
        utf8.remove_prefix(length);
    }
    return out;
}

std::string hvCharsToUtf8(const hvChar* chars, std::size_t count) {
    std::string out;
    out.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const char16_t c = chars[i];
        if (c >= 0xD800 && c <= 0xDBFF && i + 1 < count && chars[i + 1] >= 0xDC00 &&
            chars[i + 1] <= 0xDFFF) {
            appendUtf8(out, 0x10000 + ((char32_t(c) - 0xD800) << 10) + (chars[i + 1] - 0xDC00));
            ++i;
        } else if (c >= kEscapeBase + 0x80 && c <= kEscapeBase + 0xFF) {
            out += static_cast<char>(c - kEscapeBase);
        } else if (c >= 0xD800 && c <= 0xDFFF) {
            appendUtf8(out, 0xFFFD);  // a lone surrogate that no byte escape explains
        } else {
            appendUtf8(out, c);
        }
    }
    return out;
}
