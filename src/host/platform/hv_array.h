#pragma once

// The representation behind the opaque hvArray of <pt_platform/hv.h>. Values are made by the
// million (a saved run holds one per field of every point), so a scalar or a short text keeps
// its dimensions and data inline and needs a single allocation.

#include <pt_platform/hv.h>

#include <boost/container/small_vector.hpp>

#include <memory>
#include <string>
#include <vector>

/// The elements of a cell, or the fields of a structure.
struct hvCompound {
    /// Cell elements, or structure field values element by element
    /// (element * number of fields + field). Null stands for an empty value.
    std::vector<hvUniqueArray> elements;
    std::vector<std::string> fieldNames;
};

struct hvArray {
    hvClassID classID = hvClassID::Unknown;
    /// At least two entries; no trailing ones past the second.
    boost::container::small_vector<std::size_t, 2> dims;
    /// Plain element storage of logical, char, double and integer values.
    boost::container::small_vector<unsigned char, 16> data;
    /// Present for cells and structures only.
    std::unique_ptr<hvCompound> compound;

    std::size_t numberOfElements() const;
    std::vector<hvUniqueArray>& elements() { return compound->elements; }
    const std::vector<hvUniqueArray>& elements() const { return compound->elements; }
    std::vector<std::string>& fieldNames() { return compound->fieldNames; }
    const std::vector<std::string>& fieldNames() const { return compound->fieldNames; }
};
