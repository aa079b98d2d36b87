#include "hardware/generator/GeneratorCommands.h"

#include "hardware/generator/GeneratorRecord.h"
#include "hardware/generator/VideoSync.h"
#include "hardware/link/Holding.h"
#include "platform/formats/Endian.h"

namespace kalvio {

namespace {

bool TogglesBack(const RegisterShadow& shadow, std::uint8_t changed) {
    return (shadow.lastChanged & changed) != 0;
}

template<std::size_t Count>
void PutBig16s(std::uint8_t* at, const std::array<std::uint16_t, Count>& values) {
    for (const std::uint16_t value : values) {
        PutBig16(at, value);
        at += 2;
    }
}

} // namespace

std::int16_t GeneratorCommands::SendDetails(const DSPGeneratorDetails& dsp,
                                            const MicroGeneratorDetails& micro) {
    const Holding hold(m_relays.lock);
    RegisterShadow& t = m_relays.At('t');
    RegisterShadow& u = m_relays.At('u');
    RegisterShadow& v = m_relays.At('v');
    const GeneratorRecord record = BuildGeneratorRecord({t.value, u.value, v.value}, dsp, micro);
    if (TogglesBack(t, record.changed.t) || TogglesBack(u, record.changed.u) ||
        TogglesBack(v, record.changed.v)) {
        m_relays.WaitFor({'t', 'u', 'v'});
    }
    const std::int16_t status =
        m_commands.DoCommand(kCommandGenerator, record.bytes.size(), record.bytes.data(), 0, nullptr);
    const std::uint32_t now = GetTickCount();
    t = {record.values.t, record.changed.t, now};
    u = {record.values.u, record.changed.u, now};
    v = {record.values.v, record.changed.v, now};
    return status;
}

std::int16_t GeneratorCommands::WriteDivisors(const std::array<std::uint16_t, 5>& divisors) {
    std::array<std::uint8_t, 10> bytes{};
    PutBig16s(bytes.data(), divisors);
    return m_commands.DoCommand(kCommandDivisors, bytes.size(), bytes.data(), 0, nullptr);
}

std::int16_t GeneratorCommands::SetVideoSync(const VideoSyncDetails& details) {
    std::array<std::uint8_t, 20> bytes{};
    PutBig16s(bytes.data(), details.settings);
    bytes[16] = details.mode;
    bytes[17] = details.standardA;
    bytes[18] = details.standardB;
    bytes[19] = RememberVideoStandards(details.standardA, details.standardB) ? 1 : 0;
    return m_commands.DoCommand(kCommandVideoSync, bytes.size(), bytes.data(), 0, nullptr);
}

} // namespace kalvio
