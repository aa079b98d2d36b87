// The examples of docs/wire.md, played against a fresh unit.

#include "simulator/Wire.h"
#include "simulator/peripherals/PeripheralList.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <set>

namespace kalvio::simulator {
namespace {

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
    std::string frame;
    std::set<std::uint8_t> busCommands;
    wire.unit.AttachPeripheral(5, [](std::span<const std::uint8_t>) { return Hex("55050300 213001FB AA"); });
    const auto examples = ReadExamples();
    ASSERT_GT(examples.size(), 80U);
    for (const ExampleLine& example : examples) {
        if (example.direction == ">>") {
            frame = example.hex;
            busCommands.insert(Hex(frame)[3]);
            continue;
        }
        if (example.direction == "<<") {
            wire.Play({{frame, example.hex}});
            continue;
        }
        if (example.direction == ">") {
            EXPECT_TRUE(wire.Write(example.hex).ok) << example.hex;
            continue;
        }
        EXPECT_TRUE(wire.Read(Hex(example.hex).size()).ok) << example.hex;
        EXPECT_EQ(wire.got, Hex(example.hex)) << example.hex;
    }
    EXPECT_THAT(wire.unit.ProtocolErrors(), testing::IsEmpty());
    std::uint32_t seen = 0; // every command code has its example
    for (const Exchange& exchange : wire.unit.Exchanges()) {
        seen |= 1U << exchange.command;
    }
    EXPECT_EQ(seen, 0x01FFFFFEU);
    EXPECT_EQ(busCommands.size(), 34U); // status, reset, sector, 17 of the switcher, 14 of the adapter
}

} // namespace
} // namespace kalvio::simulator
