#include "simulator/signals/MeasurementModel.h"

#include "simulator/signals/Noise.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

namespace kalvio::simulator {

namespace {

constexpr std::uint32_t kChannelBlock = 0x100; // DSP 'X' addresses of the blocks
constexpr std::uint32_t kDigitalBlock = 0x120;
constexpr double kDegreeScale = 32768.0;
constexpr double kMillivoltScale = 1000.0 * 64.0;
constexpr double kPpmScale = 256.0;
constexpr double kCarrierVolts = 5.0;
constexpr double kStandardRates[] = {32000, 44100, 48000, 64000, 88200, 96000, 176400, 192000};

// How far a frame rate lies from the nearest standard one, in parts per million.
double DeviationPpm(double rate) {
    const double nearest = *std::min_element(
        std::begin(kStandardRates), std::end(kStandardRates),
        [rate](double one, double other) { return std::fabs(rate - one) < std::fabs(rate - other); });
    return (rate / nearest - 1.0) * 1e6;
}

std::int32_t Microvolts(double volts) {
    constexpr double kLargest = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(std::round(volts * 1e6), -kLargest, kLargest));
}

} // namespace

void Follower::Aim(double target, std::uint32_t tick, double timeConstantMs) {
    m_from = At(tick, timeConstantMs);
    m_since = tick;
    m_target = target;
}

double Follower::At(std::uint32_t tick, double timeConstantMs) const {
    if (timeConstantMs <= 0.0) {
        return m_target;
    }
    const double elapsed = static_cast<double>(tick - m_since);
    return m_target + (m_from - m_target) * std::exp(-elapsed / timeConstantMs);
}

MeasurementModel::MeasurementModel(MicroMemory& micro, std::array<DspMemory, 2>& dsps,
                                   MeasurementSettings settings, std::uint32_t tick)
    : m_micro(micro), m_dsps(dsps), m_settings(settings), m_blockTick(tick) {
    SetCadence(settings.cadenceMs);
}

void MeasurementModel::SetCadence(std::uint32_t milliseconds) {
    m_settings.cadenceMs = std::max<std::uint32_t>(milliseconds, 1);
}

void MeasurementModel::Advance(std::uint32_t tick) {
    const std::uint32_t blocks = (tick - m_blockTick) / m_settings.cadenceMs;
    if (blocks == 0) {
        return;
    }
    m_blockTick += blocks * m_settings.cadenceMs;
    if (m_device.silent) {
        return;
    }
    m_blockCount += blocks;
    Publish();
}

void MeasurementModel::SetStimuli(const std::array<Stimulus, 2>& stimuli, std::uint32_t tick) {
    m_stimuli = stimuli;
    Retarget(tick, m_device.timeConstantMs);
}

void MeasurementModel::SetDevice(DeviceUnderTest device, std::uint32_t tick) {
    const double formerTimeConstant = m_device.timeConstantMs;
    m_device = std::move(device);
    Retarget(tick, formerTimeConstant);
}

void MeasurementModel::SetPath(const SignalPath& path, std::uint32_t tick) {
    if (path == m_path) {
        return;
    }
    m_path = path;
    Retarget(tick, m_device.timeConstantMs);
}

Response MeasurementModel::Settle(std::size_t channel) const {
    const std::size_t slot = m_path.heard[channel];
    const SlotSource source = slot < kSlotCount ? m_path.driven[slot] : SlotSource::Silence;
    if (source == SlotSource::Silence) {
        return {};
    }
    const Stimulus& stimulus = m_stimuli[source == SlotSource::GeneratorA ? 0 : 1];
    return Respond(m_device, stimulus, static_cast<int>(slot % 2));
}

void MeasurementModel::Retarget(std::uint32_t tick, double timeConstantMs) {
    for (std::size_t i = 0; i < m_channels.size(); ++i) {
        Channel& channel = m_channels[i];
        channel.settled = Settle(i);
        channel.amplitude.Aim(channel.settled.amplitudeVolts, tick, timeConstantMs);
        channel.dc.Aim(channel.settled.dcVolts, tick, timeConstantMs);
    }
}

void MeasurementModel::Publish() {
    for (std::size_t i = 0; i < m_channels.size(); ++i) {
        Store(i, kChannelBlock, MakeChannelBlock(i));
        m_micro.Modify('X', kHf2Address[i], 0, kHf2Mask);
    }
    Store(0, kDigitalBlock, MakeDigitalBlock());
}

ResultBlock MeasurementModel::MakeChannelBlock(std::size_t channel) const {
    const Channel& state = m_channels[channel];
    const double tau = m_device.timeConstantMs;
    const double level = state.amplitude.At(m_blockTick, tau);
    const double noise =
        m_device.noiseVolts * GaussianNoise(m_device.seed, m_blockCount, static_cast<std::uint32_t>(channel));
    const double reading = std::fabs(level + noise);
    const double settled = state.settled.amplitudeVolts;
    const double scale = settled == 0.0 ? 0.0 : std::fabs(level / settled);

    ResultBlock block;
    block.PutSplit(0, reading);
    block.PutSplit(2, state.settled.frequencyHz);
    if (channel == 0) {
        block.PutSigned(4, m_channels[1].settled.phaseDegrees - state.settled.phaseDegrees, kDegreeScale);
    }
    block.PutSplit(5, reading);
    for (std::size_t i = 0; i < 3; ++i) {
        block.PutSplit(7 + 2 * i, std::fabs(state.settled.harmonicVolts[i]) * scale);
    }
    block.PutSigned(13, state.dc.At(m_blockTick, tau), kMillivoltScale);
    block.PutStatus(m_blockCount, m_device.overloadVolts == 0.0 || level <= m_device.overloadVolts);
    return block;
}

ResultBlock MeasurementModel::MakeDigitalBlock() const {
    ResultBlock block;
    block.PutSplit(0, kCarrierVolts);
    block.PutSplit(2, m_stimuli[0].jitterAmplitudeUi);
    block.PutSplit(5, m_settings.digitalFrameRateHz);
    block.PutSigned(7, DeviationPpm(m_settings.digitalFrameRateHz), kPpmScale);
    block.PutSplit(8, m_settings.referenceFrameRateHz);
    block.PutSigned(10, DeviationPpm(m_settings.referenceFrameRateHz), kPpmScale);
    block.PutStatus(m_blockCount, true);
    return block;
}

void MeasurementModel::Store(std::size_t dsp, std::uint32_t address, const ResultBlock& block) {
    for (const std::uint32_t word : block.Words()) {
        m_dsps[dsp].Put('X', address++, word);
    }
}

std::array<std::int32_t, 2> MeasurementModel::Peaks(std::size_t channel, std::uint32_t tick) const {
    const Channel& state = m_channels[channel];
    const double dc = state.dc.At(tick, m_device.timeConstantMs);
    const double swing = std::fabs(state.amplitude.At(tick, m_device.timeConstantMs)) * std::numbers::sqrt2;
    return {Microvolts(dc + swing), Microvolts(dc - swing)};
}

} // namespace kalvio::simulator
