#pragma once

// The representation behind the opaque hvArray of <pt_platform/hv.h>.

#include <pt_platform/hv.h>

#include <string>
#include <vector>

struct hvArray {
    hvClassID classID = hvClassID::Unknown;
    /// At least two entries; no trailing ones past the second.
    std::vector<std::size_t> dims;
    /// Plain element storage of logical, char, double and integer values.
    std::vector<unsigned char> data;
    /// Cell elements, or structure field values laid out element by element
    /// (element * number of fields + field). Null stands for an empty value.
    std::vector<hvUniqueArray> elements;
    std::vector<std::string> fieldNames;

    std::size_t numberOfElements() const;
};
