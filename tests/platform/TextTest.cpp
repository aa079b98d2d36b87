#include "platform/Text.h"

#include <gtest/gtest.h>
#include <limits>

namespace kalvio {
namespace {

TEST(Text, StringTableFormatsTakeOnlyWhatFits) {
    EXPECT_EQ(FormatText("The %s method failed because %s.", "KVNET_Reset", "100%s"),
              "The KVNET_Reset method failed because 100%s.");
    EXPECT_EQ(FormatText("0x%X %x %d", -1), "0xFFFFFFFF %x %d");
    EXPECT_EQ(FormatText("%d%% of %s", 5, "all"), "5% of all");
    EXPECT_EQ(FormatText("%s then %d", 5, "all"), "%s then 5");
    EXPECT_EQ(FormatText("%n %5d %", 7), "%n %5d %");
    EXPECT_EQ(FormatText("%u", -1), "4294967295");
    EXPECT_EQ(FormatText("%d", "text"), "%d");
}

TEST(Text, ReadsLeadingIntegers) {
    struct Case {
        const char* text;
        int value;
    };
    const Case cases[] = {
        {"", 0},
        {"  -12x", -12},
        {"+7", 7},
        {"x7", 0},
        {"- 7", 0},
        {"99999999999", std::numeric_limits<int>::max()},
        {"007", 7},
        {"-2147483648", std::numeric_limits<int>::min()},
        {"-99999999999999999999", std::numeric_limits<int>::min()},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(ParseLeadingInt(each.text), each.value) << each.text;
    }
}

TEST(Text, ComparesWithoutCaseAndTrims) {
    EXPECT_EQ(CompareNoCase("FPGAFile", "fpgafile"), 0);
    EXPECT_LT(CompareNoCase("abc", "ABCD"), 0);
    EXPECT_GT(CompareNoCase("B", "a"), 0);
    EXPECT_NE(CompareNoCase("\xC4", "\xE4"), 0); // only ASCII letters
    EXPECT_EQ(Trim(" \t a b\r\n"), "a b");
    EXPECT_EQ(Trim(" \n"), "");
}

TEST(Text, ALaterTableReplacesATextAndUnknownIdsAreEmpty) {
    static constexpr TextResource kFirst[] = {{990001, "one"}, {990002, "two"}};
    static constexpr TextResource kSecond[] = {{990002, "deux"}};
    RegisterTexts(kFirst);
    RegisterTexts(kSecond);
    EXPECT_EQ(LoadText(990001), "one");
    EXPECT_EQ(LoadText(990002), "deux");
    EXPECT_EQ(LoadText(990003), "");
}

TEST(Text, FormatsLongTexts) {
    const CString text(5000, 'y');
    EXPECT_EQ(Format("<%s>%d", text.c_str(), 3), "<" + text + ">3");
}

} // namespace
} // namespace kalvio
