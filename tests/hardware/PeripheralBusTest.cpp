#include "hardware/KvNetFrame.h"
#include "support/ScriptedDriver.h"
#include "support/UnitRig.h"

#include <gtest/gtest.h>

#include <numeric>

namespace kalvio::test {
namespace {

TEST(KvNetFrame, Bytes) {
    std::uint8_t frame[kKvNetLongestFrame] = {};
    const std::uint8_t data[35] = {1};
    const auto built = [&frame](std::size_t length) { return ToHex({frame, length}); };
    EXPECT_EQ(built(BuildKvNetFrame(frame, 5, 0x00, nullptr, 0, true)), "5505000050AA");
    EXPECT_EQ(built(BuildKvNetFrame(frame, 5, 0x00, nullptr, 0, false)), "5505000050A5");
    EXPECT_EQ(built(BuildKvNetFrame(frame, 255, 0xFF, data, 1, true)), "55FF01FF0155A5");
    EXPECT_EQ(BuildKvNetFrame(frame, 63, 0xB1, data, 34, true), 40u);
    EXPECT_EQ(frame[38], static_cast<std::uint8_t>(0x55 - (63 + 34 + 0xB1 + 1)));
    EXPECT_EQ(BuildKvNetFrame(frame, 63, 0xB1, data, 35, true), 0u);
    EXPECT_EQ(CalculateChecksum(frame, 3), 0x55);
}

// A frame of an answering peripheral.
std::vector<std::uint8_t> Answer(std::uint8_t address, std::uint8_t command,
                                 const std::vector<std::uint8_t>& data) {
    std::vector<std::uint8_t> frame{0x55, address, static_cast<std::uint8_t>(data.size()), command};
    frame.insert(frame.end(), data.begin(), data.end());
    const int sum = std::accumulate(frame.begin() + 1, frame.end(), 0);
    frame.push_back(static_cast<std::uint8_t>(0x55 - sum));
    frame.push_back(0xAA);
    return frame;
}

struct BusRig : UnitRig {
    BusRig() {
        EXPECT_EQ(BringUp(), 1);
        unit.AttachPeripheral(5, [this](std::span<const std::uint8_t> frame) {
            seen.push_back(ToHex(frame));
            return Answer(5, frame[3], {0x21, 0x3F, 0x01});
        });
    }
    std::vector<std::string> seen;
};

TEST(PeripheralBus, DataGoesOutFramedAndComesBackBare) {
    BusRig rig;
    const std::uint8_t on = 1;
    std::uint8_t status[3] = {9, 9, 9};
    EXPECT_EQ(CHardware::SendKvNetData(5, 0xFF, 1, &on, 3, status), 0);
    EXPECT_EQ(rig.seen, std::vector<std::string>{"550501FF014FAA"});
    EXPECT_EQ(ToHex(status), "213F01");
    const std::vector<simulator::Exchange> exchanges = rig.unit.Exchanges();
    EXPECT_EQ(ToHex(exchanges.back().parameters), "0C000000");
    EXPECT_EQ(ToHex(exchanges.back().outData), "07090000550501FF014FAA" + std::string(66, '0'));
    EXPECT_EQ(exchanges.back().expectedInLength, 44u);
}

TEST(PeripheralBus, AStatusIsTriedOnceMore) {
    const struct {
        std::uint32_t failures;
        std::uint16_t status;
        std::uint32_t attempts;
    } cases[] = {{0, 0, 1}, {1, 0, 2}, {2, 0xFFFD, 2}, {3, 0xFFFD, 2}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.failures);
        BusRig rig;
        rig.unit.ClearLogs();
        if (row.failures != 0) {
            rig.unit.AddFault({simulator::FaultKind::PeripheralStatus, 1, row.failures, 0xFFFD});
        }
        const std::vector<std::uint8_t> frame = Hex("5505000050AA");
        std::uint8_t response[9] = {7, 7, 7, 7, 7, 7, 7, 7, 7};
        EXPECT_EQ(rig.hardware.SendKvNetCommand(frame.data(), 6, response, 9, 2000), row.status);
        EXPECT_NE(response[8], 7) << "the reply is copied whatever the status";
        EXPECT_EQ(rig.ParametersOf(22).size(), row.attempts);
        EXPECT_EQ(ToHex(std::span(rig.unit.Exchanges()[0].outData).first(4)), "060907D0");
    }
}

TEST(PeripheralBus, LengthsStayWithinTheBlock) {
    BusRig rig;
    rig.unit.ClearLogs();
    std::uint8_t bytes[255] = {};
    EXPECT_EQ(rig.hardware.SendKvNetCommand(bytes, 41, bytes, 6, 0), 0xFFFF);
    EXPECT_EQ(rig.hardware.SendKvNetCommand(bytes, 6, bytes, 41, 0), 0xFFFF);
    EXPECT_EQ(CHardware::SendKvNetData(5, 1, 35, bytes, 0, nullptr), -1);
    EXPECT_EQ(CHardware::SendKvNetData(5, 1, 0, nullptr, 35, bytes), -1);
    EXPECT_TRUE(rig.unit.Exchanges().empty());
}

TEST(PeripheralBus, WithoutAUnitOrAfterAFailure) {
    BusRig rig;
    const std::vector<std::uint8_t> frame = Hex("5505000050AA");
    std::uint8_t response[9] = {7, 7, 7, 7, 7, 7, 7, 7, 7};
    rig.unit.AddFault({simulator::FaultKind::Refuse, 1, 1, 0x0205});
    EXPECT_EQ(rig.hardware.SendKvNetCommand(frame.data(), 6, response, 9, 0), 0xFFFE);
    EXPECT_EQ(response[0], 7);
    EXPECT_EQ(CHardware::SendKvNetData(6, 0, 0, nullptr, 3, response), -3) << "nobody answers there";
    EXPECT_EQ(ToHex(std::span(response).first(4)), "00000007");
    response[0] = 7;
    rig.hardware.SuspendDevice();
    EXPECT_EQ(rig.hardware.SendKvNetCommand(frame.data(), 6, response, 9, 0), 0xFFFE);
    EXPECT_EQ(ToHex(response), "000000000000000000");
    rig.host.application.hardware = nullptr;
    EXPECT_EQ(CHardware::SendKvNetData(5, 0, 0, nullptr, 3, response), -2);
}

} // namespace
} // namespace kalvio::test
