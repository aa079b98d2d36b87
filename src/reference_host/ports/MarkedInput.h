#pragma once

// Bytes as the system's terminal interface marks them: FF 00 X is a byte X that came in damaged, FF 00 00 a
// break, FF FF a byte of FF.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kalvio::reference_host {

struct ReceivedBytes {
    std::string bytes;
    std::vector<std::size_t> damaged; // places in `bytes`
    int breaks = 0;
};

// Reads a stream that comes in pieces.
class MarkedInput {
public:
    // Adds what a piece holds.
    void Read(std::string_view piece, ReceivedBytes& received);
    void Reset() { m_state = State::Plain; }

private:
    enum class State { Plain, Marked, Damaged };

    void ReadMarked(char byte, ReceivedBytes& received);

    State m_state = State::Plain;
};

} // namespace kalvio::reference_host
