#include <pt_platform/hv.h>

#include <gtest/gtest.h>

namespace {

std::string throughValue(const std::string& text) {
    return hvArrayToStdString(hvUniqueArray(hvCreateString(text)).get());
}

TEST(HostText, Utf8BecomesSixteenBitCharactersInColumnOrder) {
    const hvUniqueArray value(
        hvCreateString("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x99\x82"));  // aé€🙂
    ASSERT_EQ(hvGetN(value.get()), 5u);
    EXPECT_EQ(std::u16string(hvGetChars(value.get()), 5), u"a\u00E9\u20AC\U0001F642");

    const std::size_t dims[] = {2, 2};
    hvUniqueArray block(hvCreateCharArray(2, dims));
    std::u16string(u"abcd").copy(hvGetChars(block.get()), 4);
    EXPECT_EQ(hvArrayToStdString(block.get()), "abcd");
    EXPECT_EQ(hvArrayToStdString(hvUniqueArray(hvCreateDoubleScalar(1)).get()), "");
    // Lone surrogates without a byte of their own become replacement characters.
    const hvChar lone[] = {0xD800, u'x', 0xDC20};
    EXPECT_EQ(hvCharsToUtf8(lone, 3), "\xEF\xBF\xBDx\xEF\xBF\xBD");
}

TEST(HostText, AnyByteStringSurvivesTheTrip) {
    const std::string cases[] = {
        "",
        "plain ascii",
        std::string("nul\0inside", 10),
        "\xC3\xA9t\xC3\xA9",
        "\xFF\xFE stray bytes",
        "\xC3",                  // truncated sequence
        "\xE0\x80\xAF",          // overlong slash
        "\xED\xA0\x80",          // an encoded surrogate
        "\xF4\x90\x80\x80",      // past the last code point
        "\x80\xC3\xA9\xBF\xF0",  // stray continuation bytes around a valid one
    };
    for (const std::string& text : cases) {
        EXPECT_EQ(throughValue(text), text);
    }
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        EXPECT_EQ(throughValue(text), text) << byte;
    }
}

}  // namespace
