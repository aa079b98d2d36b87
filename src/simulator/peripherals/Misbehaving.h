#pragma once

// Broken peripherals: a wrapper that stands in for any peripheral and does one thing wrong.

#include "simulator/Peripheral.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace kalvio::simulator {

enum class Misbehaviour {
    Silent,        // neither obeys nor answers
    OtherAddress,  // obeys, answers under the next address
    WrongChecksum, // obeys, answers with a wrong checksum
    WrongLength,   // obeys, answers with a data byte too many
    WrongEcho,     // obeys, answers with the first data byte inverted, or the command when there is none
    Slow,          // obeys, answers after every time-out that the bus has
    ResetsItself,  // is reset just before the frame
    GoesToStandby, // goes to standby just before the frame
};

// Which of the frames for the device, counted from 1, find it misbehaving: `count` of them from `first` on;
// 0: all from there on.
struct Spell {
    std::uint32_t first = 1;
    std::uint32_t count = 0;
};

class Misbehaving final : public Peripheral {
public:
    Misbehaving(std::shared_ptr<Peripheral> inner, Misbehaviour kind, Spell spell = {});

    PeripheralReply Answer(ByteView frame, std::uint32_t tick) override;
    [[nodiscard]] std::uint8_t Address() const override { return m_inner->Address(); }
    void Route(SignalPath& path) const override { m_inner->Route(path); }

    // How often it misbehaved.
    [[nodiscard]] std::uint32_t Shown() const;

private:
    [[nodiscard]] bool IsInSpell();

    const std::shared_ptr<Peripheral> m_inner;
    const Misbehaviour m_kind;
    const Spell m_spell;
    mutable std::mutex m_lock; // guards the counts
    std::uint32_t m_seen = 0;
    std::uint32_t m_shown = 0;
};

// By name: "silent", "other-address", "wrong-checksum", "wrong-length", "wrong-echo", "slow",
// "resets-itself", "goes-to-standby".
std::optional<Misbehaviour> FindMisbehaviour(std::string_view name);
std::string MisbehaviourNames(); // all of them, in that order, with commas

} // namespace kalvio::simulator
