#include "reference_host/script/Script.h"

#include "support/Golden.h"

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

// Each line of the text is a statement by itself; below it stands what it means, or why it is refused.
TEST(Script, LinesAndTheirMeanings) {
    std::ifstream file(std::filesystem::path(__FILE__).parent_path() / "lines.txt");
    std::string all;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("  ")) {
            continue;
        }
        const ParsedScript script = ParseScript("\n# first\n" + line + "\n");
        ASSERT_EQ(script.statements.size() + script.errors.size(), 1U) << line;
        all += line + "\n  " +
               (script.errors.empty() ? Describe(script.statements.front())
                                      : script.errors.front().ToText("f.kvs")) +
               "\n";
    }
    test::ExpectGolden(__FILE__, "lines.txt", all);
    EXPECT_EQ(Describe(ParseScript("\xEF\xBB\xBFName = 20\r\n").statements.at(0)), "set Name long:20");
}

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
