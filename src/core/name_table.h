#pragma once

#include <boost/multi_index/member.hpp>
#include <boost/multi_index/ordered_index.hpp>
#include <boost/multi_index/tag.hpp>
#include <boost/multi_index_container.hpp>

#include <cstddef>
#include <cstdint>
#include <string>

/// A two-way table between names and dense ids. A new name's id is the number of names already
/// held, so ids run 0, 1, 2 ... until the whole table is cleared. Names order byte-wise.
class PTNameTable {
public:
    /// The id of a name, or -1.
    std::int32_t find(const std::string& name) const {
        const auto& byName = _entries.get<ByName>();
        const auto found = byName.find(name);
        return found == byName.end() ? -1 : found->id;
    }

    /// The name of an id, or null.
    const std::string* find(std::int32_t id) const {
        const auto& byId = _entries.get<ById>();
        const auto found = byId.find(id);
        return found == byId.end() ? nullptr : &found->name;
    }

    /// Adds a name that is not in the table and returns its id.
    std::int32_t add(const std::string& name) {
        const auto id = static_cast<std::int32_t>(_entries.size());
        _entries.insert(Entry{name, id});
        return id;
    }

    std::size_t size() const { return _entries.size(); }
    void clear() { _entries.clear(); }

private:
    struct Entry {
        std::string name;
        std::int32_t id;
    };
    struct ByName {};
    struct ById {};

    boost::multi_index_container<
        Entry, boost::multi_index::indexed_by<
                   boost::multi_index::ordered_unique<
                       boost::multi_index::tag<ByName>,
                       boost::multi_index::member<Entry, std::string, &Entry::name>>,
                   boost::multi_index::ordered_unique<
                       boost::multi_index::tag<ById>,
                       boost::multi_index::member<Entry, std::int32_t, &Entry::id>>>>
        _entries;
};
