#include <gtest/gtest.h>

#include <stdexcept>

#include "report/page_variant.h"

namespace pt::report {
namespace {

TEST(PageVariant, MistakesInAPageFileAreDefects) {
    const PageFlags flags = pageFlags({false, false, "time"});
    for (const char* text : {"//@if nosuchflag\n//@endif\n", "//@if time\n", "//@endif\n",
                             "//@else\n", "//@if time &&\n//@endif\n", "@@missing@@\n", "@@open\n",
                             "//@unknown\n", "//@if (time\n//@endif\n"}) {
        EXPECT_THROW(resolvePageText(text, flags), std::logic_error) << text;
    }
}

}  // namespace
}  // namespace pt::report
