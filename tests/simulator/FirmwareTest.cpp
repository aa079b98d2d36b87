// Downloads into peripherals.

#include "simulator/Wire.h"
#include "simulator/peripherals/FirmwareReceiver.h"
#include "simulator/peripherals/KedaAdapter.h"

#include <numeric>

namespace kalvio::simulator {
namespace {

constexpr const char* kStored = "550900CF 7DAA";
constexpr const char* kRefused = "550900CE 7EAA";

// The frame of a block for address 9 whose program bytes all carry the block's number.
std::string Block(unsigned sector, unsigned number) {
    std::vector<std::uint8_t> frame{0x55,
                                    9,
                                    34,
                                    0xB1,
                                    static_cast<std::uint8_t>(sector << 4 | number >> 8),
                                    static_cast<std::uint8_t>(number)};
    frame.resize(38, static_cast<std::uint8_t>(number));
    frame.push_back(static_cast<std::uint8_t>(0x55 - std::accumulate(frame.begin() + 1, frame.end(), 0)));
    frame.push_back(0xAA);
    return ToHex(frame);
}

TEST(Firmware, BlocksAreTakenInOrder) {
    struct Case {
        unsigned sector;
        unsigned number;
        const char* answer;
    };
    const Case cases[] = {
        {1, 1, kRefused}, {0, 0, kRefused}, {4, 0, kRefused}, {1, 0, kStored},
        {1, 1, kStored},  {1, 1, kStored},  {1, 3, kRefused}, {1, 0x200, kRefused},
        {2, 2, kRefused}, {1, 2, kStored},  {1, 0, kStored},  {1, 2, kRefused},
        {1, 1, kStored},  {15, 0, kStored}, {1, 2, kRefused}, {15, 1, kStored},
    };
    Wire wire;
    const auto loader = wire.unit.Plug<FirmwareReceiver>(std::uint8_t{9});
    for (const Case& c : cases) {
        EXPECT_EQ(wire.Bus(Block(c.sector, c.number), 6, 2000), c.answer) << c.sector << ' ' << c.number;
    }
    const auto held = loader->Firmware();
    ASSERT_EQ(held.size(), 2U);
    EXPECT_EQ(ToHex(held.at(1)), ToHex(Hex(Repeat("00", 32) + Repeat("01", 32))));
    EXPECT_EQ(loader->BlocksSeen(), 16U);
    wire.Play({{"550902B1 100089AA", "status FFFD"}, {"55090080 CCAA", "status FFFD"}});
}

TEST(Firmware, HalfOfItShowsUntilANewDownloadIsThrough) {
    Wire wire;
    const auto loader = wire.unit.Plug<FirmwareReceiver>(std::uint8_t{9});
    const auto download = [&wire] {
        std::string answers;
        for (unsigned number = 0; number < 512; ++number) {
            if (wire.Bus(Block(1, number), 6, 2000) != kStored) {
                return number;
            }
        }
        return 512U;
    };
    EXPECT_TRUE(loader->Firmware().empty());
    EXPECT_EQ(download(), 512U);
    EXPECT_FALSE(loader->IsHalf());
    EXPECT_EQ(loader->Firmware().at(1).size(), 16384U);
    EXPECT_EQ(loader->Firmware().at(1)[16383], 0xFF);

    loader->LosePowerAtBlock(3, 500);
    EXPECT_EQ(download(), 2U);
    EXPECT_EQ(wire.now, 3000U);                             // waited for in vain
    wire.Play({{"55090000 4CAA", "55090300 22000324 AA"}}); // back by now
    EXPECT_EQ(wire.Bus(Block(1, 2), 6, 2000), kRefused);    // and lost
    EXPECT_EQ(loader->Firmware().at(1).size(), 64U);
    EXPECT_EQ(download(), 512U);
    wire.Play({{"55090000 4CAA", "55090300 22000126 AA"}});

    loader->LosePowerAtBlock(1);
    EXPECT_EQ(download(), 0U);
    wire.now += 100000;
    wire.Play({{"55090000 4CAA", "status FFFD"}});
    loader->PowerOn();
    wire.Play({{"55090000 4CAA", "55090300 22000126 AA"}});
    EXPECT_EQ(loader->Firmware().at(1).size(), 16384U); // the old one stands
}

TEST(Firmware, ADeviceMayLieAndAnAdapterTakesItToo) {
    Wire wire;
    const auto liar = wire.unit.Plug<FirmwareReceiver>(std::uint8_t{9}, FirmwareReceiverOptions{{}, true});
    EXPECT_EQ(wire.Bus(Block(4, 7), 6), kStored);
    EXPECT_TRUE(liar->Firmware().empty());
    wire.unit.Detach(*liar);
    const auto adapter = wire.unit.Plug<KedaAdapter>(std::uint8_t{9});
    EXPECT_EQ(wire.Bus(Block(2, 0), 6), kStored);
    EXPECT_EQ(adapter->Firmware().at(2).size(), 32U);
    wire.Play({{"55090000 4CAA", "55090300 213003F5 AA"}, {"550901FF 014BAA", "550903FF 213003F6 AA"}});
    EXPECT_EQ(wire.Bus(Block(2, 1), 6), kRefused); // the reset lost the place
}

} // namespace
} // namespace kalvio::simulator
