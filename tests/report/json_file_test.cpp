// JSON text for names from data, and a file whose writes fail.

#include "report/json_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <unistd.h>

namespace pt::report {
namespace {

TEST(JsonFile, StringsThatEveryReaderTakes) {
    const struct {
        const char* text;
        const char* json;
    } cases[] = {
        {"plain", R"("plain")"},
        {"a \"b\" c\\d", R"("a \"b\" c\\d")"},
        {"\n\r\t\x01\x1f\x7f", "\"\\n\\r\\t\\u0001\\u001f\x7f\""},
        {"\xc3\xa9 \xe2\x82\xac \xf0\x9f\x99\x82", "\"\xc3\xa9 \xe2\x82\xac \xf0\x9f\x99\x82\""},
        {"\xff", R"("\ufffd")"},                                // never a UTF-8 byte
        {"\xc0\x80", R"("\ufffd\ufffd")"},                      // an overlong form of NUL
        {"\xed\xa0\x80", R"("\ufffd\ufffd\ufffd")"},            // a surrogate
        {"\xf4\x90\x80\x80", R"("\ufffd\ufffd\ufffd\ufffd")"},  // above U+10FFFF
        {"\xe2\x82", R"("\ufffd\ufffd")"},                      // cut short at the end
        {"\xe2\x82x", R"("\ufffd\ufffdx")"},                    // cut short by ASCII
    };
    for (const auto& c : cases) {
        EXPECT_EQ(jsonString(c.text), c.json) << c.text;
    }
    EXPECT_EQ(jsonString(std::string("a\0b", 3)), R"("a\u0000b")");
}

TEST(JsonFile, NumbersAndFailedWrites) {
    const auto path = std::filesystem::temp_directory_path() /
                      ("pt_json_file_" + std::to_string(getpid()) + ".json");
    JsonFile file(path.string());
    file.raw("[").integer(-42).raw(",").number(0.1).raw(",").number(NAN);
    file.raw(",").number(-INFINITY).raw(",").number(1e300).raw("]");
    ASSERT_TRUE(file.close());
    std::ifstream in(path);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "[-42,0.1,null,null,1e+300]");
    std::filesystem::remove(path);

    // A full disk: the writes fail long before the close, which must say so.
    JsonFile full("/dev/full");
    ASSERT_TRUE(full.isOpen());
    for (int i = 0; i < 10000; ++i) {
        full.raw("{\"name\":\"a phase\"},\n");
    }
    EXPECT_FALSE(full.close());
    EXPECT_FALSE(JsonFile("/nonexistent/folder/trace.json").isOpen());
}

}  // namespace
}  // namespace pt::report
