// Every fault, seen from the driver.

#include "simulator/Wire.h"

#include <gmock/gmock.h>

namespace kalvio::simulator {
namespace {

using testing::IsEmpty;

TEST(Faults, FailTheirOwnKindOfRequestAndNoOther) {
    struct Case {
        FaultKind kind;
        const char* failing; // one letter for each request below that fails on its second occurrence
    };
    const Case cases[] = {{FaultKind::FailWrite, "w"},
                          {FaultKind::FailRead, "r"},
                          {FaultKind::FailReset, "e"},
                          {FaultKind::FailLastError, "l"},
                          {FaultKind::FailDescriptor, "d"}};
    for (const Case& c : cases) {
        Wire wire;
        const auto round = [&wire] {
            std::string failed;
            failed += wire.Write(kInitialise).ok ? "" : "w";
            failed += wire.Read(12).ok ? "" : "r";
            failed += wire.ResetEndpoint().ok ? "" : "e";
            failed += wire.Control(kControlLastUsbError, {}, {}, 4).ok ? "" : "l";
            failed += wire.Control(kControlGetDescriptor, {}, {}, 18).ok ? "" : "d";
            return failed;
        };
        EXPECT_EQ(round(), ""); // before the fault was added nothing counts
        wire.unit.AddFault({.kind = c.kind, .occurrence = 2});
        EXPECT_EQ(round(), "");
        EXPECT_THAT(round(), testing::StartsWith(c.failing));
        EXPECT_EQ(round(), "");
        EXPECT_EQ(wire.unit.FaultsShown(), 1U);
    }
}

TEST(Faults, AnyRequestCanBeTheOneThatFails) {
    for (std::uint32_t k = 1; k <= 4; ++k) {
        Wire wire;
        wire.unit.AddFault({.kind = FaultKind::FailAny, .occurrence = k});
        const bool done[] = {wire.Control(kControlGetDescriptor, {}, {}, 18).ok, wire.Write(kInitialise).ok,
                             wire.Control(kControlVendorRequest, "00020000B10001000000").ok,
                             wire.Control(kControlResetDevice, {}).ok};
        for (std::uint32_t i = 1; i <= 4; ++i) {
            EXPECT_EQ(done[i - 1], i != k) << k << ' ' << i;
        }
    }
}

TEST(Faults, OfWholeCommands) {
    struct Case {
        Fault fault;
        const char* answer; // of the second of three commands
        bool initialised;   // whether it was carried out
    };
    const Case cases[] = {
        {{FaultKind::WrongEcho, 2, 1, 0, 0}, "0000600D 00000081 00000000", true},
        {{FaultKind::Refuse, 2, 1, 0x0118, 0}, "0000B00B 00000001 01180000", false},
        {{FaultKind::ShortAnswer, 2, 1, 0, 0}, "0000600D 00000000 00000000", true},
        {{FaultKind::Silence, 2, 1, 0, 0}, "response failed with 121", true},
        {{FaultKind::StaleInput, 2, 1, 1, 0}, "EEEEEEEE EEEEEEEE EEEEEEEE", true},
        {{FaultKind::Refuse, 1, 1, 0x0101, 1}, "0000B00B 00000001 01010000", false}, // first of its code
    };
    for (const Case& c : cases) {
        Wire wire;
        wire.unit.AddFault(c.fault);
        EXPECT_EQ(wire.Ask(kReadStatus, {}, 16), kStatusRead);
        EXPECT_EQ(wire.Ask(kInitialise), c.answer);
        EXPECT_EQ(wire.unit.IsInitialised(), c.initialised) << c.answer;
        wire.ResetEndpoint();
        EXPECT_EQ(wire.Ask(kReadStatus, {}, 16), kStatusRead) << c.answer;
        EXPECT_EQ(wire.unit.FaultsShown(), 1U);
        EXPECT_THAT(wire.unit.ProtocolErrors(), IsEmpty());
    }
}

TEST(Faults, ShortAnswersAndStaleInput) {
    Wire wire;
    wire.unit.AddFault({.kind = FaultKind::ShortAnswer, .occurrence = 2});
    EXPECT_EQ(wire.Ask("0000ABCD 0000000B 00000000 00000002 80005800", {}, 12, 2),
              "0000600D 0000000B 00000000 | 2100"); // half of the in data
    wire.unit.AddFault({.kind = FaultKind::StaleInput, .value = 7});
    wire.Ask(kInitialise);
    wire.ResetEndpoint();
    for (int i = 0; i < 6; ++i) { // a reset of the endpoint leaves the six others standing
        EXPECT_TRUE(wire.Drain().ok) << i;
    }
    EXPECT_EQ(wire.Drain().error, kErrorSemaphoreTimeout);
    wire.unit.AddFault({.kind = FaultKind::StaleInput, .value = 7});
    wire.Ask(kInitialise);
    wire.Control(kControlResetDevice, {});
    EXPECT_EQ(wire.Drain().error, kErrorSemaphoreTimeout);
}

TEST(Faults, SlowAnswersTakeUnitTime) {
    Wire wire;
    wire.unit.AddFault({.kind = FaultKind::SlowAnswer, .value = 250});
    wire.Write(kInitialise);
    EXPECT_EQ(wire.now, 1000U);
    EXPECT_TRUE(wire.Read(12).ok);
    EXPECT_EQ(wire.now, 1250U);
    wire.Ask(kInitialise);
    EXPECT_EQ(wire.now, 1250U);
}

TEST(Faults, ADisconnectedUnitAnswersNothingUntilItIsBack) {
    Wire wire;
    wire.unit.AddFault({.kind = FaultKind::Disconnect, .occurrence = 2});
    EXPECT_TRUE(wire.Write(kInitialise).ok);
    EXPECT_FALSE(wire.Read(12).ok);
    EXPECT_FALSE(wire.ResetEndpoint().ok);
    wire.unit.Close(wire.handle);
    EXPECT_EQ(wire.unit.Open(R"(\\.\kvusb-0)"), DeviceHandle::None);
    wire.unit.ClearFaults();
    wire.handle = wire.unit.Open(R"(\\.\kvusb-0)");
    EXPECT_EQ(wire.Ask(kInitialise), kInitialised);
}

TEST(Faults, AShortDescriptorReportsItsLength) {
    Wire wire;
    wire.unit.AddFault({.kind = FaultKind::ShortDescriptor});
    const DriverReply reply = wire.Control(kControlGetDescriptor, {}, {}, 18);
    EXPECT_TRUE(reply.ok);
    EXPECT_LT(reply.bytesReturned, 18U);
    EXPECT_EQ(wire.Control(kControlGetDescriptor, {}, {}, 18).bytesReturned, 18U);
}

TEST(Faults, OfTheCalibrationMemories) {
    Wire wire;
    const auto page = [&wire] {
        wire.Ask("0000ABCD 0000000D 00000002 00000000 00543200", "0000");
        wire.Ask("0000ABCD 0000000B 00000000 00000020 00543200", {}, 12, 32);
        return wire.got;
    };
    const auto whole = page();
    wire.unit.AddFault({.kind = FaultKind::CorruptMemoryRead, .occurrence = 2});
    EXPECT_EQ(page(), whole);
    const auto damaged = page();
    int differences = 0;
    for (std::size_t i = 0; i < whole.size(); ++i) {
        differences += damaged[i] != whole[i] ? 1 : 0;
    }
    EXPECT_EQ(differences, 1);
    EXPECT_EQ(page(), whole);

    wire.unit.AddFault({.kind = FaultKind::WriteProtect, .occurrence = 2});
    const auto put = [&wire](const char* bytes) {
        EXPECT_EQ(wire.Ask("0000ABCD 0000000D 00000003 00000000 00543200", bytes),
                  "0000600D 0000000D 00000000");
    };
    put("0000 11");
    put("0000 22");
    put("0000 33");
    EXPECT_EQ(page()[0], 0x11);
}

TEST(Faults, OfThePeripheralBus) {
    Wire wire;
    wire.unit.AttachPeripheral(
        5, [](std::span<const std::uint8_t> frame) { return std::vector(frame.begin(), frame.end()); });
    // Command 0x80 with one data byte 0x11, echoed by the device.
    const auto exchange = [&wire] {
        wire.Ask("0000ABCD 00000016 0000002C 0000002C 0C000000",
                 "07 07 0000 55 05 01 80 11 BE AA" + Repeat("00", 33), 12, 44);
        return ToHex(std::span(wire.got).first(11));
    };
    wire.unit.AddFault({.kind = FaultKind::CorruptPeripheralEcho, .occurrence = 2});
    wire.unit.AddFault({.kind = FaultKind::PeripheralStatus, .occurrence = 3, .value = 0xFFFC});
    EXPECT_EQ(exchange(), "00000000 55050180 11BEAA");
    EXPECT_EQ(exchange(), "00000000 55050180 EEE1AA"); // the echo is wrong, the frame sound
    EXPECT_EQ(exchange(), "FFFC0000 00000000 000000");
    EXPECT_EQ(exchange(), "00000000 55050180 11BEAA");
    EXPECT_EQ(wire.unit.PeripheralAttempts(5), 4U);
    EXPECT_EQ(wire.now, 1000U);
}

TEST(Faults, RepeatAndStack) {
    Wire wire;
    wire.unit.AddFault({.kind = FaultKind::FailWrite, .occurrence = 2, .repeat = 2});
    wire.unit.AddFault({.kind = FaultKind::FailWrite, .occurrence = 5, .repeat = 0});
    std::string pattern;
    for (int i = 0; i < 8; ++i) {
        pattern += wire.Write(kInitialise).ok ? '+' : '-';
        wire.ResetEndpoint();
    }
    EXPECT_EQ(pattern, "+--+----");
    EXPECT_EQ(wire.unit.FaultsShown(), 6U);
    wire.unit.ClearFaults();
    EXPECT_TRUE(wire.Write(kInitialise).ok);
}

} // namespace
} // namespace kalvio::simulator
