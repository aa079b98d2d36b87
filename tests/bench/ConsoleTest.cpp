// How names are chosen by patterns and words are completed.

#include "bench/console/NameCompletion.h"
#include "bench/console/NamePattern.h"

#include <gtest/gtest.h>

namespace kalvio::bench {
namespace {

TEST(NamePattern, StarsMarksAndParts) {
    const struct {
        const char* pattern;
        bool chosen;
    } rows[] = {{"", true},       {"timeout", true},   {"REG", true},          {"*", true},
                {"reg_*", true},  {"*_T??????", true}, {"*t*t", true},         {"R*G_*e*out*", true},
                {"?", false},     {"*_T?", false},     {"EG_*", false},        {"reg_?", false},
                {"timer", false}, {"*x", false},       {"REG_Timeout?", false}};
    for (const auto& row : rows) {
        EXPECT_EQ(MatchesPattern("REG_Timeout", row.pattern), row.chosen) << row.pattern;
    }
}

TEST(NameCompletion, WordsFollowWhatStandsBefore) {
    const std::vector<std::string> names{"REG_Start", "REG_STATUS_OK", "REG_Stop", "HW_Get"};
    CompletionWords words{names, names, names, {"rms", "fft:", "freq"}, {"gen-freq", "gen-ampl"}};
    words.starts.emplace_back("help");
    const struct {
        const char* line;
        std::size_t replaced;
        const char* text;
        std::size_t candidates;
    } rows[] = {{"reg_st", 6, "REG_St", 3},         {"reg_sta", 7, "REG_Sta", 2},
                {"  reg_sto", 7, "REG_Stop ", 1},   {"h", 1, "h", 2},
                {"print h", 1, "HW_Get ", 1},       {"help h", 1, "HW_Get ", 1},
                {"print \"x\", read f", 1, "f", 2}, {"read ff", 2, "fft:", 1},
                {"read rms", 3, "rms ", 1},         {"G(source gen-a", 5, "gen-ampl ", 1},
                {"nothing", 7, "nothing", 0}};
    for (const auto& row : rows) {
        const Completion completion = CompleteWord(row.line, words);
        EXPECT_EQ(completion.replaced, row.replaced) << row.line;
        EXPECT_EQ(completion.text, row.text) << row.line;
        EXPECT_EQ(completion.candidates.size(), row.candidates) << row.line;
    }
}

} // namespace
} // namespace kalvio::bench
