#pragma once

// Transcripts: what was asked of the hardware object and all that came of it, as texts that are played again.
//
// "$ NAME ARGUMENTS" is a request. The lines below it, up to a blank line, a comment ("#") or the next
// request, are its outcome:
//   > +MS COMMAND PARAMETERS : DATA < BYTES    commands as the unit saw them, so long after the request
//   trace, message, box, ask, hint, notice     what the host was told
//   = RESULT OUT-VALUES (MS ms)                with the time it took; on the line before when there is room
// Before the name "quietly" leaves commands and traces out, "tracing" the commands, and "briefly" counts
// them. An out value or a buffer that the operation left alone still shows 0x77 in every byte.

#include "support/UnitRig.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace kalvio::test {

// The words of a request, taken one by one: numbers (decimal, 0x, 'c'), "texts" with \n, @NAME for a file of
// the rig's directory.
class Words {
public:
    Words(std::string_view line, std::string directory);
    [[nodiscard]] bool More() const { return m_next < m_words.size(); }
    std::string Next();
    long long Number();
    double Real();
    std::vector<std::uint8_t> Bytes();

private:
    std::vector<std::string> m_words;
    std::size_t m_next = 0;
    std::string m_directory;
};

// What requests act on: a fresh rig with each "unit" request.
struct Stage {
    std::unique_ptr<UnitRig> rig;
    int rigs = 0; // made so far
};

using Request = std::function<std::string(Stage& stage, Words& words)>;
[[nodiscard]] const std::map<std::string, Request>& Requests();

// The text again, with every outcome as it came out now.
[[nodiscard]] std::string PlayTranscript(const std::string& text);

} // namespace kalvio::test
