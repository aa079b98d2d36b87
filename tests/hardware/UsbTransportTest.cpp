#include "hardware/UsbTransport.h"
#include "platform/Registry.h"
#include "support/BoxProbe.h"
#include "support/ScriptedDriver.h"
#include "support/TestHost.h"

#include <gtest/gtest.h>

namespace kalvio::test {
namespace {

const CString kBadLink =
    "The Kalvio software has encountered errors in the USB connection with the hardware. Please exit the "
    "software, restart the Kalvio hardware, and then restart the software.";

struct TransportRig {
    TransportRig() { EXPECT_TRUE(transport.USBInitialise()); }
    ~TransportRig() { EXPECT_EQ(driver.Mismatches(), std::vector<std::string>{}); }

    // Command 7 with one 32-bit parameter; the buffers are the rig's.
    std::uint16_t Transfer() {
        exchange.command = 7;
        exchange.headerLength = 20;
        exchange.header = header.data();
        exchange.outLength = static_cast<std::uint32_t>(out.size());
        exchange.outData = out.data();
        exchange.response = response.data();
        exchange.inLength = static_cast<std::uint32_t>(in.size());
        exchange.inData = in.data();
        return transport.USBTransfer(exchange);
    }
    // A refusal of that command without data, for counting link errors.
    void Refuse(const char* code) {
        driver.Write("0000ABCD 00000007 00000000 00000000 DEADBEEF")
            .Read(CString("0000B00B 00000007 ") + code + "0000");
        Transfer();
    }

