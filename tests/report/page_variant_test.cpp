#include <gtest/gtest.h>

#include <stdexcept>

#include "report/page_files.h"
#include "report/page_variant.h"

namespace pt::report {
namespace {

TEST(PageVariant, SectionsNestAndChooseOneBranch) {
    const std::string text =
        "a\n"
        "//@if comparison\n"
        "b\n"
        "    //@if time && !aggregatePage\n"
        "c @@label@@ d\n"
        "    //@elif basicmemory || detailedmemory\n"
        "e\n"
        "    //@else\n"
        "f\n"
        "    //@endif\n"
        "//@else\n"
        "g\n"
        "/*@if (single)*/\n"
        "h\n"
        "/*@endif*/\n"
        "//@endif\n"
        "i";
    const PageValues values = {{"label", "L"}};
    const auto resolved = [&](bool comparison, bool aggregatePage, const char* metric) {
        return resolvePageText(text, pageFlags({comparison, aggregatePage, metric}), values);
    };
    EXPECT_EQ(resolved(true, false, "time"), "a\nb\nc L d\ni");
    EXPECT_EQ(resolved(true, true, "time"), "a\nb\nf\ni");
    EXPECT_EQ(resolved(true, false, "detailedmemory"), "a\nb\ne\ni");
    EXPECT_EQ(resolved(false, false, "time"), "a\ng\nh\ni");
}

TEST(PageVariant, MistakesInAPageFileAreDefects) {
    const PageFlags flags = pageFlags({false, false, "time"});
    for (const char* text : {"//@if nosuchflag\n//@endif\n", "//@if time\n", "//@endif\n",
                             "//@else\n", "//@if time &&\n//@endif\n", "@@missing@@\n", "@@open\n",
                             "//@unknown\n", "//@if (time\n//@endif\n"}) {
        EXPECT_THROW(resolvePageText(text, flags), std::logic_error) << text;
    }
}

TEST(PageVariant, EveryPageFileResolvesForEveryPage) {
    const PageValues values = {{"lhsLabel", "L"}, {"rhsLabel", "R"}, {"phaseDepthStyles", ""}};
    ASSERT_GT(kPageFileCount, 0u);
    for (std::size_t i = 0; i < kPageFileCount; ++i) {
        for (bool comparison : {false, true}) {
            for (bool aggregatePage : {false, true}) {
                for (const char* metric : {"time", "basicmemory", "detailedmemory", "other"}) {
                    const std::string text = resolvePageText(
                        kPageFiles[i].text, pageFlags({comparison, aggregatePage, metric}), values);
                    EXPECT_EQ(text.find("//@"), std::string::npos) << kPageFiles[i].name;
                    EXPECT_EQ(text.find("@@"), std::string::npos) << kPageFiles[i].name;
                }
            }
        }
    }
}

}  // namespace
}  // namespace pt::report
