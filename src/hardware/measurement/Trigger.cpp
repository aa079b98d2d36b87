#include "hardware/measurement/Trigger.h"

#include "hardware/LevelConversions.h"
#include "hardware/Truncate.h"
#include "hardware/link/QuietLock.h"
#include "hardware/registers/UnitAddresses.h"
#include "host/HostApplication.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <utility>

namespace kalvio {

namespace {

constexpr std::array<std::uint8_t, 2> kDsps{0, 1};
constexpr std::uint8_t kDspCommandArm = 0x3D;

constexpr std::uint32_t kModeOff = 32;
constexpr std::uint32_t kModeOtherChannel = 16; // this DSP follows the other one
constexpr std::array<std::uint32_t, 4> kModeOfSource{4, 2, 1, 8};

constexpr std::uint64_t kQuarters = 4;
constexpr double kHighestLevel = 0x7FFFFF;
constexpr double kLowestLevel = -0x800000;
constexpr std::uint32_t kWordModulus = 0x1000000;
constexpr std::uint32_t kWordMask = 0xFFFFFF;
constexpr double kJitterReferenceDbu = 12.0;
constexpr double kMillivolts = 1000.0;

// Pre- and post-trigger counts: quarters of the buffer before and after the trigger.
std::pair<std::uint32_t, std::uint32_t> SplitBuffer(std::uint32_t length, int position) {
    const auto before = static_cast<std::uint64_t>(std::clamp(position, 0, static_cast<int>(kQuarters)));
    return {static_cast<std::uint32_t>(before * length / kQuarters),
            static_cast<std::uint32_t>((kQuarters - before) * length / kQuarters)};
}

double LevelScale(const CAnalyserSettings* analyser, std::size_t channel) {
    if (IsJDO()) {
        return kStepsPerPeakVolt / (ConvertdBuToV(kJitterReferenceDbu) * kMillivolts);
    }
    if (analyser != nullptr && analyser->inputType == static_cast<std::int32_t>(InputType::Analogue)) {
        return analyser->lineUpVoltage / analyser->referenceValue[channel];
    }
    return 1.0;
}

// A level as the DSP compares it; negated for the falling slope.
std::uint32_t LevelWord(double level, int slope) {
    const std::uint32_t value = TruncatedBits(std::clamp(level, kLowestLevel, kHighestLevel));
    return (slope == 0 ? kWordModulus - value : value) & kWordMask;
}

std::uint32_t ModeWord(const CFFTParametersSettings& settings) {
    const bool known = settings.triggerSource >= 0 &&
                       static_cast<std::size_t>(settings.triggerSource) < kModeOfSource.size();
    return settings.triggerOn != 0 && known ? kModeOfSource[static_cast<std::size_t>(settings.triggerSource)]
                                            : kModeOff;
}

} // namespace

void Trigger::Arm(CFFTParametersSettings& settings) {
    const AnalyserInput::BufferLength length = m_input.ComputeBufferLength();
    {
        const QuietScope quiet; // failures of commands are told once the settings are free again
        const LockGuard hold(settings.lock);
        Write(settings, length.samples);
        settings.pending = 0;
    }
    if (length.windowReset) {
        AnalyserInput::TellWindowReset(true);
    }
}

void Trigger::Write(const CFFTParametersSettings& settings, std::uint32_t bufferLength) {
    const auto [before, after] = SplitBuffer(bufferLength, settings.triggerPosition);
    for (const std::uint8_t dsp : kDsps) {
        m_commands.DSPPutMem24(dsp, kSpaceX, address::kPreTriggerCount, before);
        m_commands.DSPPutMem24(dsp, kSpaceX, address::kPostTriggerCount, after);
    }
    for (const std::uint8_t dsp : kDsps) {
        const double level = settings.triggerLevel[dsp] * LevelScale(GetHostApplication().analyser, dsp);
        m_commands.DSPPutMem24(dsp, kSpaceX, address::kTriggerLevel, LevelWord(level, settings.triggerSlope));
    }
    // The DSP that does not watch for the trigger is armed first.
    std::uint8_t watching = settings.triggerChannel == 1 ? kChannelB : kChannelA;
    if (AreChannelsReversed()) {
        watching ^= 1;
    }
    const std::uint8_t following = watching ^ 1;
    m_commands.DSPPutMem24(following, kSpaceX, address::kTriggerMode, kModeOtherChannel);
    m_commands.DSPPutMem24(watching, kSpaceX, address::kTriggerMode, ModeWord(settings));
    m_commands.DSPSendCommand(following, kDspCommandArm);
    m_commands.DSPSendCommand(watching, kDspCommandArm);
}

} // namespace kalvio
