#pragma once

// How a processed row names its place in the run: its outline number (2.1.3) and the row
// numbers of its descendants. Both are held so that a run nested n deep costs memory in
// proportion to its rows, not to n squared: an outline number shares all but its last part
// with the number it extends, and a phase's descendants are always consecutive rows.

#include <performance_tracer/export.h>

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

/// The outline numbers of one matching pass, each stored as its last part and the entry of
/// the number before its last dot.
class PT_API PTOutlineTable {
public:
    static constexpr std::uint32_t kNoPrefix = ~std::uint32_t{0};

    /// A new number: the number of entry prefix (nothing for kNoPrefix), a dot, and part.
    /// prefix is an entry added earlier.
    std::uint32_t add(std::uint32_t prefix, std::int32_t part);
    /// The text of an entry, such as "2.1.3".
    std::string text(std::uint32_t entry) const;
    std::size_t size() const { return _entries.size(); }

private:
    struct Entry {
        std::uint32_t prefix;
        std::int32_t part;
    };
    std::vector<Entry> _entries;
};

/// A dotted outline number such as 2.1.3: an entry of a pass's table, or a text of its own.
/// The text of an entry is made each time it is asked for.
class PT_API PTOutlineNumber {
public:
    /// The empty number.
    PTOutlineNumber() = default;
    PTOutlineNumber(std::string text) : _text(std::move(text)) {}
    PTOutlineNumber(const char* text) : _text(text) {}
    PTOutlineNumber(boost::shared_ptr<const PTOutlineTable> table, std::uint32_t entry)
        : _table(std::move(table)), _entry(entry) {}

    std::string str() const { return _table ? _table->text(_entry) : _text; }
    operator std::string() const { return str(); }
    bool empty() const { return !_table && _text.empty(); }

    friend bool operator==(const PTOutlineNumber& number, std::string_view text) {
        return number.str() == text;
    }

private:
    boost::shared_ptr<const PTOutlineTable> _table;
    std::uint32_t _entry = 0;
    std::string _text;
};

PT_API std::ostream& operator<<(std::ostream& out, const PTOutlineNumber& number);

/// The row numbers first, first + 1, ..., first + count - 1, in this order.
class PT_API PTRowRun {
public:
    class const_iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = std::int32_t;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = std::int32_t;

        const_iterator() = default;
        explicit const_iterator(std::int64_t number) : _number(number) {}
        std::int32_t operator*() const { return static_cast<std::int32_t>(_number); }
        const_iterator& operator++() {
            ++_number;
            return *this;
        }
        const_iterator operator++(int) {
            const_iterator before = *this;
            ++_number;
            return before;
        }
        friend bool operator==(const const_iterator&, const const_iterator&) = default;

    private:
        std::int64_t _number = 0;
    };

    PTRowRun() = default;
    explicit PTRowRun(std::int32_t first, std::size_t count) : _first(first), _count(count) {}

    std::size_t size() const { return _count; }
    bool empty() const { return _count == 0; }
    std::int32_t front() const { return _first; }
    std::int32_t operator[](std::size_t i) const {
        return static_cast<std::int32_t>(_first + static_cast<std::int64_t>(i));
    }
    const_iterator begin() const { return const_iterator(_first); }
    const_iterator end() const {
        return const_iterator(_first + static_cast<std::int64_t>(_count));
    }
    std::vector<std::int32_t> toVector() const { return {begin(), end()}; }

    friend bool operator==(const PTRowRun& a, const PTRowRun& b) {
        return a._count == b._count && (a._count == 0 || a._first == b._first);
    }

private:
    std::int32_t _first = 0;
    std::size_t _count = 0;
};
