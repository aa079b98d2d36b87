// Whole commands with everything that they say and write, against a recorded text.

#include "bench/CommandsRig.h"
#include "support/Golden.h"

#include <algorithm>
#include <iomanip>
#include <regex>

namespace kalvio::bench {
namespace {

// The words of a line, apart by blanks outside quotes.
std::vector<std::string> WordsOf(const std::string& line) {
    std::vector<std::string> words;
    std::istringstream in(line);
    for (std::string word; in >> std::quoted(word);) {
        words.push_back(word);
    }
    return words;
}

class TranscriptTest : public CommandsTest {
protected:
    // The folders of this run, and the names that stand for them in the texts.
    using Names = std::vector<std::pair<std::string, std::string>>;
    Names Folders() const {
        return {{m_directory.string(), "DIR"}, {std::filesystem::absolute(kExamples).string(), "EXAMPLES"}};
    }
    static std::string Replaced(std::string text, const std::string& what, const std::string& by) {
        for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size()) {
            text.replace(at, what.size(), by);
        }
        return text;
    }
    std::string Plain(std::string text) const {
        for (const auto& [path, name] : Folders()) {
            text = Replaced(text, path, name);
        }
        // Windows in JSON, a control a line; how often each changed is nobody's business.
        text = std::regex_replace(text, std::regex(",\"revision\":[0-9]+"), "");
        return Replaced(text, ",{\"id\":", ",\n{\"id\":");
    }
    std::string Real(std::string text) const {
        for (const auto& [path, name] : Folders()) {
            text = Replaced(text, name, path);
        }
        return text;
    }
    std::string Section(const char* title, const std::string& text) const {
        std::string all;
        std::istringstream lines(Plain(text));
        for (std::string line; std::getline(lines, line);) {
            all += (line.empty() ? std::string(title) : title + (" " + line)) + "\n";
        }
        return all;
    }
    // Each line of the file is a command; lines behind it that begin with '<' are typed into it.
    std::string Play(const std::filesystem::path& file) {
        std::ifstream in(file);
        std::string transcript;
        std::string command;
        std::string typed;
        const auto run = [&] {
            if (!command.empty()) {
                transcript += "$ " + command + "\n" + Section("<", typed);
                const int code = Run(WordsOf(Real(command)), Real(typed));
                transcript += Section("1", m_out.str()) + Section("2", m_err.str());
                transcript += "exit code " + std::to_string(code) + "\n" + TakeFiles();
            }
            typed.clear();
        };
        for (std::string line; std::getline(in, line);) {
            if (line.starts_with("< ")) {
                typed += line.substr(2) + "\n";
            } else if (!line.empty() && line[0] != '#') {
                run();
                command = line;
            }
        }
        run();
        return transcript;
    }

private:
    // The files that the command wrote, but configurations, which other commands then read.
    std::string TakeFiles() {
        std::vector<std::filesystem::path> paths;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(m_directory)) {
            if (entry.is_regular_file() && entry.path().extension() != ".kvc") {
                paths.push_back(entry.path());
            }
        }
        std::ranges::sort(paths);
        std::string text;
        for (const std::filesystem::path& path : paths) {
            text += Section(("file " + path.filename().string() + ":").c_str(), ReadAll(path.string()));
            std::filesystem::remove(path);
        }
        return text;
    }
};

TEST_F(TranscriptTest, Commands) {
    const std::filesystem::path file = std::filesystem::path(__FILE__).parent_path() / "commands.txt";
    test::ExpectGolden(__FILE__, "transcripts.txt", Play(file));
}

} // namespace
} // namespace kalvio::bench
