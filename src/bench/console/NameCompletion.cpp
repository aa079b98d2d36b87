#include "bench/console/NameCompletion.h"

#include "bench/ReferenceHostNames.h"
#include "bench/console/ConsoleWords.h"
#include "platform/Text.h"
#include "reference_host/script/Script.h"

#include <algorithm>

namespace kalvio::bench {

namespace {

constexpr std::string_view kWordCharacters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_:-";

std::size_t StartOfLastWord(std::string_view text) {
    const std::size_t before = text.find_last_not_of(kWordCharacters);
    return before == std::string_view::npos ? 0 : before + 1;
}

std::string_view LastWord(std::string_view text) {
    const std::size_t end = text.find_last_not_of(" \t");
    const std::string_view whole = text.substr(0, end == std::string_view::npos ? 0 : end + 1);
    return whole.substr(StartOfLastWord(whole));
}

const std::vector<std::string>& Choose(std::string_view before, const CompletionWords& words) {
    const std::string_view previous = LastWord(before);
    if (before.find_first_not_of(" \t") == std::string_view::npos) {
        return words.starts;
    }
    if (previous == kWordRead) {
        return words.results;
    }
    if (previous == kWordSource) {
        return words.sources;
    }
    return previous == kWordHelp || previous == kWordNames ? words.names : words.values;
}

std::size_t CommonLength(std::string_view a, std::string_view b) {
    std::size_t length = 0;
    while (length < std::min(a.size(), b.size()) &&
           CompareNoCase(a.substr(length, 1), b.substr(length, 1)) == 0) {
        ++length;
    }
    return length;
}

} // namespace

Completion CompleteWord(std::string_view beforeCursor, const CompletionWords& words) {
    const std::size_t start = StartOfLastWord(beforeCursor);
    const std::string_view typed = beforeCursor.substr(start);
    Completion completion{typed.size(), std::string(typed), {}};
    for (const std::string& word : Choose(beforeCursor.substr(0, start), words)) {
        if (CommonLength(word, typed) == typed.size()) {
            completion.candidates.push_back(word);
        }
    }
    std::vector<std::string>& candidates = completion.candidates;
    std::ranges::sort(candidates,
                      [](const std::string& a, const std::string& b) { return CompareNoCase(a, b) < 0; });
    candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
    if (candidates.empty()) {
        return completion;
    }
    const std::string& first = candidates.front();
    completion.text = first.substr(0, CommonLength(first, candidates.back()));
    if (candidates.size() == 1 && !first.ends_with(':')) {
        completion.text += ' ';
    }
    return completion;
}

} // namespace kalvio::bench
