#include <performance_tracer/row_numbers.h>

#include <ostream>

std::uint32_t PTOutlineTable::add(std::uint32_t prefix, std::int32_t part) {
    // Only an earlier entry can be a prefix, which keeps every walk to the top finite.
    _entries.push_back({prefix < _entries.size() ? prefix : kNoPrefix, part});
    return static_cast<std::uint32_t>(_entries.size() - 1);
}

std::string PTOutlineTable::text(std::uint32_t entry) const {
    std::vector<std::int32_t> parts;
    for (std::uint32_t e = entry; e < _entries.size(); e = _entries[e].prefix) {
        parts.push_back(_entries[e].part);
    }
    std::string text;
    for (auto part = parts.rbegin(); part != parts.rend(); ++part) {
        if (part != parts.rbegin()) {
            text += '.';
        }
        text += std::to_string(*part);
    }
    return text;
}

std::ostream& operator<<(std::ostream& out, const PTOutlineNumber& number) {
    return out << number.str();
}
