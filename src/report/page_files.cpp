#include "report/page_files.h"

#include <stdexcept>
#include <string>

namespace pt::report {

std::string_view pageFile(std::string_view name) {
    for (std::size_t i = 0; i < kPageFileCount; ++i) {
        if (kPageFiles[i].name == name) {
            return kPageFiles[i].text;
        }
    }
    throw std::logic_error("no page file " + std::string(name));
}

}  // namespace pt::report
