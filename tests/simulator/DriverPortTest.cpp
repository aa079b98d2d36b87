// The driver's surface: opening, control codes, buffers, resets.

#include "simulator/Wire.h"

#include <gmock/gmock.h>

namespace kalvio::simulator {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

TEST(DriverPort, OpensForOneCallerOnceItIsThere) {
    UnitOptions options;
    options.absentOpens = 2;
    VirtualUnit unit({[] { return 0U; }, [](std::uint32_t) {}}, options);
    EXPECT_EQ(unit.Open(R"(\\.\other-0)"), DeviceHandle::None); // another device is no opening of this one
    EXPECT_EQ(unit.Open(R"(\\.\kvusb-0)"), DeviceHandle::None);
    EXPECT_EQ(unit.Open(R"(\\.\kvusb-0)"), DeviceHandle::None);
    const DeviceHandle first = unit.Open(R"(\\.\kvusb-0)");
    ASSERT_NE(first, DeviceHandle::None);
    EXPECT_EQ(unit.Open(R"(\\.\kvusb-0)"), DeviceHandle::None);
    unit.Close(DeviceHandle{99});
    EXPECT_TRUE(unit.IsOpen());
    unit.Close(first);
    EXPECT_FALSE(unit.IsOpen());
    EXPECT_FALSE(unit.Control(first, {.code = kControlResetDevice}).ok);
    const DeviceHandle second = unit.Open(R"(\\.\kvusb-0)");
    EXPECT_NE(second, DeviceHandle::None);
    EXPECT_NE(second, first);
    unit.SetPresent(false);
    EXPECT_FALSE(unit.Control(second, {.code = kControlResetDevice}).ok);
    unit.Close(second);
    EXPECT_EQ(unit.Open(R"(\\.\kvusb-0)"), DeviceHandle::None);
}

TEST(DriverPort, DescriptorCarriesTheReleaseNumberLittleEndian) {
    Wire wire;
    EXPECT_EQ(wire.Control(kControlGetDescriptor, {}, {}, 18).bytesReturned, 18U);
    EXPECT_EQ(ToHex(wire.got), "12011001 FF000040 4B560100 0B010102 0001"); // 267 = 0x010B
    wire.unit.SetReleaseNumber(0x1234);
    wire.Control(kControlGetDescriptor, {}, {}, 18);
    EXPECT_EQ(wire.got[12], 0x34);
    EXPECT_EQ(wire.got[13], 0x12);
}

TEST(DriverPort, TakesEachControlCodeWithItsBuffersOnly) {
    struct Case {
        const char* what;
        std::uint32_t code;
        const char* input;
        const char* toUnit;
        std::size_t fromUnit;
        bool ok;
    };
    const Case cases[] = {
        {"reset device", kControlResetDevice, "", "", 0, true},
        {"reset device with input", kControlResetDevice, "00", "", 0, false},
        {"reset pipe", kControlResetPipe, "0D000000", "", 0, true},
        {"reset of no pipe", kControlResetPipe, "0E000000", "", 0, false},
        {"reset pipe, big-endian", kControlResetPipe, "00000001", "", 0, false},
        {"reset pipe, short", kControlResetPipe, "0100", "", 0, false},
        {"descriptor into 17", kControlGetDescriptor, "", "", 17, false},
        {"last error", kControlLastUsbError, "", "", 4, true},
        {"last error into 8", kControlLastUsbError, "", "", 8, false},
        {"pairing", kControlVendorRequest, "00020000B100341200 00", "", 0, true},
        {"endpoint 7", kControlVendorRequest, "00020000B0000700 0000", "", 0, true},
        {"endpoint 8", kControlVendorRequest, "00020000B0000800 0000", "", 0, false},
        {"endpoint 0", kControlVendorRequest, "00020000B0000000 0000", "", 0, false},
        {"device to host", kControlVendorRequest, "01020000B0000200 0000", "", 0, false},
        {"class request", kControlVendorRequest, "00010000B0000200 0000", "", 0, false},
        {"with index", kControlVendorRequest, "00020000B0000200 0100", "", 0, false},
        {"unknown request", kControlVendorRequest, "00020000B2000200 0000", "", 0, false},
        {"short block", kControlVendorRequest, "00020000B0000200", "", 0, false},
        {"write on pipe 0", kControlBulkWrite, "00000000B80B0000", kInitialise, 0, false},
        {"write on pipe 8", kControlBulkWrite, "08000000B80B0000", kInitialise, 0, false},
        {"read from pipe 1", kControlBulkRead, "01000000B80B0000", "", 12, false},
        {"read with data out", kControlBulkRead, "08000000B80B0000", "00", 12, false},
        {"short transfer block", kControlBulkWrite, "0100B80B0000", kInitialise, 0, false},
        {"unknown code", 0x00222008, "", "", 0, false},
    };
    for (const Case& c : cases) {
        Wire wire;
        EXPECT_EQ(wire.Control(c.code, c.input, c.toUnit, c.fromUnit).ok, c.ok) << c.what;
        EXPECT_THAT(wire.unit.ProtocolErrors(), SizeIs(c.ok ? 0 : 1)) << c.what;
        EXPECT_EQ(wire.unit.Requests().back().ok, c.ok) << c.what;
        EXPECT_EQ(wire.unit.RequestCount(), 1U) << c.what;
    }
}

TEST(DriverPort, LastErrorTellsAStallFromATimeout) {
    Wire wire;
    const auto lastError = [&wire] {
        wire.Control(kControlLastUsbError, {}, {}, 4);
        return ToHex(wire.got);
    };
    EXPECT_EQ(lastError(), "00000000");
    EXPECT_EQ(wire.Drain().error, kErrorSemaphoreTimeout);
    EXPECT_EQ(lastError(), "006000C0");
    wire.Write("00");
    EXPECT_EQ(lastError(), "040000C0");
}

TEST(DriverPort, EveryResetDropsAHalfReceivedFrameAndPendingOutput) {
    struct Reset {
        std::uint32_t code;
        const char* input;
    };
    const Reset resets[] = {{kControlVendorRequest, "00020000B00002000000"},
                            {kControlResetPipe, "01000000"},
                            {kControlResetPipe, "08000000"},
                            {kControlResetDevice, ""}};
    for (const Reset& reset : resets) {
        Wire wire;
        wire.Write("0000ABCD 0000000D 00000004 00000000 01005800"); // four bytes to 'X' 0x0100, never sent
        EXPECT_TRUE(wire.Control(reset.code, reset.input).ok);
        EXPECT_EQ(wire.Ask(kReadStatus, {}, 16), kStatusRead);
        wire.Write(kInitialise); // its response is never read
        EXPECT_TRUE(wire.Control(reset.code, reset.input).ok);
        EXPECT_EQ(wire.Drain().error, kErrorSemaphoreTimeout);
        EXPECT_THAT(wire.unit.ProtocolErrors(), IsEmpty());
    }
    Wire wire;
    wire.Write(kInitialise);
    wire.Control(kControlVendorRequest, "00020000B00003000000"); // another endpoint's affair
    EXPECT_TRUE(wire.Read(12).ok);
}

} // namespace
} // namespace kalvio::simulator
