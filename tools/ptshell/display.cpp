#include "display.h"

#include <cstdio>
#include <cstring>
#include <vector>

namespace ptshell {

namespace {

constexpr const char* kIndent = "    ";

std::string shape(const hvArray* value) {
    const std::size_t n = hvGetNumberOfDimensions(value);
    const std::size_t* dims = hvGetDimensions(value);
    std::string text;
    for (std::size_t i = 0; i < n; ++i) {
        text += (i ? "x" : "") + std::to_string(dims[i]);
    }
    return text;
}

std::string quoted(const std::string& text) {
    std::string out = "'";
    for (char c : text) {
        out += c;
        if (c == '\'') {
            out += '\'';
        }
    }
    return out + "'";
}

/// One element of a plain-data value as text.
std::string elementText(const hvArray* value, std::size_t i) {
    const void* data = hvGetData(value);
    const auto read = [&](auto sample) {
        decltype(sample) element;
        std::memcpy(&element, static_cast<const char*>(data) + i * sizeof element, sizeof element);
        return element;
    };
    switch (hvGetClassID(value)) {
        case hvClassID::Double: return numberText(read(double{}));
        case hvClassID::Logical: return hvGetLogicals(value)[i] ? "true" : "false";
        case hvClassID::Char: return hvCharsToUtf8(hvGetChars(value) + i, 1);
        case hvClassID::Int8: return std::to_string(read(std::int8_t{}));
        case hvClassID::UInt8: return std::to_string(read(std::uint8_t{}));
        case hvClassID::Int16: return std::to_string(read(std::int16_t{}));
        case hvClassID::UInt16: return std::to_string(read(std::uint16_t{}));
        case hvClassID::Int32: return std::to_string(read(std::int32_t{}));
        case hvClassID::UInt32: return std::to_string(read(std::uint32_t{}));
        case hvClassID::Int64: return std::to_string(read(std::int64_t{}));
        case hvClassID::UInt64: return std::to_string(read(std::uint64_t{}));
        default: return "?";
    }
}

/// The text of one row of a character matrix.
std::string charRow(const hvArray* value, std::size_t row) {
    const std::size_t m = hvGetM(value);
    const std::size_t n = hvGetN(value);
    std::u16string chars;
    for (std::size_t j = 0; j < n; ++j) {
        chars += hvGetChars(value)[row + j * m];
    }
    return hvCharsToUtf8(chars.data(), chars.size());
}

/// The first line of a value (what follows "name = ") and the lines under it, indented.
void render(const hvArray* value, const std::string& indent, std::string& head,
            std::vector<std::string>& lines) {
    const hvClassID cls = hvGetClassID(value);
    const std::size_t count = hvGetNumberOfElements(value);
    if (!value) {
        head = "[]";
        return;
    }
    if (cls == hvClassID::Char && hvGetM(value) == 1 && hvGetNumberOfDimensions(value) == 2) {
        head = quoted(hvArrayToStdString(value));
        return;
    }
    if (count == 0) {
        const char* empty = cls == hvClassID::Cell ? "{}" : cls == hvClassID::Char ? "''" : "[]";
        const bool plainEmpty =
            hvGetM(value) == 0 && hvGetN(value) == 0 &&
            (cls == hvClassID::Cell || cls == hvClassID::Char || cls == hvClassID::Double);
        head = plainEmpty ? empty : shape(value) + " " + hvClassName(cls);
        return;
    }
    if (cls == hvClassID::Cell) {
        head = shape(value) + " cell";
        for (std::size_t i = 0; i < count; ++i) {
            std::string elementHead;
            std::vector<std::string> elementLines;
            render(hvGetCell(value, i), indent + kIndent, elementHead, elementLines);
            lines.push_back(indent + "{" + std::to_string(i + 1) + "} = " + elementHead);
            lines.insert(lines.end(), elementLines.begin(), elementLines.end());
        }
        return;
    }
    if (cls == hvClassID::Struct) {
        head = shape(value) + " struct";
        const int nfields = hvGetNumberOfFields(value);
        for (std::size_t i = 0; i < count; ++i) {
            const std::string prefix = count == 1 ? "" : "(" + std::to_string(i + 1) + ").";
            for (int f = 0; f < nfields; ++f) {
                std::string fieldHead;
                std::vector<std::string> fieldLines;
                render(hvGetFieldByNumber(value, i, f), indent + kIndent, fieldHead, fieldLines);
                lines.push_back(indent + prefix + hvGetFieldNameByNumber(value, f) + ": " +
                                fieldHead);
                lines.insert(lines.end(), fieldLines.begin(), fieldLines.end());
            }
        }
        return;
    }
    if (cls == hvClassID::Char) {
        head = shape(value) + " char";
        for (std::size_t row = 0; row < hvGetM(value); ++row) {
            lines.push_back(indent + quoted(charRow(value, row)));
        }
        return;
    }
    const bool isInteger = hvIsIntegerClass(cls);
    if (count == 1) {
        head = (isInteger ? std::string(hvClassName(cls)) + " " : "") + elementText(value, 0);
        return;
    }
    head = shape(value) + " " + hvClassName(cls);
    const std::size_t m = hvGetM(value);
    const std::size_t n = hvGetN(value);
    for (std::size_t row = 0; row < m; ++row) {
        std::string line = indent;
        for (std::size_t column = 0; column < n; ++column) {
            line += (column ? "  " : "") + elementText(value, row + column * m);
        }
        lines.push_back(line);
    }
}

}  // namespace

std::string numberText(double value) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.5g", value);
    return buffer;
}

std::string displayValue(const std::string& name, const hvArray* value) {
    std::string head;
    std::vector<std::string> lines;
    render(value, kIndent, head, lines);
    std::string text = name + " = " + head + "\n";
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return text;
}

std::string printValue(const hvArray* value) {
    const hvClassID cls = hvGetClassID(value);
    if (cls == hvClassID::Char) {
        std::string text;
        for (std::size_t row = 0; row < hvGetM(value); ++row) {
            text += (row ? "\n" : "") + charRow(value, row);
        }
        return text + "\n";
    }
    if (hvIsScalar(value) && (cls == hvClassID::Logical)) {
        return hvIsLogicalScalarTrue(value) ? "1\n" : "0\n";
    }
    if (hvIsScalar(value) && hvIsNumeric(value)) {
        return elementText(value, 0) + "\n";
    }
    // Numbers and logicals of a matrix: their rows, without a heading.
    if ((hvIsNumeric(value) || cls == hvClassID::Logical) && !hvIsEmpty(value) &&
        hvGetNumberOfDimensions(value) == 2) {
        std::string text;
        const std::size_t m = hvGetM(value);
        for (std::size_t row = 0; row < m; ++row) {
            for (std::size_t column = 0; column < hvGetN(value); ++column) {
                const std::string element = elementText(value, row + column * m);
                text += (column ? "  " : "") +
                        (cls == hvClassID::Logical ? (element == "true" ? "1" : "0") : element);
            }
            text += "\n";
        }
        return text;
    }
    std::string head;
    std::vector<std::string> lines;
    render(value, kIndent, head, lines);
    std::string text = head + "\n";
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return text;
}

}  // namespace ptshell
