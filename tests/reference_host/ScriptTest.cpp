#include "reference_host/script/Script.h"

#include <gtest/gtest.h>

namespace kalvio::reference_host {
namespace {

// A statement as one line: kind, name, values with their types.
std::string Describe(const ScriptStatement& statement) {
    static constexpr const char* kKinds[] = {"call",    "set",    "print",  "wait",  "wait-regulation",
                                             "measure", "expect", "window", "sweep", "save",
                                             "load"};
    std::string text = kKinds[static_cast<int>(statement.kind)];
    text += " " + statement.name;
    for (const ScriptValue& value : statement.arguments) {
        if (value.Name() != nullptr) {
            text += " <" + *value.Name() + ">";
        } else if (value.Quantity() != nullptr) {
            text += (value.Quantity()->kind == QuantityKind::Source ? " source:" : " result:") +
                    value.Quantity()->name;
        } else {
            text += std::string(" ") + NameOf(value.Literal()->Type()) + ":" + value.Literal()->ToText();
        }
    }
    return text;
}

struct GoodLine {
    const char* text;
    const char* meaning;
};

class ScriptGoodLine : public testing::TestWithParam<GoodLine> {};

TEST_P(ScriptGoodLine, IsUnderstood) {
    const ParsedScript script = ParseScript(GetParam().text);
    EXPECT_TRUE(script.errors.empty()) << script.errors.front().message;
    ASSERT_EQ(script.statements.size(), 1U);
    EXPECT_EQ(Describe(script.statements.front()), GetParam().meaning);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, ScriptGoodLine,
    testing::Values(GoodLine{"HW_GetMainTemp", "call HW_GetMainTemp"},
                    GoodLine{"HW_GetMainTemp()", "call HW_GetMainTemp"},
                    GoodLine{"  Name ( 1 , 2.5 )  # both", "call Name long:1 double:2.5"},
                    GoodLine{"Name 1, 2.5", "call Name long:1 double:2.5"},
                    GoodLine{"Name -1, +2, -0x10", "call Name long:-1 long:2 long:-16"},
                    GoodLine{"Name 0xFFFFFFFF, 2147483648, -2147483648",
                             "call Name double:4294967295 double:2147483648 double:-2147483648"},
                    GoodLine{"Name 1e3, .5, 1E-3", "call Name double:1000 double:0.5 double:0.001"},
                    GoodLine{"Name true, FALSE", "call Name BOOL:true BOOL:false"},
                    GoodLine{R"(Name "a # b", "q\"\\\x41\t")", "call Name string:a # b string:q\"\\A\t"},
                    GoodLine{"Name other", "call Name <other>"},
                    GoodLine{"REG_Timeout = 20\r\n", "set REG_Timeout long:20"},
                    GoodLine{"REG_Result=REG_RESULT_PHASE", "set REG_Result <REG_RESULT_PHASE>"},
                    GoodLine{"wait 100", "wait wait long:100"}, GoodLine{"wait(0.5)", "wait wait double:0.5"},
                    GoodLine{"read fft-b:2", "measure read result:fft-b:2"},
                    GoodLine{"REG_RegulateTo = read rms", "set REG_RegulateTo result:rms"},
                    GoodLine{"print read rms, source gen-ampl", "print print result:rms source:gen-ampl"},
                    GoodLine{"Name source, read", "call Name <source> <read>"},
                    GoodLine{"expect source gen-ampl within -1 X",
                             "expect expect source:gen-ampl long:-1 <X>"},
                    GoodLine{"expect read within 1, 2", "expect expect <read> long:1 long:2"},
                    GoodLine{"sweep \"outputs\", read fft:2", "sweep sweep string:outputs result:fft:2"},
                    GoodLine{"save dir/a#1.kvc # kept", "save save string:dir/a#1.kvc"},
                    GoodLine{"load \"a b.kvc\"", "load load string:a b.kvc"},
                    GoodLine{"\xEF\xBB\xBFName", "call Name"},
                    GoodLine{"wait-regulation # to the end", "wait-regulation wait-regulation"},
                    GoodLine{R"(print "t ", HW_GetMainTemp)", "print print string:t  <HW_GetMainTemp>"}));

struct BadLine {
    const char* text;
    const char* complaint;
};

class ScriptBadLine : public testing::TestWithParam<BadLine> {};

TEST_P(ScriptBadLine, IsRefusedWithItsPlace) {
    const ParsedScript script = ParseScript(std::string("\n# first\n") + GetParam().text);
    EXPECT_TRUE(script.statements.empty());
    ASSERT_EQ(script.errors.size(), 1U);
    EXPECT_EQ(script.errors.front().ToText("f.kvs"), GetParam().complaint);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, ScriptBadLine,
    testing::Values(
        BadLine{"1 = 2", "f.kvs:3:1: expected a name, found \"1\""},
        BadLine{"= 2", "f.kvs:3:1: expected a name, found \"=\""},
        BadLine{"Name =", "f.kvs:3:7: expected a value, found the end of the line"},
        BadLine{"Name = 1 2", "f.kvs:3:10: expected the end of the line, found \"2\""},
        BadLine{"Name(1", "f.kvs:3:7: expected \",\" or \")\", found the end of the line"},
        BadLine{"Name(1 2)", "f.kvs:3:8: expected \",\" or \")\", found \"2\""},
        BadLine{"Name(1,)", "f.kvs:3:8: expected a value, found \")\""},
        BadLine{"Name(1) 2", "f.kvs:3:9: expected the end of the line, found \"2\""},
        BadLine{"Name 1,", "f.kvs:3:8: expected a value, found the end of the line"},
        BadLine{"print \"a\" \"b\"", "f.kvs:3:11: expected the end of the line, found \"b\""},
        BadLine{"Name 0x", "f.kvs:3:6: \"0x\" is no number"},
        BadLine{"Name 12abc", "f.kvs:3:6: \"12abc\" is no number"},
        BadLine{"Name 1e999", "f.kvs:3:6: \"1e999\" is no number"},
        BadLine{"Name \"open", "f.kvs:3:6: the text has no closing quote"},
        BadLine{"Name \"\\q\"",
                "f.kvs:3:6: a backslash in a text stands before n, r, t, \", \\ or x and two hex digits"},
        BadLine{"Name \"\\x4\"",
                "f.kvs:3:6: a backslash in a text stands before n, r, t, \", \\ or x and two hex digits"},
        BadLine{"Name \"\\",
                "f.kvs:3:6: a backslash in a text stands before n, r, t, \", \\ or x and two hex digits"},
        BadLine{"Name ; 1", "f.kvs:3:6: \";\" has no meaning here"},
        BadLine{"wait", "f.kvs:3:1: wait needs one number of milliseconds, 0 to 86400000"},
        BadLine{"wait -1", "f.kvs:3:1: wait needs one number of milliseconds, 0 to 86400000"},
        BadLine{"wait \"5\"", "f.kvs:3:1: wait needs one number of milliseconds, 0 to 86400000"},
        BadLine{"wait-regulation 5", "f.kvs:3:17: wait-regulation takes nothing"},
        BadLine{"read", "f.kvs:3:5: expected the name of a result, found the end of the line"},
        BadLine{"source = 5", "f.kvs:3:8: expected the name of a source, found \"=\""},
        BadLine{"sweep \"a\", source gen-ampl",
                "f.kvs:3:1: sweep needs the name of an array and what to read, "
                "as in sweep \"outputs\", read rms"},
        BadLine{"expect read rms 1 2", "f.kvs:3:17: expected \"within\", found \"1\""},
        BadLine{"expect X within 2 1", "f.kvs:3:17: expect needs the lower bound first"},
        BadLine{"expect X within \"1\" 2", "f.kvs:3:17: expect compares with numbers"},
        BadLine{"save # nowhere", "f.kvs:3:6: save needs the name of a file"},
        BadLine{"load a\"b", "f.kvs:3:6: load needs the name of a file"},
        BadLine{"print", "f.kvs:3:1: print needs something to print"}));

// Ten million characters are told of in a few, at once.
TEST(Script, WhatIsTooLongIsRefusedWhereItStands) {
    const std::string letters(10'000'000, 'x');
    const struct {
        std::string text;
        std::string complaint;
    } rows[] = {{"print " + letters, "the name is longer than 128 characters"},
                {"1" + letters, "\"1" + std::string(127, 'x') + "...\" is no number"},
                {"wait 1 \"" + letters + "\"",
                 "expected the end of the line, found \"" + std::string(127, 'x') + "..."}};
    for (const auto& row : rows) {
        const ParsedScript script = ParseScript(row.text);
        ASSERT_EQ(script.errors.size(), 1U);
        EXPECT_EQ(script.errors.front().message, row.complaint);
    }
}

TEST(Script, AFaultyLineLeavesTheOthersAndEveryFaultIsTold) {
    const ParsedScript script = ParseScript("One\n(\nTwo 1\n\n   # note\n)\nThree");
    ASSERT_EQ(script.statements.size(), 3U);
    EXPECT_EQ(script.statements[1].line, 3);
    EXPECT_EQ(script.statements[2].line, 7);
    ASSERT_EQ(script.errors.size(), 2U);
    EXPECT_EQ(script.errors[0].line, 2);
    EXPECT_EQ(script.errors[1].line, 6);
}

} // namespace
} // namespace kalvio::reference_host
