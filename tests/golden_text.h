#pragma once

// Golden text: the exact bytes a test expects, kept in a file beside the test's sources.
// PT_UPDATE_GOLDEN=1 rewrites the file from what the code writes now; a mismatch leaves the
// new text as NAME.actual.txt in the test's working folder for a diff.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace pt::testing {

inline void expectGoldenText(const std::string& folder, const std::string& name,
                             const std::string& actual) {
    const std::string path = folder + "/" + name + ".txt";
    if (const char* update = std::getenv("PT_UPDATE_GOLDEN"); update && *update == '1') {
        std::ofstream(path, std::ios::binary) << actual;
    }
    std::ifstream in(path, std::ios::binary);
    std::stringstream golden;
    golden << in.rdbuf();
    if (golden.str() != actual) {
        std::ofstream(name + ".actual.txt", std::ios::binary) << actual;
    }
    EXPECT_EQ(golden.str(), actual) << "see " << name << ".actual.txt in the test's folder";
}

}  // namespace pt::testing
