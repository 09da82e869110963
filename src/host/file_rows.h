#pragma once

// The points of a value file read straight from its rows, without making a host value for each
// cell: the same points as the constructors from host values give. The names that the rows
// hold are kept apart from the tracer's tables until the whole file has proved sound, so that a
// file refused half-way through leaves the tables as they were.

#include <performance_tracer/names.h>
#include <performance_tracer/raw_points.h>

#include <pt_platform/hvf_rows.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace performance_tracer {

class FileRowReader {
public:
    /// Points are appended to the given set.
    explicit FileRowReader(PTRawDataVector& points);

    /// Appends the point of a row, of the class its element count gives (18 a block-diagram
    /// point, 20 a state-chart point, any other a host-language point); false for an empty row,
    /// which hides itself and all after it.
    bool append(const hvfRow* row);
    /// Enters the names of the rows into this process's tables, in the order in which the rows
    /// first hold them, and gives the points the ids of their names.
    void commit();
    /// Removes the points appended.
    void drop();

    /// The id that stands for a name until commit: -2 less its place among the names of its
    /// kind, unlike any id of a table (0 and up) or of no name (-1).
    std::int32_t heldID(std::uint32_t kind, std::string_view name);

private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const {
            return std::hash<std::string_view>()(text);
        }
    };
    /// A name met lately, which the next rows very often hold again.
    struct Recent {
        std::string_view name;
        std::int32_t id = 0;
    };
    static constexpr std::size_t kRecent = 4;
    struct Names {
        std::unordered_map<std::string, std::int32_t, Hash, std::equal_to<>> ids;
        std::vector<const std::string*> inOrder;
        /// The names met last, the latest first.
        std::array<Recent, kRecent> recent;
        std::size_t recentCount = 0;
    };

    PTRawDataVector& _points;
    std::size_t _first;
    /// The class of each point appended: 0, 1 or 2 as its element count chose.
    std::vector<std::uint8_t> _classes;
    std::array<Names, PT_TABLE_COUNT> _names;
};

}  // namespace performance_tracer
