#pragma once

// The page scripts and style sheets of src/report/pages, built into the library.

#include <cstddef>
#include <string_view>

namespace pt::report {

struct PageFile {
    std::string_view name;
    std::string_view text;
};

extern const PageFile kPageFiles[];
extern const std::size_t kPageFileCount;

/// The text of a page file by its file name; a name that is not there is a defect of the
/// build and throws std::logic_error.
std::string_view pageFile(std::string_view name);

}  // namespace pt::report
