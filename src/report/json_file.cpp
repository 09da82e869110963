#include "report/json_file.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace pt::report {

namespace {

constexpr std::size_t kBufferSize = 1 << 16;

/// The length of the well-formed UTF-8 sequence at the start of text, or 0 if there is none:
/// no overlong forms, no surrogates, nothing above U+10FFFF.
std::size_t utf8Length(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    std::size_t length = 0;
    unsigned char low = 0x80, high = 0xBF;  // the range of the byte after the lead
    if (lead < 0x80) {
        return 1;
    } else if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        low = lead == 0xE0 ? 0xA0 : 0x80;
        high = lead == 0xED ? 0x9F : 0xBF;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        low = lead == 0xF0 ? 0x90 : 0x80;
        high = lead == 0xF4 ? 0x8F : 0xBF;
    } else {
        return 0;
    }
    if (text.size() < length || byte(1) < low || byte(1) > high) {
        return 0;
    }
    for (std::size_t i = 2; i < length; ++i) {
        if (byte(i) < 0x80 || byte(i) > 0xBF) {
            return 0;
        }
    }
    return length;
}

}  // namespace

void appendJsonString(std::string& out, std::string_view text, EPTJsonUse use) {
    static constexpr char kHex[] = "0123456789abcdef";
    const auto unicode = [&out](unsigned char c) {
        out += "\\u00";
        out += kHex[c >> 4];
        out += kHex[c & 0xF];
    };
    const bool inScript = use == EPTJsonUse::Script;
    out += '"';
    while (!text.empty()) {
        const unsigned char c = static_cast<unsigned char>(text.front());
        std::size_t length = 1;
        switch (c) {
            case '"': out += "\\\""; break;
            case '\\': out += "\\\\"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\t': out += "\\t"; break;
            default:
                if (c < 0x20 || (inScript && (c == '<' || c == '>' || c == '&' || c == 0x7F))) {
                    unicode(c);
                } else if ((length = utf8Length(text)) == 0) {
                    out += "\\ufffd";
                    length = 1;
                } else if (inScript && length == 3 && text.substr(0, 2) == "\xE2\x80" &&
                           (text[2] == '\xA8' || text[2] == '\xA9')) {
                    out += text[2] == '\xA8' ? "\\u2028" : "\\u2029";
                } else {
                    out.append(text.data(), length);
                }
        }
        text.remove_prefix(length);
    }
    out += '"';
}

std::string jsonString(std::string_view text, EPTJsonUse use) {
    std::string out;
    out.reserve(text.size() + 2);
    appendJsonString(out, text, use);
    return out;
}

JsonFile::JsonFile(const std::string& path)
    : _file(std::fopen(path.c_str(), "w")), _buffer(new char[kBufferSize]) {}

JsonFile::~JsonFile() { close(); }

JsonFile& JsonFile::raw(std::string_view text) {
    put(text.data(), text.size());
    return *this;
}

JsonFile& JsonFile::integer(std::int64_t value) {
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    put(digits, static_cast<std::size_t>(end - digits));
    return *this;
}

JsonFile& JsonFile::number(double value) {
    if (!std::isfinite(value)) {
        return raw("null");
    }
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    put(digits, static_cast<std::size_t>(end - digits));
    return *this;
}

void JsonFile::put(const char* data, std::size_t size) {
    if (!_file) {
        return;
    }
    if (_used + size > kBufferSize) {
        flush();
        if (size > kBufferSize) {
            _failed = _failed || std::fwrite(data, 1, size, _file) != size;
            return;
        }
    }
    std::memcpy(_buffer.get() + _used, data, size);
    _used += size;
}

void JsonFile::flush() {
    if (_file && _used > 0) {
        _failed = _failed || std::fwrite(_buffer.get(), 1, _used, _file) != _used;
        _used = 0;
    }
}

bool JsonFile::close() {
    if (!_file) {
        return false;
    }
    flush();
    const bool closed = std::fclose(_file) == 0;
    _file = nullptr;
    return closed && !_failed;
}

}  // namespace pt::report
