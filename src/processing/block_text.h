#pragma once

// Pieces shared by the writers of the data blocks.

#include <performance_tracer/number_text.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace pt::blocks {

/// Between two records of a block; nothing stands before the first or after the last.
inline constexpr std::string_view kRowSeparator = ",\n                    ";
/// A value of the side of a comparison that has no such row.
inline constexpr std::string_view kMissing = "-99.99";
/// Every number of a block is written at this precision.
inline constexpr std::int32_t kPrecision = 5;

/// A number as the blocks write it. A figure that is not finite (only a damaged or foreign
/// file holds one) is written as the scripts' own NaN, Infinity or -Infinity, never as the
/// "nan" or "inf" of the number text, which a script would read as an unknown name.
template <typename Number>
std::string text(Number value) {
    if constexpr (std::is_floating_point_v<Number>) {
        if (std::isnan(value)) {
            return "NaN";
        }
        if (std::isinf(value)) {
            return value > 0 ? "Infinity" : "-Infinity";
        }
    }
    return ptNumberText(value, kPrecision);
}

/// `opening"fields");` and a newline: the declaration of a block's record constructor.
inline std::string declaration(std::string_view opening, std::string_view fields) {
    std::string line(opening);
    line += '"';
    line += fields;
    line += "\");\n";
    return line;
}

/// One constructor call: fields joined by commas.
class Record {
public:
    explicit Record(std::string_view constructor) {
        _text = "new ";
        _text += constructor;
        _text += '(';
    }

    /// A field as it stands.
    Record& field(std::string_view value) {
        if (!_empty) {
            _text += ',';
        }
        _empty = false;
        _text += value;
        return *this;
    }
    template <typename Number>
    Record& number(Number value) {
        return field(text(value));
    }
    Record& quoted(std::string_view value) { return field('"' + std::string(value) + '"'); }
    /// Text appended with no comma of its own, such as ", -1".
    Record& raw(std::string_view value) {
        _text += value;
        _empty = false;
        return *this;
    }

    std::string finish() && {
        _text += ')';
        return std::move(_text);
    }

private:
    std::string _text;
    bool _empty = true;
};

/// Joins records with the row separator.
class Rows {
public:
    void add(std::string record) {
        if (!_text.empty()) {
            _text += kRowSeparator;
        }
        _text += record;
    }
    const std::string& text() const { return _text; }

private:
    std::string _text;
};

}  // namespace pt::blocks
