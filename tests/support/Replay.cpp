#include "support/Replay.h"

#include "support/Golden.h"
#include "support/ScriptedDriver.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace kalvio::test {

namespace {

using simulator::FaultKind;

constexpr std::pair<const char*, FaultKind> kFaults[] = {
    {"FailWrite", FaultKind::FailWrite},
    {"FailRead", FaultKind::FailRead},
    {"FailReset", FaultKind::FailReset},
    {"FailAny", FaultKind::FailAny},
    {"FailLastError", FaultKind::FailLastError},
    {"FailDescriptor", FaultKind::FailDescriptor},
    {"ShortDescriptor", FaultKind::ShortDescriptor},
    {"WrongEcho", FaultKind::WrongEcho},
    {"Refuse", FaultKind::Refuse},
    {"ShortAnswer", FaultKind::ShortAnswer},
    {"StaleInput", FaultKind::StaleInput},
    {"Silence", FaultKind::Silence},
    {"Disconnect", FaultKind::Disconnect},
    {"SlowAnswer", FaultKind::SlowAnswer},
    {"CorruptPeripheralEcho", FaultKind::CorruptPeripheralEcho},
    {"PeripheralStatus", FaultKind::PeripheralStatus},
    {"WriteProtect", FaultKind::WriteProtect},
    {"CorruptMemoryRead", FaultKind::CorruptMemoryRead},
};

// The text again, with every outcome as it came out now.
std::string Replayed(const std::string& text, const Player& play) {
    std::string played;
    std::istringstream in(text);
    bool outcome = false; // lines that the request before has replaced
    for (std::string line; std::getline(in, line);) {
        const bool request = line.starts_with("$ ");
        outcome = outcome && !request && !line.empty() && !line.starts_with('#');
        if (request) {
            line = line.substr(0, line.find(" = "));
            const std::string came = play(std::string_view(line).substr(2));
            const bool brief = came.starts_with("= ") && came.find('\n') == came.size() - 1 &&
                               line.size() + came.size() <= kReplayLine;
            played += line + (brief ? " " : "\n") + came;
            outcome = true;
        } else if (!outcome) {
            played += line + "\n";
        }
    }
    return played;
}

} // namespace

RequestWords::RequestWords(std::string_view line, std::string directory) : m_directory(std::move(directory)) {
    std::istringstream in{std::string(line)};
    for (std::string word; in >> word;) {
        while (word[0] == '"' && (word.size() == 1 || word.back() != '"')) {
            std::string more;
            std::getline(in, more, '"');
            word += more + '"';
        }
        m_words.push_back(word);
    }
}

std::string RequestWords::Next() {
    std::string word = More() ? m_words[m_next++] : "";
    if (!word.starts_with('"')) {
        return word.starts_with('@') ? m_directory + word.substr(1) : word;
    }
    word = word.substr(1, word.size() - 2);
    for (std::size_t at = word.find("\\n"); at != std::string::npos; at = word.find("\\n", at)) {
        word.replace(at, 2, "\n");
    }
    return word;
}

long long RequestWords::Number() {
    const std::string word = Next();
    return word.starts_with('\'') ? word[1] : std::strtoll(word.c_str(), nullptr, 0);
}

double RequestWords::Real() {
    return std::strtod(Next().c_str(), nullptr);
}

std::vector<std::uint8_t> RequestWords::Bytes() {
    return Hex(Next());
}

simulator::Fault RequestWords::Fault() {
    const std::string name = Next();
    const auto* kind = std::ranges::find_if(kFaults, [&](const auto& fault) { return fault.first == name; });
    if (kind == std::end(kFaults)) {
        throw std::invalid_argument("no fault is called " + name);
    }
    simulator::Fault fault{kind->second, 1, 1, 0, 0};
    for (std::uint32_t* part : {&fault.occurrence, &fault.repeat, &fault.value, &fault.command}) {
        *part = More() ? static_cast<std::uint32_t>(Number()) : *part;
    }
    return fault;
}

void ExpectReplay(const char* source, const std::string& name, const Player& play) {
    std::ifstream file(std::filesystem::path(source).parent_path() / name);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    ASSERT_FALSE(text.empty()) << name;
    ExpectGolden(source, name.c_str(), Replayed(text, play));
}

} // namespace kalvio::test
