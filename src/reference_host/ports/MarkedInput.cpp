#include "reference_host/ports/MarkedInput.h"

namespace kalvio::reference_host {

namespace {

constexpr char kMark = '\xFF';

} // namespace

void MarkedInput::Read(std::string_view piece, ReceivedBytes& received) {
    while (!piece.empty()) {
        if (m_state != State::Plain) {
            ReadMarked(piece.front(), received);
            piece.remove_prefix(1);
            continue;
        }
        const std::size_t mark = piece.find(kMark);
        received.bytes += piece.substr(0, mark);
        if (mark == std::string_view::npos) {
            return;
        }
        m_state = State::Marked;
        piece.remove_prefix(mark + 1);
    }
}

void MarkedInput::ReadMarked(char byte, ReceivedBytes& received) {
    if (m_state == State::Marked && byte == '\0') {
        m_state = State::Damaged;
        return;
    }
    if (m_state == State::Damaged && byte == '\0') {
        ++received.breaks;
    } else {
        if (m_state == State::Damaged) {
            received.damaged.push_back(received.bytes.size());
        }
        received.bytes += byte;
    }
    m_state = State::Plain;
}

} // namespace kalvio::reference_host
