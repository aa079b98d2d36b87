// Serial ports over pseudo-terminals with the other side in the test, and the devices of a host's ports.

#include "platform/Clock.h"
#include "reference_host/ports/HostPorts.h"
#include "reference_host/ports/PseudoTerminal.h"
#include "reference_host/ports/SerialControl.h"
#include "reference_host/ports/SerialDevices.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>

namespace kalvio::reference_host {
namespace {

namespace fs = std::filesystem;
using Property = CommProperty;

// The system moves bytes from one side to the other in its own time.
bool Eventually(const std::function<bool()>& done) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!done()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        SystemClock().Sleep(0);
    }
    return true;
}

// A port and what stands at its other side.
struct Line {
    explicit Line(std::int16_t inputSize = 1024) {
        Set(Property::InBufferSize, VARIANT::Short(inputSize));
        Set(Property::OutBufferSize, VARIANT::Short(32767));
        EXPECT_EQ(Set(Property::PortOpen, VARIANT::Bool(true)), "");
    }
    CString Set(Property property, const VARIANT& value) { return port.SetProperty(property, value).text; }
    CString Get(Property property) { return port.GetProperty(property).value.ToText(); }
    bool Reads(const CString& expected) {
        return Eventually([&] { return (got += Get(Property::Input)) == expected; });
    }
    bool PeerReads(const CString& expected) {
        std::array<char, 4096> bytes{};
        return Eventually([&] {
                   peerGot.append(bytes.data(), peer.Read(bytes));
                   return peerGot.size() >= expected.size();
               }) &&
               peerGot == expected;
    }

    PseudoTerminal peer;
    CWnd parent;
    SerialControl port{parent, 999, [this](std::int16_t) { return peer.Device(); }};
    CString got;
    CString peerGot;
};

TEST(PortsOfTheHost, AMegabyteEachWayArrivesWhole) {
    Line line(32767);
    line.Set(Property::Handshaking, VARIANT::Long(2));
    std::string bytes(1U << 20, '\0');
    std::minstd_rand random(1);
    for (char& byte : bytes) {
        byte = static_cast<char>(random() >> 8U);
    }
    std::size_t put = 0;
    std::size_t peerPut = 0;
    std::array<char, 8192> piece{};
    EXPECT_TRUE(Eventually([&] {
        const std::string next = bytes.substr(put, 5000);
        if (line.Get(Property::OutBufferCount) == "0" &&
            line.Set(Property::Output, VARIANT::String(next)).empty()) {
            put += next.size();
        }
        peerPut += line.peer.Write(std::string_view(bytes).substr(peerPut, 7000));
        line.peerGot.append(piece.data(), line.peer.Read(piece));
        line.got += line.Get(Property::Input);
        return line.got.size() >= bytes.size() && line.peerGot.size() >= bytes.size();
    }));
    EXPECT_TRUE(line.got == bytes);
    EXPECT_TRUE(line.peerGot == bytes);
    EXPECT_EQ(line.port.LostBytes(), 0U);
}

TEST(PortsOfTheHost, APeerThatVanishesIsAnEventAndWhatCameBeforeIsKept) {
    Line line;
    line.peer.Write("last");
    EXPECT_TRUE(Eventually([&] { return line.Get(Property::InBufferCount) == "4"; }));
    line.peer.Close();
    EXPECT_TRUE(Eventually([&] { return line.Get(Property::CommEvent) == "1011"; }));
    EXPECT_EQ(line.Get(Property::Input), "last");
    EXPECT_EQ(line.Set(Property::Output, VARIANT::String("x")),
              "Output cannot be \"x\": the device has gone");
    EXPECT_EQ(line.Set(Property::PortOpen, VARIANT::Bool(false)), "");
}

TEST(PortsOfTheHost, InputThatOverrunsTheBufferIsCounted) {
    Line line(16);
    line.peer.Write("0123456789abcdefghijklmnopqrstuvwxyz");
    EXPECT_TRUE(
        Eventually([&] { return line.Get(Property::CommEvent) == "1008" && line.port.LostBytes() == 20; }));
    EXPECT_EQ(line.Get(Property::Input), "0123456789abcdef");
    line.peer.Write("on");
    EXPECT_TRUE(line.Reads("on"));
}

