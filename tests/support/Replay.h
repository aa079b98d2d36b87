#pragma once

// Requests and what came of them, as texts that are played again.
//
// "$ NAME WORDS" is a request. The lines below it, up to a blank line, a comment ("#") or the next request,
// are its outcome; one that is no more than "= RESULT" stands behind its request when there is room.

#include "simulator/Faults.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kalvio::test {

// The longest line that is put together from parts.
inline constexpr std::size_t kReplayLine = 110;

// The words of a request, taken one by one: numbers (decimal, 0x, 'c'), "texts" with \n, @NAME for a file of
// the directory that is given.
class RequestWords {
public:
    explicit RequestWords(std::string_view line, std::string directory = {});
    [[nodiscard]] bool More() const { return m_next < m_words.size(); }
    std::string Next();
    long long Number();
    double Real();
    std::vector<std::uint8_t> Bytes();
    // KIND OCCURRENCE REPEAT VALUE COMMAND, of which the numbers may be left out from the end.
    simulator::Fault Fault();

private:
    std::vector<std::string> m_words;
    std::size_t m_next = 0;
    std::string m_directory;
};

// Carries a request out; its outcome, in whole lines.
using Player = std::function<std::string(std::string_view request)>;

// Plays the file of that name beside a source file, which is named as the compiler names it, and expects
// every outcome as it stands there. With KALVIO_RECORD set in the environment the file takes what came out.
void ExpectReplay(const char* source, const std::string& name, const Player& play);

} // namespace kalvio::test
