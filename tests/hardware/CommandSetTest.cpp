#include "hardware/CommandSet.h"
#include "EchoDriver.h"
#include "platform/Registry.h"
#include "support/CountedAllocations.h"
#include "support/ScriptedDriver.h"
#include "support/UnitRig.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

namespace kalvio::test {
namespace {

struct CommandRig {
    CommandRig() { EXPECT_TRUE(transport.USBInitialise()); }
    void ExpectFollowed() { EXPECT_EQ(driver.Mismatches(), std::vector<std::string>{}); }

    TestHost host;
    ScriptedDriver driver;
    UsbTransport transport{driver};
    CommandSet commands{transport};
};

constexpr std::uint8_t kThreeBytes[] = {0xA1, 0xA2, 0xA3};

// One command: what goes out, what comes back, and how a refusal is told.
struct WireCase {
    const char* name;
    std::int16_t (*call)(CommandSet& commands, std::uint32_t& got);
    const char* header;
    const char* out;
    const char* result; // after the twelve bytes of the response
    const char* in;
    std::uint32_t got;
    const char* detail;
};

const WireCase kWire[] = {
    {"Initialise", [](CommandSet& c, std::uint32_t&) { return c.Initialise(0x1234, 0); },
     "0000ABCD 00000001 00000000 00000000 12340000", "", "", "", 0, ""},
    {"Terminate", [](CommandSet& c, std::uint32_t&) { return c.Terminate(0, 1); },
     "0000ABCD 00000002 00000000 00000000 00000000", "", "", "", 0, ""},
    {"MicroGetMem",
     [](CommandSet& c, std::uint32_t& got) {
         std::uint8_t data = 0;
         const std::int16_t status = c.MicroGetMem('X', 0x7AFC, data);
         got = data;
         return status;
     },
     "0000ABCD 00000003 00000000 00000000 7AFC5800", "", "9C000000", "", 0x9C,
     "Params: memspace 0x58, memadr 0x7AFC, memdat 0x9C\n"},
    {"MicroGetBit",
     [](CommandSet& c, std::uint32_t& got) {
         int value = 0;
         const std::int16_t status = c.MicroGetBit('S', 0xA00008, value);
         got = static_cast<std::uint32_t>(value);
         return status;
     },
     "0000ABCD 00000004 00000000 00000000 00A00008 53000000", "", "01FFFFFF", "", 1,
     "Params: memspace 0x53, bitadr 0xA00008\n"},
    {"DSPGetMem24", [](CommandSet& c, std::uint32_t& got) { return c.DSPGetMem24(1, 'X', 0x123456, got); },
     "0000ABCD 00000005 00000000 00000000 00123456 01580000", "", "00ABCDEF", "", 0xABCDEF,
     "Params: DSP B, memspace 0x58, memadr 0x123456\n"},
    {"DSPGetBit",
     [](CommandSet& c, std::uint32_t& got) {
         int value = 0;
         const std::int16_t status = c.DSPGetBit(0, 'Y', 24, 0x800, value);
         got = static_cast<std::uint32_t>(value);
         return status;
     },
     "0000ABCD 00000006 00000000 00000000 00000018 00000800 00590000", "", "01000000", "", 1,
     "Params: DSP A, memspace 0x59, memadr 0x18, bitmask 0x800\n"},
    {"MicroPutMem", [](CommandSet& c, std::uint32_t&) { return c.MicroPutMem('S', 0x8880, 0xFE, 0); },
     "0000ABCD 00000007 00000000 00000000 888053FE 00000000", "", "", "", 0,
     "Params: memspace 0x53, memadr 0x8880, memdat 0xFE\n"},
    {"MicroPutBit", [](CommandSet& c, std::uint32_t&) { return c.MicroPutBit('S', 0xA00008, 1); },
     "0000ABCD 00000008 00000000 00000000 00A00008 53010000", "", "", "", 0,
     "Params: memspace 0x53, bitadr 0xA00008\n"},
    {"DSPPutMem24", [](CommandSet& c, std::uint32_t&) { return c.DSPPutMem24(1, 'X', 24, 0x900); },
     "0000ABCD 00000009 00000000 00000000 00000018 00000900 01580000", "", "", "", 0,
     "Params: DSP B, memspace 0x58, memadr 0x18, memdat 0x900\n"},
    {"DSPPutBit", [](CommandSet& c, std::uint32_t&) { return c.DSPPutBit(0, 'X', 24, 0x100, 1); },
     "0000ABCD 0000000A 00000000 00000000 00000018 00000100 00580100", "", "", "", 0,
     "Params: DSP A, memspace 0x58, memadr 0x18, bitmask 0x100\n"},
    {"MicroGetMemBlock",
     [](CommandSet& c, std::uint32_t& got) {
         std::uint8_t data[3] = {};
         const std::int16_t status = c.MicroGetMemBlock('2', 72, 3, data, 0);
         got = static_cast<std::uint32_t>(data[0] << 16 | data[1] << 8 | data[2]);
         return status;
     },
     "0000ABCD 0000000B 00000000 00000003 00483200", "", "", "010203", 0x010203,
     "Params: memspace 0x32, memadr 0x48, length 3\n"},
    {"DSPGetMemBlock24",
     [](CommandSet& c, std::uint32_t& got) {
         std::uint8_t data[3] = {};
         const std::int16_t status = c.DSPGetMemBlock24(1, 'X', 0x100, 3, data);
         got = static_cast<std::uint32_t>(data[0] << 16 | data[1] << 8 | data[2]);
         return status;
     },
     "0000ABCD 0000000C 00000000 00000003 00000100 01580000", "", "", "7F8081", 0x7F8081,
     "Params: DSP B, memspace 0x58, memadr 0x100, length 3\n"},
    {"MicroPutMemBlock",
     [](CommandSet& c, std::uint32_t&) { return c.MicroPutMemBlock('2', 0x52, 3, kThreeBytes, 0); },
     "0000ABCD 0000000D 00000003 00000000 00523200", "A1A2A3", "", "", 0,
     "Params: memspace 0x32, memadr 0x52, length 3\n"},
    {"DSPPutMemBlock24",
     [](CommandSet& c, std::uint32_t&) { return c.DSPPutMemBlock24(0, 'Y', 400, 3, kThreeBytes); },
     "0000ABCD 0000000E 00000003 00000000 00000190 00590000", "A1A2A3", "", "", 0,
     "Params: DSP A, memspace 0x59, memadr 0x190, length 3\n"},
    {"MicroFillMemBlock",
     [](CommandSet& c, std::uint32_t&) { return c.MicroFillMemBlock('X', 0x7000, 0x0123, 0xEE); },
     "0000ABCD 0000000F 00000000 00000000 70000123 58EE0000", "", "", "", 0,
     "Params: memspace 0x58, memadr 0x7000, length 291\n"},
    {"DSPFillMemBlock24",
     [](CommandSet& c, std::uint32_t&) { return c.DSPFillMemBlock24(1, 'Y', 16, 256, 0x7FFFFF); },
     "0000ABCD 00000010 00000000 00000000 00000010 00000100 007FFFFF 01590000", "", "", "", 0,
     "Params: DSP B, memspace 0x59, memadr 0x10, length 256\n"},
    {"MicroWaitBit",
     [](CommandSet& c, std::uint32_t& got) {
         int value = 0;
         const std::int16_t status = c.MicroWaitBit('X', 0xB02A08, 1, 0x0102, value);
         got = static_cast<std::uint32_t>(value);
         return status;
     },
     "0000ABCD 00000011 00000000 00000000 00B02A08 01025801", "", "01000000", "", 1,
     "Params: memspace 0x58, bitadr 0xB02A08\n"},
    {"DSPWaitBit",
     [](CommandSet& c, std::uint32_t& got) {
         int value = 0;
         const std::int16_t status = c.DSPWaitBit(1, 'X', 24, 0x20, 1, 500, value);
         got = static_cast<std::uint32_t>(value);
         return status;
     },
     "0000ABCD 00000012 00000000 00000000 00000018 00000020 01F40158 01000000", "", "80000000", "", 0x80,
     "Params: DSP B, memspace 0x58, memadr 0x18, bitmask 0x20, state 1\n"},
    {"DSPSendCommand", [](CommandSet& c, std::uint32_t&) { return c.DSPSendCommand(1, 0x3C); },
     "0000ABCD 00000017 00000000 00000000 013C0000", "", "", "", 0, "(Command 0x3C)\n"},
    {"MicroPutBits", [](CommandSet& c, std::uint32_t&) { return c.MicroPutBits('S', 0x8080, 0x0F, 0x05); },
     "0000ABCD 00000018 00000000 00000000 00000000 8080530F 05000000", "", "", "", 0,
     "Params: memspace 0x53, memadr 0x8080, offbits 0xF, onbits 0x5\n"},
};

// The response of a command, from its own header.
CString Response(const WireCase& row, const char* status, const char* error) {
    return CString(status) + CString(row.header).substr(9, 8) + error + "0000" + row.result;
}

void ExpectSent(ScriptedDriver& driver, const WireCase& row) {
    driver.Write(row.header);
    if (*row.out != '\0') {
        driver.Write(row.out);
    }
}

TEST(CommandSet, BytesOnTheWire) {
    for (const WireCase& row : kWire) {
        SCOPED_TRACE(row.name);
        CommandRig rig;
        ExpectSent(rig.driver, row);
        rig.driver.Read(Response(row, "00000000", "0000"));
        if (*row.in != '\0') {
            rig.driver.Read(row.in);
        }
        std::uint32_t got = 0;
        EXPECT_EQ(row.call(rig.commands, got), 0);
        EXPECT_EQ(got, row.got);
        rig.ExpectFollowed();
    }
}

TEST(CommandSet, RefusalsAreToldWithTheirParameters) {
    for (const WireCase& row : kWire) {
        SCOPED_TRACE(row.name);
        CommandRig rig;
        CRegistry::SetRegistryValue(RegistryKeyType::User, "Debug", "ShowUSBErrors", 1);
        rig.transport.SetInitialised(true);
        ExpectSent(rig.driver, row);
        rig.driver.Read(Response(row, "0000B00B", "0205"));
        std::uint32_t got = 0;
        EXPECT_EQ(row.call(rig.commands, got), 0x0205);
        EXPECT_EQ(rig.host.user.Texts(), std::vector<CString>{CString("USB Error in function ") + row.name +
                                                              "\nReturn code was 0x205\n" + row.detail});
        rig.ExpectFollowed();
    }
}

TEST(CommandSet, InactiveSendsNothingAndLeavesOutValues) {
    CommandRig rig;
    rig.commands.SetSuspended(true);
    for (const bool open : {true, false}) {
        for (const WireCase& row : kWire) {
            if (CString(row.name) == "Terminate" && open) {
                continue; // forced in the table
            }
            std::uint32_t got = 0;
            EXPECT_EQ(row.call(rig.commands, got), 0) << row.name;
        }
        std::uint8_t byte = 0x77;
        int bit = 78;
        std::uint32_t word = 79;
        EXPECT_EQ(rig.commands.MicroGetMem('X', 1, byte), 0);
        EXPECT_EQ(rig.commands.MicroWaitBit('X', 1, 1, 1, bit), 0);
        EXPECT_EQ(rig.commands.DSPGetMem24(0, 'X', 1, word), 0);
        EXPECT_EQ(rig.commands.MicroPutMem('2', 1, 1, 1), 0);
        EXPECT_EQ(rig.commands.DSPLoad(0, "no such file", 1), 0);
        EXPECT_EQ(rig.commands.FPGALoad("no such file"), 0);
        EXPECT_EQ(rig.commands.DoCommand(8, 0, nullptr, 0, nullptr), 0);
        EXPECT_EQ(byte, 0x77);
        EXPECT_EQ(bit, 78);
        EXPECT_EQ(word, 79u);
        rig.transport.USBTerminate();
        rig.commands.SetSuspended(false);
    }
    rig.ExpectFollowed();
}

TEST(CommandSet, SuspendedUnitStillAnswersWhatIsForced) {
    CommandRig rig;
    rig.commands.SetSuspended(true);
    std::uint8_t data[2] = {};
    rig.driver.Write("0000ABCD 00000001 00000000 00000000 00000000")
        .Read("00000000 00000001 00000000")
        .Write("0000ABCD 0000000B 00000000 00000002 00483200")
        .Read("00000000 0000000B 00000000")
        .Read("1900");
    EXPECT_EQ(rig.commands.Initialise(0, 1), 0);
    EXPECT_EQ(rig.commands.MicroGetMemBlock('2', 72, 2, data, 1), 0);
    EXPECT_EQ(data[0], 0x19);
    rig.ExpectFollowed();
}

constexpr const char* kArm = "0000ABCD 00000016 00000002 00000000 08000000";
constexpr const char* kArmed = "00000000 00000016 00000000";

TEST(CommandSet, CheckedWritesAreArmedFirst) {
    CommandRig rig;
    rig.driver.Write(kArm).Write("0052").Read(kArmed);
    rig.driver.Write("0000ABCD 0000000D 00000003 00000000 00523201").Write("A1A2A3");
    rig.driver.Read("00000000 0000000D 00000000");
    EXPECT_EQ(rig.commands.MicroPutMemBlock('2', 0x52, 3, kThreeBytes, 1), 0);
    rig.driver.Write(kArm).Write("0154").Read(kArmed);
    rig.driver.Write("0000ABCD 00000007 00000000 00000000 0154320B 01000000");
    rig.driver.Read("00000000 00000007 00000000");
    EXPECT_EQ(rig.commands.MicroPutMem('2', 0x0154, 0x0B, 1), 0);
    rig.ExpectFollowed();
}

TEST(CommandSet, FailedArmingSendsNoWriteAndIsReportedOnce) {
    CommandRig rig;
    rig.transport.SetInitialised(true);
    rig.driver.Write(kArm).Write("0052").Read("0000B00B 00000016 01180000");
    EXPECT_EQ(rig.commands.MicroPutMem('2', 0x52, 1, 1), 0x0118);
    ASSERT_EQ(rig.host.user.Texts().size(), 1u);
    EXPECT_NE(rig.host.user.Texts()[0].find("on a call to InitMemAddress.\n"), CString::npos);
    rig.ExpectFollowed();
}

TEST(CommandSet, ArmingAndWriteAreNotParted) {
    EchoDriver driver;
    std::vector<int> order; // 1 arms for thread 1, 101 writes of thread 1, …
    driver.onWrite = [&order](std::span<const std::uint8_t> bytes) {
        if (bytes.size() == 2) {
            order.push_back(bytes[1]);
        } else if (bytes.size() == 24) {
            order.push_back(bytes[17] + 100);
        }
    };
    UsbTransport transport(driver);
    CommandSet commands(transport);
    ASSERT_TRUE(transport.USBInitialise());
    std::vector<std::thread> threads;
    for (std::uint16_t device = 1; device <= 3; ++device) {
        threads.emplace_back([&commands, device] {
            for (int i = 0; i < 50; ++i) {
                commands.MicroPutMem('2', device, 0, 1);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    ASSERT_EQ(order.size(), 300u);
    for (std::size_t i = 0; i < order.size(); i += 2) {
        EXPECT_EQ(order[i + 1], order[i] + 100);
    }
}

TEST(CommandSet, FailedGeneralCommandTellsWhatItsBufferHeld) {
    CommandRig rig;
    CRegistry::SetRegistryValue(RegistryKeyType::User, "Debug", "ShowUSBErrors", 1);
    rig.transport.SetInitialised(true);
    const auto refuse = [&rig] {
        rig.driver.Write("0000ABCD 00000016 00000003 00000000 02000000").Write("A1A2A3");
        rig.driver.Read("0000B00B 00000016 02050000");
        rig.driver.Write("0000ABCD 0000000B 00000000 00000002 79005800");
    };
    refuse();
    rig.driver.Read("00000000 0000000B 00000000").Read("0A1B");
    EXPECT_EQ(rig.commands.DoCommand(2, 3, kThreeBytes, 0, nullptr), 0x0205);
    refuse();
    rig.driver.Read("0000B00B 0000000B 03060000");
    EXPECT_EQ(rig.commands.DoCommand(2, 3, kThreeBytes, 0, nullptr), 0x0306);
    EXPECT_EQ(rig.host.user.Texts(),
              (std::vector<CString>{"USB Error in function DoCommand\nReturn code was 0x205\n"
                                    "(Command ID 2 - 1st 2 bytes of data are 0xA and 0x1B)\n",
                                    "USB Error in function MicroGetMemBlock\nReturn code was 0x306\n"
                                    "Params: memspace 0x58, memadr 0x7900, length 2\n"}));
    rig.ExpectFollowed();
}

TEST(CommandSet, ImagesGoOutWholeAndPadded) {
    CommandRig rig;
    TemporaryDirectory directory;
    const CString ten = directory.MakeFile("ten", 10);
    const CString none = directory.MakeFile("none", 0);
    rig.driver.Write("0000ABCD 00000013 0000000A 00000000 02000000").Write("0102030405060708090A");
    rig.driver.Read("00000000 00000013 00000000");
    EXPECT_EQ(rig.commands.MicroLoad(2, ten), 0);
    rig.driver.Write("0000ABCD 00000014 0000000A 00000000").Write("0102030405060708090A");
    rig.driver.Read("00000000 00000014 00000000");
    EXPECT_EQ(rig.commands.FPGALoad(ten), 0);
    rig.driver.Write("0000ABCD 00000015 0000000C 00000000 01010000").Write("0102030405060708090A0000");
    rig.driver.Read("00000000 00000015 00000000");
    EXPECT_EQ(rig.commands.DSPLoad(1, ten, 1), 0);
    rig.driver.Write("0000ABCD 00000014 00000000 00000000").Read("00000000 00000014 00000000");
    EXPECT_EQ(rig.commands.FPGALoad(none), 0);
    rig.ExpectFollowed();
}

TEST(CommandSet, ImagesThatCannotBeReadSendNothing) {
    CommandRig rig;
    TemporaryDirectory directory;
    const CString huge = directory.MakeFile("huge", 1);
    std::filesystem::resize_file(huge, 0x40000001); // takes no room on the disk
    EXPECT_EQ(rig.commands.DSPLoad(0, directory.File("missing"), 1), kImageNotOpened);
    EXPECT_EQ(rig.commands.FPGALoad(directory.File("")), kImageNotOpened) << "a directory";
    EXPECT_EQ(rig.commands.MicroLoad(1, ""), kImageNotOpened);
    EXPECT_EQ(rig.commands.DSPLoad(0, huge, 1), kImageNoMemory);
    rig.ExpectFollowed();
}

TEST(CommandSet, OnlyARefusedDspImageGoesUnreported) {
    CommandRig rig;
    TemporaryDirectory directory;
    const CString image = directory.MakeFile("three", 3);
    CRegistry::SetRegistryValue(RegistryKeyType::User, "Debug", "ShowUSBErrors", 1);
    const auto load = [&](const char* response) {
        rig.driver.Write("0000ABCD 00000015 00000003 00000000 00000000").Write("010203").Read(response);
        return rig.commands.DSPLoad(0, image, 0);
    };
    EXPECT_EQ(load("0000B00B 00000015 02070000"), 0x0207) << "unreported even before bring-up has ended";
    rig.driver.Write("0000ABCD 00000014 00000003 00000000").Write("010203");
    rig.driver.Read("0000B00B 00000014 02070000");
    EXPECT_EQ(rig.commands.FPGALoad(image), 1);
    rig.transport.SetInitialised(true);
    rig.transport.ClearLinkErrors();
    EXPECT_EQ(load("0000B00B 00000015 02070000"), 0x0207);
    EXPECT_TRUE(rig.host.user.Texts().empty());
    rig.driver.Write("0000ABCD 00000015 00000003 00000000 00000000").Write("010203");
    rig.driver.Read("000000000000001500000000").Fails().LastError().ResetEndpoint(2);
    EXPECT_EQ(rig.commands.DSPLoad(0, image, 0), 0x4021);
    EXPECT_EQ(rig.host.user.Texts(),
              std::vector<CString>{"USB Error in function DSPLoad\nReturn code was 0x4021\n"});
    rig.ExpectFollowed();
}

TEST(CommandSet, NoCommandAllocates) {
    EchoDriver driver;
    UsbTransport transport(driver);
    CommandSet commands(transport);
    ASSERT_TRUE(transport.USBInitialise());
    std::uint32_t got = 0;
    std::uint8_t block[44] = {};
    const std::size_t before = allocationCount.load();
    for (const WireCase& row : kWire) {
        EXPECT_EQ(row.call(commands, got), 0);
    }
    commands.MicroPutMem('2', 0x52, 1, 1);
    commands.DoCommand(12, sizeof block, block, sizeof block, block);
    EXPECT_EQ(allocationCount.load(), before);
}

} // namespace
} // namespace kalvio::test