TEST(PortsOfTheHost, TwoPortsKeepApartAndOneDeviceIsHeldOnce) {
    Line first;
    Line second;
    first.peer.Write("one");
    second.peer.Write("two");
    EXPECT_TRUE(second.Reads("two"));
    EXPECT_TRUE(first.Reads("one"));
    SerialControl other{first.parent, 998, [&](std::int16_t) { return first.peer.Device(); }};
    EXPECT_EQ(other.SetProperty(Property::PortOpen, VARIANT::Bool(true)).text,
              "PortOpen cannot be true: another program holds " + first.peer.Device());
    first.Set(Property::PortOpen, VARIANT::Bool(false));
    EXPECT_TRUE(other.SetProperty(Property::PortOpen, VARIANT::Bool(true)).Ok());
    for (const auto& [device, why] : {std::pair("/dev/null", "/dev/null is no serial device"),
                                      std::pair("/dev/tty-nowhere", "there is no /dev/tty-nowhere")}) {
        SerialControl wrong{first.parent, 997, [path = device](std::int16_t) { return path; }};
        EXPECT_EQ(wrong.SetProperty(Property::PortOpen, VARIANT::Bool(true)).text,
                  CString("PortOpen cannot be true: ") + why);
    }
}

TEST(PortsOfTheHost, ClosingSendsWhatWaits) {
    Line line;
    const CString text(3000, 'x');
    EXPECT_EQ(line.Set(Property::Output, VARIANT::String(text)), "");
    line.Set(Property::PortOpen, VARIANT::Bool(false));
    EXPECT_TRUE(line.PeerReads(text));
}

TEST(PortsOfTheHost, DevicesAreNumberedInTheirOrder) {
    const fs::path folder = fs::path(testing::TempDir()) / ("tty-class-" + std::to_string(getpid()));
    const std::pair<const char*, const char*> entries[] = {
        {"ttyS10", "4"}, {"ttyS2", "4"}, {"ttyS0", "0"}, {"ttyUSB0", ""}, {"ttyACM1", ""}};
    for (const auto& [name, type] : entries) {
        fs::create_directories(folder / name / "device");
        if (*type != '\0') {
            std::ofstream(folder / name / "type") << type;
        }
    }
    fs::create_directories(folder / "tty63");
    EXPECT_EQ(FindSerialDevices(folder.string()),
              (std::vector<std::string>{"/dev/ttyACM1", "/dev/ttyS2", "/dev/ttyS10", "/dev/ttyUSB0"}));
    fs::remove_all(folder);
    EXPECT_EQ(DeviceOfPort(3, {{3, "/dev/mine"}}), "/dev/mine");
    EXPECT_EQ(DeviceOfPort(-1, {}), "");
}

TEST(PortsOfTheHost, OptionsNameDevices) {
    PortOptions options;
    for (const char* text : {"2=/dev/a=b", "echo", "32767=echo"}) {
        EXPECT_EQ(ParseSerialOption(text, options), "");
    }
    EXPECT_EQ(options.serialPorts,
              (std::map<std::int16_t, std::string>{{1, "echo"}, {2, "/dev/a=b"}, {32767, "echo"}}));
    for (const char* text :
         {"", "x", "0=/dev/a", "-1=/dev/a", "32768=/dev/a", "1=", "=/dev/a", "1x=/dev/a"}) {
        EXPECT_EQ(ParseSerialOption(text, options),
                  "\"" + std::string(text) + "\" is neither N=DEVICE, with N from 1 to 32767, nor echo");
    }
    EXPECT_EQ(options.serialPorts.size(), 3U);
}

TEST(PortsOfTheHost, PortWritesAreRecordedAndGoToTheDeviceThatWasAskedFor) {
    HostPorts recorded({}, {});
    EXPECT_EQ(recorded.WindowsVersion(), 5);
    recorded.Output().Refused({0x378, 0x5A, 1});
    EXPECT_FALSE(recorded.Output().Write({0x378, 0x5A, 1}));
    EXPECT_EQ(DescribeWrite(recorded.Output().Writes()[0]), "port 0x0378 <- 0x5A, 1 byte: not enabled");
    EXPECT_EQ(DescribeWrite(recorded.Output().Writes()[1]), "port 0x0378 <- 0x5A, 1 byte: failed");

    const fs::path file = fs::path(testing::TempDir()) / ("port-device-" + std::to_string(getpid()));
    std::ofstream(file) << "........";
    HostPorts written({.serialPorts = {}, .portDevice = file.string()}, {});
    EXPECT_EQ(written.Complaint(), "");
    EXPECT_EQ(written.WindowsVersion(), 4);
    EXPECT_TRUE(written.Output().Write({2, 0x44434241, 4}));
    EXPECT_TRUE(written.Output().Write({0, 0x5A59, 2}));
    std::string content;
    std::ifstream(file) >> content;
    EXPECT_EQ(content, "YZABCD..");
    fs::remove(file);
    const HostPorts refused({.serialPorts = {}, .portDevice = "/nowhere"}, {});
    EXPECT_EQ(refused.Complaint(),
              "I/O ports cannot be written through /nowhere: No such file or directory.");
    EXPECT_EQ(refused.WindowsVersion(), 5);
}

} // namespace
} // namespace kalvio::reference_host
