// What no transcript can show: the examples of docs/wire.md, noise, and threads.

#include "simulator/Wire.h"
#include "simulator/peripherals/IoSwitcher.h"
#include "simulator/peripherals/PeripheralList.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <thread>

namespace kalvio::simulator {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

struct ExampleLine {
    std::string direction; // ">" or "<", doubled for frames on the peripheral bus
    std::string hex;
};

std::vector<ExampleLine> ReadExamples() {
    std::ifstream document(std::filesystem::path(__FILE__).parent_path() / "../../docs/wire.md");
    std::vector<ExampleLine> examples;
    bool inBlock = false;
    for (std::string line; std::getline(document, line);) {
        if (line == "```") {
            inBlock = !inBlock;
        } else if (inBlock && line.front() == '+') {
            examples.back().hex += line.substr(1);
        } else if (inBlock) {
            examples.push_back({line.substr(0, line.find(' ')), line.substr(line.find(' ') + 1)});
        }
    }
    return examples;
}

TEST(WireDocument, EveryExampleHolds) {
    Wire wire;
    for (const auto& peripheral : ParsePeripherals("switcher@3,keda@8,loader@9").peripherals) {
        wire.unit.Attach(peripheral);
    }
    wire.unit.AttachPeripheral(5, [](std::span<const std::uint8_t>) { return Hex("55050300 213001FB AA"); });
    std::string frame;
    std::set<std::uint8_t> busCommands;
    const auto examples = ReadExamples();
    ASSERT_GT(examples.size(), 80U);
    for (const ExampleLine& example : examples) {
        const std::size_t length = example.hex.starts_with("55") ? Hex(example.hex).size() : 9;
        if (example.direction == ">>") {
            frame = example.hex;
            busCommands.insert(Hex(frame)[3]);
        } else if (example.direction == "<<") {
            EXPECT_EQ(wire.Bus(frame, length), example.hex) << frame;
        } else if (example.direction == ">") {
            EXPECT_TRUE(wire.Write(example.hex).ok) << example.hex;
        } else {
            EXPECT_TRUE(wire.Read(Hex(example.hex).size()).ok) << example.hex;
            EXPECT_EQ(wire.got, Hex(example.hex)) << example.hex;
        }
    }
    EXPECT_THAT(wire.unit.ProtocolErrors(), IsEmpty());
    std::uint32_t seen = 0; // every command code has its example
    for (const Exchange& exchange : wire.unit.Exchanges()) {
        seen |= 1U << exchange.command;
    }
    EXPECT_EQ(seen, 0x01FFFFFEU);
    EXPECT_EQ(busCommands.size(), 34U); // status, reset, sector, 17 of the switcher, 14 of the adapter
}

TEST(Noise, IsGaussianAndRepeatsWithItsSeed) {
    const auto readings = [](std::uint32_t seed) {
        Wire wire;
        wire.unit.SetDeviceUnderTest({.offsetVolts = 2.0, .noiseVolts = 0.01, .seed = seed});
        std::vector<double> values;
        const std::string on = "000F4240 00000000 00000000 00000000 01000000 00000000";
        wire.Ask("0000ABCD 00000016 00000038 00000000 0D000000", on + on + "0000000000000000");
        for (int i = 0; i < 500; ++i) {
            wire.now += 20;
            for (const char* dsp : {"00", "01"}) {
                wire.Ask(std::string("0000ABCD 0000000C 00000000 00000006 00000100") + dsp + "580000");
                const double volts =
                    wire.got[2] + (wire.got[3] * 65536 + wire.got[4] * 256 + wire.got[5]) / 16777216.0;
                values.push_back(volts - 2.0);
            }
        }
        return values;
    };
    const auto values = readings(7);
    EXPECT_EQ(values, readings(7));
    EXPECT_NE(values, readings(8));
    double sum = 0.0;
    double squares = 0.0;
    double common = 0.0; // what both channels share
    int beyond = 0;      // one deviation
    for (std::size_t i = 0; i < values.size(); ++i) {
        sum += values[i];
        squares += values[i] * values[i];
        common += i % 2 == 1 ? values[i - 1] * values[i] : 0.0;
        beyond += std::fabs(values[i]) > 0.01 ? 1 : 0;
    }
    EXPECT_NEAR(sum / 1000.0, 0.0, 0.001);
    EXPECT_NEAR(std::sqrt(squares / 1000.0), 0.01, 0.0007);
    EXPECT_NEAR(common / 500.0, 0.0, 0.00001);
    EXPECT_NEAR(beyond, 317, 40);
}

TEST(Threads, RequestsAndLooksFromOutsideMayMeet) {
    Wire wire;
    const auto switcher = wire.unit.Plug<IoSwitcher>(std::uint8_t{3});
    std::thread observer([&wire, &switcher] {
        for (int i = 0; i < 300; ++i) {
            wire.unit.AddFault({.kind = FaultKind::SlowAnswer, .value = 0});
            wire.unit.SetDeviceUnderTest({.gain = 2.0});
            EXPECT_THAT(wire.unit.ProtocolErrors(), IsEmpty());
            EXPECT_LE(wire.unit.Exchanges().size(), 300U);
            const std::size_t movements = switcher->Events().size();
            EXPECT_LE(movements, switcher->Operations());
        }
    });
    for (int i = 0; i < 300; ++i) {
        wire.Bus(i % 2 == 0 ? "55030184 00CDAA" : "55030186 00CBAA", 9);
    }
    observer.join();
    EXPECT_THAT(wire.unit.Exchanges(), SizeIs(300));
    EXPECT_EQ(switcher->Operations(0, 0, 0), 300U);
}

} // namespace
} // namespace kalvio::simulator
