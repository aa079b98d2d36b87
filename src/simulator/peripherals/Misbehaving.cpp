#include "simulator/peripherals/Misbehaving.h"

#include "simulator/peripherals/BusFrame.h"

#include <utility>

namespace kalvio::simulator {

namespace {

constexpr std::uint32_t kBeyondEveryTimeoutMs = 0x10000; // time-outs have 16 bits

void KeepQuiet(PeripheralReply& reply) {
    reply = {};
}

void AnswerElsewhere(PeripheralReply& reply) {
    reply.bytes[1] = static_cast<std::uint8_t>((reply.bytes[1] + 1) % (kLastPeripheralAddress + 1));
    Seal(reply.bytes);
}

void SpoilChecksum(PeripheralReply& reply) {
    reply.bytes[reply.bytes.size() - 2] ^= 0x01;
}

void Lengthen(PeripheralReply& reply) {
    reply.bytes.insert(reply.bytes.end() - 2, 0);
    ++reply.bytes[2];
    Seal(reply.bytes);
}

void SpoilEcho(PeripheralReply& reply) {
    InvertEcho(reply.bytes);
}

void Dawdle(PeripheralReply& reply) {
    reply.delayMs = kBeyondEveryTimeoutMs;
}

void AnswerWell(PeripheralReply&) {}

enum class Before { Listen, Ignore, Reset, Standby };

struct Manner {
    Misbehaviour kind;
    std::string_view name;
    Before before;
    void (*spoil)(PeripheralReply& reply);
};

constexpr Manner kManners[] = {
    {Misbehaviour::Silent, "silent", Before::Ignore, KeepQuiet},
    {Misbehaviour::OtherAddress, "other-address", Before::Listen, AnswerElsewhere},
    {Misbehaviour::WrongChecksum, "wrong-checksum", Before::Listen, SpoilChecksum},
    {Misbehaviour::WrongLength, "wrong-length", Before::Listen, Lengthen},
    {Misbehaviour::WrongEcho, "wrong-echo", Before::Listen, SpoilEcho},
    {Misbehaviour::Slow, "slow", Before::Listen, Dawdle},
    {Misbehaviour::ResetsItself, "resets-itself", Before::Reset, AnswerWell},
    {Misbehaviour::GoesToStandby, "goes-to-standby", Before::Standby, AnswerWell},
};

const Manner& MannerOf(Misbehaviour kind) {
    return kManners[static_cast<std::size_t>(kind)];
}

} // namespace

Misbehaving::Misbehaving(std::shared_ptr<Peripheral> inner, Misbehaviour kind, Spell spell)
    : m_inner(std::move(inner)), m_kind(kind), m_spell(spell) {}

PeripheralReply Misbehaving::Answer(ByteView frame, std::uint32_t tick) {
    if (!IsFor(frame, Address()) || !IsInSpell()) {
        return m_inner->Answer(frame, tick);
    }
    const Manner& manner = MannerOf(m_kind);
    if (manner.before == Before::Ignore) {
        return {};
    }
    if (manner.before != Before::Listen) {
        const std::uint8_t on = manner.before == Before::Reset ? 1 : 0;
        m_inner->Answer(MakeFrame(Address(), kCommandReset, {&on, 1}), tick);
    }
    PeripheralReply reply = m_inner->Answer(frame, tick);
    if (!reply.bytes.empty()) {
        manner.spoil(reply);
    }
    return reply;
}

bool Misbehaving::IsInSpell() {
    const std::scoped_lock guard(m_lock);
    ++m_seen;
    const bool in = m_seen >= m_spell.first && (m_spell.count == 0 || m_seen - m_spell.first < m_spell.count);
    m_shown += in ? 1U : 0U;
    return in;
}

std::uint32_t Misbehaving::Shown() const {
    const std::scoped_lock guard(m_lock);
    return m_shown;
}

std::optional<Misbehaviour> FindMisbehaviour(std::string_view name) {
    for (const Manner& manner : kManners) {
        if (manner.name == name) {
            return manner.kind;
        }
    }
    return std::nullopt;
}

std::string MisbehaviourNames() {
    std::string names;
    for (const Manner& manner : kManners) {
        names += (names.empty() ? "" : ", ") + std::string(manner.name);
    }
    return names;
}

} // namespace kalvio::simulator