    TestHost host;
    ScriptedDriver driver;
    UsbTransport transport{driver};
    std::vector<std::uint8_t> header = Hex("00000000 00000000 00000000 00000000 DEADBEEF");
    std::vector<std::uint8_t> response = std::vector<std::uint8_t>(12, 0x5A);
    std::vector<std::uint8_t> out;
    std::vector<std::uint8_t> in;
    UsbExchange exchange;
};

enum class Reset { None, Works, Fails };

struct FailureCase {
    const char* name;
    int failingStep;      // 0 header, 1 out data, 2 response, 3 in data, 4 none
    const char* response; // as the unit sends it
    Reset reset;
    std::uint16_t result;
    int linkErrors;
    const char* responseAfter; // as the caller finds it
};

constexpr const char* kAccepted = "0000000100000007ABCD1234";
constexpr const char* kAcceptedHost = "0100000007000000ABCD1234";
constexpr const char* kUntouched = "5A5A5A5A5A5A5A5A5A5A5A5A";

const FailureCase kFailures[] = {
    {"all well", 4, kAccepted, Reset::None, 0x4000, 0, kAcceptedHost},
    {"header", 0, "", Reset::Works, 0x4011, 1, kUntouched},
    {"header, no reset", 0, "", Reset::Fails, 0x4011, 1, kUntouched},
    {"out data", 1, "", Reset::Works, 0x4011, 0, kUntouched},
    {"out data, no reset", 1, "", Reset::Fails, 0x4011, 1, kUntouched},
    {"response", 2, kAccepted, Reset::Works, 0x4021, 0, kUntouched},
    {"response, no reset", 2, kAccepted, Reset::Fails, 0x4021, 1, kUntouched},
    {"wrong echo", 4, "0000B00B0000000801180000", Reset::Works, 0x4024, 1, "0000B00B0800000001180000"},
    {"wrong echo, no reset", 4, "0000000000000008ABCD1234", Reset::Fails, 0x4024, 2,
     "0000000008000000ABCD1234"},
    {"refusal", 4, "0000B00B0000000701180000", Reset::None, 0x0118, 1, "0BB000000700000018010000"},
    {"in data", 3, kAccepted, Reset::Works, 0x4021, 0, kAcceptedHost},
    {"in data, no reset", 3, kAccepted, Reset::Fails, 0x4021, 1, kAcceptedHost},
};

TEST(UsbTransport, EveryFailureFollowsItsRule) {
    for (const FailureCase& row : kFailures) {
        SCOPED_TRACE(row.name);
        TransportRig rig;
        rig.out = Hex("C0FFEE");
        rig.in.resize(2);
        const bool answered = row.failingStep >= 3;
        const bool checked = std::string(row.name).find("echo") == std::string::npos;
        const auto failIf = [&](int step) {
            if (row.failingStep == step) {
                rig.driver.Fails().LastError();
            }
        };
        rig.driver.Write("0000ABCD 00000007 00000003 00000002 DEADBEEF");
        failIf(0);
        if (row.failingStep >= 1) {
            rig.driver.Write("C0FFEE");
            failIf(1);
        }
        if (row.failingStep >= 2) {
            rig.driver.Read(row.response);
            failIf(2);
        }
        if (answered && checked && row.result != 0x0118) {
            rig.driver.Read("BEEF");
            failIf(3);
        }
        if (row.reset != Reset::None) {
            rig.driver.ResetEndpoint(2);
        }
        if (row.reset == Reset::Fails) {
            rig.driver.Fails().LastError();
        }
        EXPECT_EQ(rig.Transfer(), row.result);
        EXPECT_EQ(rig.transport.LinkErrors(), row.linkErrors);
        EXPECT_EQ(ToHex(rig.response), row.responseAfter);
        EXPECT_EQ(ToHex(rig.in), row.result == 0x4000 ? "BEEF" : "0000");
    }
}

TEST(UsbTransport, DataMovesInChunksWithoutAnEmptyOne) {
    const std::pair<std::uint32_t, std::vector<std::uint32_t>> cases[] = {
        {0, {}}, {1, {1}}, {65472, {65472}}, {65473, {65472, 1}}, {130945, {65472, 65472, 1}}};
    for (const auto& [length, chunks] : cases) {
        SCOPED_TRACE(length);
        TransportRig rig;
        std::vector<std::uint8_t> pattern(length); // no two chunks alike
        for (std::uint32_t i = 0; i < length; ++i) {
            pattern[i] = static_cast<std::uint8_t>(i * 7 + i / 251);
        }
        const auto forEachChunk = [&, &sizes = chunks](auto step) {
            std::size_t at = 0;
            for (const std::uint32_t chunk : sizes) {
                step(ToHex(std::span(pattern).subspan(at, chunk)));
                at += chunk;
            }
        };
        rig.out = pattern;
        rig.in.resize(length);
        rig.driver.WriteBytes(20);
        forEachChunk([&](const std::string& hex) { rig.driver.Write(hex); });
        rig.driver.Read(kAccepted);
        forEachChunk([&](const std::string& hex) { rig.driver.Read(hex); });
        EXPECT_EQ(rig.Transfer(), kUsbOk);
        EXPECT_TRUE(rig.in == pattern);
    }
}

TEST(UsbTransport, ClosedOrTerminatingTouchesNothing) {
    TransportRig rig;
    rig.transport.SetTerminating(true);
    EXPECT_EQ(rig.Transfer(), kUsbOk);
    rig.transport.SetTerminating(false);
    rig.transport.USBTerminate();
    EXPECT_EQ(rig.Transfer(), kUsbOk);
    std::array<std::uint8_t, 18> descriptor{0x77};
    std::uint32_t status = 9;
    EXPECT_EQ(rig.transport.USBGetDeviceDescriptor(descriptor.data()), kUsbOk);
    EXPECT_EQ(rig.transport.GetLastUSBError(status), kUsbOk);
    EXPECT_EQ(rig.transport.USBSetEndpointPairing(1), kUsbOk);
    EXPECT_EQ(rig.transport.ResetEndpoints(), 1);
    EXPECT_EQ(rig.transport.USBReset(), kUsbOk);
    EXPECT_EQ(rig.transport.USBResetPipe(2, EPDirection::In), kUsbOk);
    EXPECT_EQ(rig.transport.USBCleanupOutstandingData(0, [] { FAIL(); }), kUsbOk);
    EXPECT_EQ(ToHex(rig.response), kUntouched);
    EXPECT_EQ(descriptor[0], 0x77);
    EXPECT_EQ(status, 0u);
    rig.transport.USBTerminate();
    EXPECT_EQ(rig.driver.closed, 1);
    EXPECT_EQ(rig.driver.openedNames, std::vector<std::string>{R"(\\.\kvusb-0)"});
}

TEST(UsbTransport, ThirdLinkErrorIsToldOnceInAnOpening) {
    TransportRig rig;
    for (int i = 0; i < 4; ++i) {
        rig.Refuse("0205");
    }
    EXPECT_TRUE(rig.host.user.Texts().empty()) << "bring-up has not ended yet";
    rig.transport.SetInitialised(true);
    rig.Refuse("0205");
    rig.Refuse("0205");
    EXPECT_EQ(rig.host.user.Texts(), std::vector<CString>{kBadLink});
    rig.transport.USBTerminate();
    ASSERT_TRUE(rig.transport.USBInitialise());
    for (int i = 0; i < 3; ++i) {
        rig.Refuse("0205");
    }
    EXPECT_EQ(rig.host.user.Boxes().size(), 1u);
    rig.Refuse("0205");
    EXPECT_EQ(rig.host.user.Boxes().size(), 2u);
}

TEST(UsbTransport, TheLinkMessageStandsWithoutTheEndpointLock) {
    TransportRig rig;
    int taken = 0;
    BoxProbe probe([&] { // hangs when the lock is held
        taken += rig.transport.LockEndpoint(2);
        rig.transport.UnlockEndpoint(2);
    });
    rig.transport.SetInitialised(true);
    for (int i = 0; i < 4; ++i) {
        rig.Refuse("0205");
    }
    EXPECT_EQ(taken, 1);
}

TEST(UsbTransport, DrainEndsAsItsReadsDo) {
    const struct {
        const char* name;
        std::string reads; // D data, T nothing left, F failure
        std::uint16_t result;
    } cases[] = {{"nothing there", "T", 0x4000},        {"some data", "DDT", 0x4000},
                 {"never ends", "DDDDD", 0x4000},       {"fails, then empty", "FT", 0x4000},
                 {"fails four times", "FFFFD", 0x4000}, {"fifth fails", "DDDDF", 0x4021},
                 {"all fail", "FFFFF", 0x4021}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        TransportRig rig;
        for (const char read : row.reads) {
            rig.driver.DrainRead();
            if (read == 'T') {
                rig.driver.Fails(kErrorSemaphoreTimeout);
            } else if (read == 'F') {
                rig.driver.Fails().LastError().ResetDevice();
            }
        }
        if (row.result == kUsbOk) {
            rig.driver.ResetDevice();
        }
        int terminated = 0;
        EXPECT_EQ(rig.transport.USBCleanupOutstandingData(0, [&] { ++terminated; }), row.result);
        EXPECT_EQ(terminated, row.result == kUsbOk ? 0 : 1);
    }
}

TEST(UsbTransport, DriverRequestsOfTheirOwn) {
    TransportRig rig;
    std::array<std::uint8_t, 18> descriptor{};
    rig.driver.Descriptor("120110010000000000000000 0B01 00000001");
    EXPECT_EQ(rig.transport.USBGetDeviceDescriptor(descriptor.data()), kUsbOk);
    EXPECT_EQ(descriptor[12], 0x0B);
    rig.driver.Descriptor("1201");
    EXPECT_EQ(rig.transport.USBGetDeviceDescriptor(descriptor.data()), kUsbReadFailed);
    EXPECT_EQ(descriptor[12], 0);
    rig.driver.Descriptor("").Fails().LastError();
    EXPECT_EQ(rig.transport.USBGetDeviceDescriptor(descriptor.data()), kUsbReadFailed);
    rig.driver.Pairing(0x1234).Pairing(5).Fails().LastError();
    EXPECT_EQ(rig.transport.USBSetEndpointPairing(0x1234), kUsbOk);
    EXPECT_EQ(rig.transport.USBSetEndpointPairing(5), kUsbPairingFailed);
    rig.driver.ResetPipe(8).ResetPipe(1).Fails().LastError();
    EXPECT_EQ(rig.transport.USBResetPipe(2, EPDirection::In), kUsbOk);
    EXPECT_EQ(rig.transport.USBResetPipe(2, EPDirection::Out), kUsbOk);
    rig.driver.ResetEndpoint(1).ResetEndpoint(2).ResetEndpoint(3).Fails().LastError();
    EXPECT_EQ(rig.transport.ResetEndpoints(), 0);
    rig.driver.ResetEndpoint(0xFFFF).Fails().LastError().Fails();
    EXPECT_EQ(rig.transport.USBResetEndpoint(-1), kUsbResetEndpointFailed);
    std::uint32_t status = 0;
    rig.driver.LastError(0xC0000004).LastError().Fails();
    EXPECT_EQ(rig.transport.GetLastUSBError(status), kUsbOk);
    EXPECT_EQ(status, 0xC0000004u);
    EXPECT_EQ(rig.transport.GetLastUSBError(status), kUsbLastErrorFailed);
    EXPECT_EQ(status, 0u);
}

TEST(UsbTransport, PipesAndEndpoints) {
    TransportRig rig;
    for (int endpoint = 1; endpoint <= 7; ++endpoint) {
        EXPECT_EQ(GetPipe(endpoint, 0), endpoint - 1);
        EXPECT_EQ(GetPipe(endpoint, 1), endpoint + 6);
        EXPECT_EQ(GetEndpoint(GetPipe(endpoint, 0)), endpoint);
        EXPECT_EQ(GetEndpoint(GetPipe(endpoint, 1)), endpoint);
        EXPECT_EQ(rig.transport.LockEndpoint(endpoint) + rig.transport.UnlockEndpoint(endpoint), 2);
    }
    EXPECT_EQ(GetPipe(2, 7), 0xFFFF);
    EXPECT_EQ(rig.transport.LockEndpoint(0) + rig.transport.LockEndpoint(8), 0);
    EXPECT_EQ(rig.transport.UnlockEndpoint(0) + rig.transport.UnlockEndpoint(8), 0);
}

TEST(UsbTransport, ABareCodeIsReportedAsItIs) {
    TransportRig rig;
    EXPECT_EQ(rig.transport.ReportUSBError(0x0118, "MicroGetMem", "x"), 1);
    rig.transport.SetInitialised(true);
    EXPECT_EQ(rig.transport.ReportUSBError(0x4021, "MicroGetMem", "x"), 0x4021);
    EXPECT_TRUE(rig.host.user.Texts().empty());
    EXPECT_EQ(rig.transport.ReportUSBError(0x0118, "MicroPutMem", "(detail)"), 0x0118);
    EXPECT_EQ(rig.host.user.Texts().size(), 1u);
}

TEST(UsbTransport, ARefusalIsNoFailureOfTheLinkWhateverItsCode) {
    TransportRig rig;
    rig.driver.Write("0000ABCD 00000007 00000000 00000000 DEADBEEF").Read("0000B00B 00000007 40210000");
    EXPECT_EQ(rig.Transfer(), 0x4021);
    rig.driver.Write("0000ABCD 00000007 00000000 00000000 DEADBEEF").Read("0000B00B 00000007 40000000");
    const ExchangeOutcome outcome = rig.transport.Exchange(rig.exchange);
    EXPECT_TRUE(outcome.Refusal().has_value());
    EXPECT_TRUE(outcome.HasFailed()) << "even with the code that otherwise says that all is well";
}

} // namespace
} // namespace kalvio::test
