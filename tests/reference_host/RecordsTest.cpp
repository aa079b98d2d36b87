// The wire side of the measurement engine: generator records out, result words in.

#include "reference_host/measurement/GeneratorRecords.h"
#include "reference_host/measurement/ResultWords.h"
#include "reference_host/measurement/SourceGate.h"

#include <gtest/gtest.h>

namespace kalvio::reference_host {
namespace {

TEST(GeneratorRecords, StatesBecomeTheUnitsWholeNumbers) {
    GeneratorState state;
    state.frequency = {1000500.0, 20000000.0};               // 1000.5 Hz and 20 kHz in millihertz
    state.amplitude = {kStepsPerVolt, kStepsPerVolt * 0.25}; // 1 V and 0.25 V
    state.on = {true, false};
    state.dcOffset = -kStepsPerVolt * 1.5;
    state.jitterFrequency = 2500.0;   // 2.5 Hz
    state.jitterAmplitude = 125000.0; // 0.125 UI
    const DSPGeneratorDetails details = PackGenerator(state);
    using Values = std::array<std::uint32_t, 4>;
    using Flags = std::array<std::uint8_t, 8>;
    EXPECT_EQ(details.channels[0].values, (Values{0x000F4434, 0x000F4240, 0xFFE91CA0, 2500}));
    EXPECT_EQ(details.channels[1].values, (Values{0x01312D00, 250000, 0xFFE91CA0, 125000}));
    EXPECT_EQ(details.channels[0].bytes, (Flags{1, 0}));
    EXPECT_EQ(details.channels[1].bytes, (Flags{}));
}

TEST(GeneratorRecords, WhatDoesNotFitIsHeldAtTheEdge) {
    GeneratorState state;
    state.frequency = {1e12, -5.0};
    state.dcOffset = -kStepsPerVolt * 1e6;
    const DSPGeneratorDetails details = PackGenerator(state);
    EXPECT_EQ(details.channels[0].values[0], 0xFFFFFFFFU);
    EXPECT_EQ(details.channels[1].values[0], 0U);
    EXPECT_EQ(details.channels[0].values[2], 0x80000000U);
}

TEST(GeneratorRecords, RelaysStandAsBringUpLeavesThem) {
    const MicroGeneratorDetails relays = OutputRelays();
    const std::array<std::uint8_t, 19> expected{0, 0, 0, 0, 0, 0xC0, 0, 0xC0, 0, 0x77};
    EXPECT_EQ(relays.m, expected);
}

CDSPMap MapOf(std::initializer_list<std::uint32_t> words) {
    std::array<std::uint8_t, kDspMapBytes> bytes{};
    std::size_t at = 0;
    for (const std::uint32_t word : words) {
        for (const int shift : {16, 8, 0}) {
            bytes[at++] = static_cast<std::uint8_t>(word >> shift);
        }
    }
    CDSPMap map;
    EXPECT_EQ(map.SetDSPWords(bytes.data(), kDspMapBytes), 1);
    return map;
}

TEST(ResultWords, AChannelsBlockIsReadIntoStorageUnits) {
    const ChannelReading reading = ReadChannel(MapOf(
        {1, 0x800000, 997, 0x400000, 0xD30000, 2, 0, 0, 0x400000, 0, 0x200000, 0, 0x100000, 0, 0x001201}));
    EXPECT_TRUE(reading.valid);
    EXPECT_NEAR(reading.rms, 1.5 * kStepsPerVolt, 1e-9);
    EXPECT_NEAR(reading.frequency, 997250.0, 1e-9);
    EXPECT_NEAR(reading.phase, -90.0, 1e-9); // 0xD30000 is -2949120 / 32768
    EXPECT_NEAR(reading.ctDetector, 2.0 * kStepsPerVolt, 1e-9);
    EXPECT_NEAR(reading.harmonics[0], 0.25 * kStepsPerVolt, 1e-9);
    EXPECT_NEAR(reading.harmonics[1], 0.125 * kStepsPerVolt, 1e-9);
    EXPECT_NEAR(reading.harmonics[2], 0.0625 * kStepsPerVolt, 1e-9);
    EXPECT_FALSE(ReadChannel(MapOf({1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFFFF00})).valid);
}

TEST(ResultWords, TheDigitalBlockIsReadIntoStorageUnits) {
    const DigitalReading reading = ReadDigital(
        MapOf({5, 0, 0, 0x400000, 0x168000, 48000, 0x800000, 0xFFFF00, 44100, 0, 0x000280, 0, 0, 0, 1}));
    EXPECT_TRUE(reading.valid);
    EXPECT_NEAR(reading.carrierAmplitude, 5.0 * kStepsPerPeakVolt / 2.0, 1e-6);
    EXPECT_NEAR(reading.carrierJitter, 250000.0, 1e-6);
    EXPECT_NEAR(reading.carrierPhase, 45.0, 1e-9);
    EXPECT_NEAR(reading.frameRate, 48000500.0, 1e-6);
    EXPECT_NEAR(reading.frameDeviation, -1.0, 1e-9);
    EXPECT_NEAR(reading.syncRate, 44100000.0, 1e-6);
    EXPECT_NEAR(reading.syncDeviation, 2.5, 1e-9);
}

TEST(SourceGate, ResultsThatAWriteOvertookAreDropped) {
    SourceGate gate;
    int published = 0;
    const auto publish = [&published] { ++published; };
    EXPECT_TRUE(gate.PublishIfCurrent(gate.Pass(), publish));
    const std::uint64_t before = gate.Pass();
    gate.Close();
    EXPECT_FALSE(gate.PublishIfCurrent(before, publish)) << "a write began";
    EXPECT_FALSE(gate.PublishIfCurrent(gate.Pass(), publish)) << "a write is under way";
    gate.Open();
    EXPECT_FALSE(gate.PublishIfCurrent(before, publish)) << "a write went by";
    EXPECT_TRUE(gate.PublishIfCurrent(gate.Pass(), publish));
    EXPECT_EQ(published, 2);
}

} // namespace
} // namespace kalvio::reference_host
