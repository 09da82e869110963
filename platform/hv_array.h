#pragma once

// The representation behind the opaque hvArray of <pt_platform/hv.h>. Values are made by the
// million (a saved run holds one per field of every point), so each value is one allocation:
// a small header, then its dimensions, then its payload. The payload of a plain class is its
// elements' bytes; of a cell, the owning pointers of its elements; of a structure, a pointer to
// its field names and values, which live apart because a field can be added later.

#include <pt_platform/hv.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// The field names and values of a structure, element by element
/// (element * number of fields + field). Null stands for an empty value.
struct hvCompound {
    std::vector<hvUniqueArray> elements;
    std::vector<std::string> fieldNames;
};

struct hvArray {
    hvClassID classID;
    /// At least two; no trailing ones past the second.
    std::uint8_t ndim;
    /// The product of the dimensions.
    std::size_t count;

    /// Makes a value with zeroed data or empty elements. Throws std::bad_alloc for a size that
    /// cannot be had.
    static hvArray* make(hvClassID classID, std::size_t ndim, const std::size_t* dims,
                         std::size_t fieldCount = 0);
    static void destroy(hvArray* value) noexcept;

    std::size_t* dims() { return reinterpret_cast<std::size_t*>(this + 1); }
    const std::size_t* dims() const { return reinterpret_cast<const std::size_t*>(this + 1); }
    std::span<const std::size_t> dimSpan() const { return {dims(), ndim}; }

    /// Plain element storage of logical, char, double and integer values.
    unsigned char* data() { return reinterpret_cast<unsigned char*>(dims() + ndim); }
    const unsigned char* data() const {
        return reinterpret_cast<const unsigned char*>(dims() + ndim);
    }
    std::size_t dataSize() const { return count * hvElementSize(classID); }

    /// The elements of a cell, or the field values of a structure.
    std::span<hvUniqueArray> elements();
    std::span<const hvUniqueArray> elements() const;

    /// Structures only.
    hvCompound* compound() const { return *reinterpret_cast<hvCompound* const*>(data()); }
    std::vector<std::string>& fieldNames() { return compound()->fieldNames; }
    const std::vector<std::string>& fieldNames() const { return compound()->fieldNames; }

private:
    hvArray() = default;
};

static_assert(sizeof(hvArray) == 16, "a double scalar should fit a 48-byte allocation");
