#pragma once

// From what the generators put out to the words that the DSPs hold: every cadence of unit time makes a
// result block of each channel and sets the HF2 flags. Time passes only when Advance says so.

#include "simulator/DeviceUnderTest.h"
#include "simulator/boards/DspMemory.h"
#include "simulator/boards/MicroMemory.h"
#include "simulator/signals/ResultBlock.h"
#include "simulator/signals/SignalPath.h"

#include <array>

namespace kalvio::simulator {

inline constexpr std::uint8_t kHf2Mask = 0x08;
inline constexpr std::uint16_t kHf2Address[2] = {0xB022, 0xB02A}; // in micro-controller 'X', DSP A and B

// A level that moves exponentially towards its target.
class Follower {
public:
    void Aim(double target, std::uint32_t tick, double timeConstantMs);
    [[nodiscard]] double At(std::uint32_t tick, double timeConstantMs) const;

private:
    double m_from = 0.0;
    double m_target = 0.0;
    std::uint32_t m_since = 0;
};

struct MeasurementSettings {
    std::uint32_t cadenceMs = 20;
    double digitalFrameRateHz = 0.0;
    double referenceFrameRateHz = 0.0;
};

class MeasurementModel {
public:
    MeasurementModel(MicroMemory& micro, std::array<DspMemory, 2>& dsps, MeasurementSettings settings,
                     std::uint32_t tick);

    // Lets unit time pass up to `tick`; of several blocks only the latest is made.
    void Advance(std::uint32_t tick);

    void SetStimuli(const std::array<Stimulus, 2>& stimuli, std::uint32_t tick);
    void SetDevice(DeviceUnderTest device, std::uint32_t tick);
    void SetPath(const SignalPath& path, std::uint32_t tick);
    void SetCadence(std::uint32_t milliseconds);
    [[nodiscard]] const Stimulus& GetStimulus(std::size_t channel) const { return m_stimuli[channel]; }

    // Positive and negative peak of a channel in microvolts.
    [[nodiscard]] std::array<std::int32_t, 2> Peaks(std::size_t channel, std::uint32_t tick) const;

private:
    struct Channel {
        Response settled;
        Follower amplitude;
        Follower dc;
    };

    // The settled answer that an analyser channel hears.
    [[nodiscard]] Response Settle(std::size_t channel) const;
    void Retarget(std::uint32_t tick, double timeConstantMs);
    void Publish();
    [[nodiscard]] ResultBlock MakeChannelBlock(std::size_t channel) const;
    [[nodiscard]] ResultBlock MakeDigitalBlock() const;
    void Store(std::size_t dsp, std::uint32_t address, const ResultBlock& block);

    MicroMemory& m_micro;
    std::array<DspMemory, 2>& m_dsps;
    MeasurementSettings m_settings;
    DeviceUnderTest m_device;
    std::array<Stimulus, 2> m_stimuli{};
    SignalPath m_path;
    std::array<Channel, 2> m_channels{};
    std::uint32_t m_blockTick;
    std::uint32_t m_blockCount = 0;
};

} // namespace kalvio::simulator
