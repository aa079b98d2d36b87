#pragma once

// Scenarios in text files: "== name" begins one, every line below is an operation and its words. Words are
// parted by blanks, "a text in quotes" is one word (\n is a new line), and # begins a comment.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace kalvio::test {

using Words = std::span<const std::string>;

struct ScenarioLine {
    std::string where; // file and line
    std::vector<std::string> words;
};

struct Scenario {
    std::string name;
    std::vector<ScenarioLine> lines;
};

inline std::vector<std::string> SplitWords(const std::string& line) {
    std::vector<std::string> words;
    bool quoted = false;
    bool inWord = false;
    for (std::size_t at = 0; at < line.size() && (quoted || line[at] != '#'); ++at) {
        const bool blank = !quoted && line[at] == ' ';
        if (!blank && !inWord) {
            words.emplace_back();
        }
        inWord = !blank;
        if (line[at] == '"') {
            quoted = !quoted;
        } else if (quoted && line.compare(at, 2, "\\n") == 0) {
            words.back() += '\n';
            ++at;
        } else if (!blank) {
            words.back() += line[at];
        }
    }
    return words;
}

// The lines of a file beside a source file that hold words.
inline std::vector<ScenarioLine> ReadLines(const std::filesystem::path& path) {
    std::vector<ScenarioLine> lines;
    std::ifstream file(path);
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (std::vector<std::string> words = SplitWords(line); !words.empty()) {
            lines.push_back({path.filename().string() + ":" + std::to_string(number), std::move(words)});
        }
    }
    EXPECT_FALSE(lines.empty()) << path;
    return lines;
}
inline std::vector<ScenarioLine> ReadLines(const char* source, const char* name) {
    return ReadLines(std::filesystem::path(source).parent_path() / name);
}

// The scenarios of every file of a folder beside a source file, which is named as the compiler names it.
inline std::vector<Scenario> ReadScenarios(const char* source, const char* folder) {
    const std::filesystem::path where = std::filesystem::path(source).parent_path() / folder;
    std::error_code error;
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(where, error)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    std::vector<Scenario> scenarios;
    if (files.empty()) { // a scenario that fails
        scenarios.push_back({"no scenarios", {{where.string(), {"a file of scenarios"}}}});
    }
    for (const std::filesystem::path& path : files) {
        for (ScenarioLine& line : ReadLines(path)) {
            if (line.words[0] != "==") {
                scenarios.back().lines.push_back(std::move(line));
                continue;
            }
            scenarios.emplace_back();
            for (const std::string& word : Words(line.words).subspan(1)) {
                scenarios.back().name += (scenarios.back().name.empty() ? "" : " ") + word;
            }
        }
    }
    return scenarios;
}

// Carries the lines out by the operation that their first word names.
inline void Play(const Scenario& scenario,
                 const std::map<std::string, std::function<void(Words)>>& operations) {
    for (const ScenarioLine& line : scenario.lines) {
        SCOPED_TRACE(line.where);
        const auto found = operations.find(line.words[0]);
        ASSERT_NE(found, operations.end()) << "no operation " << line.words[0];
        found->second(Words(line.words).subspan(1));
    }
}

// The name of a scenario as a test's.
inline std::string TestNameOf(const ::testing::TestParamInfo<Scenario>& info) {
    std::string name = std::to_string(info.index) + "_";
    for (const char c : info.param.name) {
        name += std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
    }
    return name;
}

} // namespace kalvio::test
