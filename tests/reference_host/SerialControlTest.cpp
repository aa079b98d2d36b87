// What a serial port asks of the system, and what it makes of the system's answers.

#include "reference_host/ports/SerialControl.h"

#include "support/Golden.h"
#include "testing/ManualClock.h"

#include <gtest/gtest.h>

#include <asm/termbits.h>
#include <cerrno>
#include <sys/ioctl.h>

namespace kalvio::reference_host {
namespace {

using Property = CommProperty;

constexpr Property kAll[] = {
    Property::CDHolding,      Property::CommID,        Property::CommPort,    Property::CTSHolding,
    Property::DSRHolding,     Property::DTREnable,     Property::Handshaking, Property::InBufferSize,
    Property::InBufferCount,  Property::Break,         Property::InputLen,    Property::NullDiscard,
    Property::OutBufferSize,  Property::ParityReplace, Property::PortOpen,    Property::RThreshold,
    Property::OutBufferCount, Property::RTSEnable,     Property::Settings,    Property::SThreshold,
    Property::Output,         Property::EOFEnable,     Property::InputMode};

// A device whose calls answer what a test wants.
struct Device {
    int openError = 0;
    int lockError = 0;
    int setError = 0;
    bool takesOutput = true;
    int lines = 0;
    int waiting = 0; // bytes in the system
    termios2 modes{};
    std::string input; // read in pieces of at most three bytes
    std::string output;
    std::string log;

    int Control(unsigned long request, void* argument) {
        switch (request) {
        case TCGETS2:
            *static_cast<termios2*>(argument) = modes;
            return 0;
        case TCSETS2:
            modes = setError == 0 ? *static_cast<termios2*>(argument) : modes;
            return setError;
        case TIOCMGET:
            *static_cast<int*>(argument) = lines;
            return 0;
        case TIOCMBIS:
        case TIOCMBIC:
            log += (request == TIOCMBIS ? "+" : "-");
            log += *static_cast<int*>(argument) == TIOCM_DTR ? "DTR " : "RTS ";
            return 0;
        case TIOCOUTQ:
            *static_cast<int*>(argument) = waiting;
            return 0;
        default:
            log += request == TIOCSBRK   ? "break "
                   : request == TIOCCBRK ? "no-break "
                   : request == TCFLSH   ? "flush "
                   : request == TIOCEXCL ? "alone "
                   : request == TIOCNXCL ? "shared "
                                         : "";
            return 0;
        }
    }

    SystemCalls Calls() {
        SystemCalls calls;
        calls.open = [this](const std::string&) { return openError != 0 ? openError : 7; };
        calls.close = [this](int) {
            log += "close ";
            return 0;
        };
        calls.lock = [this](int) { return lockError; };
        calls.read = [this](int, std::span<char> bytes) -> long {
            const std::size_t count = std::min({bytes.size(), input.size(), std::size_t{3}});
            input.copy(bytes.data(), count);
            input.erase(0, count);
            return count == 0 ? -EAGAIN : static_cast<long>(count);
        };
        calls.write = [this](int, std::string_view bytes) -> long {
            output += takesOutput ? bytes : "";
            return takesOutput ? static_cast<long>(bytes.size()) : -EAGAIN;
        };
        calls.control = [this](int, unsigned long request, void* argument) {
            return Control(request, argument);
        };
        return calls;
    }
};

struct FreshPort {
    FreshPort(bool open, bool stubborn) {
        if (open) {
            EXPECT_TRUE(control.SetProperty(Property::PortOpen, VARIANT::Bool(true)).Ok());
            device.takesOutput = false;
            EXPECT_TRUE(control.SetProperty(Property::Output, VARIANT::String("out")).Ok());
            device.input = "in!";
        }
        device.setError = stubborn ? -EINVAL : 0;
        device.log.clear();
    }
    std::vector<CString> State() {
        std::vector<CString> state;
        for (const Property property : kAll) {
            state.push_back(control.GetProperty(property).value.ToJson());
        }
        return state;
    }

    Device device;
    CWnd parent;
    SerialControl control{parent, 999, [](std::int16_t port) { return port == 1 ? "/dev/x" : ""; },
                          device.Calls()};
};

class SerialControlTest : public testing::Test {
protected:
    CString Set(Property property, const VARIANT& value) {
        return m_control.SetProperty(property, value).text;
    }
    CString Get(Property property) { return m_control.GetProperty(property).value.ToJson(); }
    void Open() { ASSERT_EQ(Set(Property::PortOpen, VARIANT::Bool(true)), ""); }
    // Takes in all of it, a turn at a time.
    void Receive(std::string_view bytes) {
        m_device.input += bytes;
        while (!m_device.input.empty()) {
            m_control.Poll();
        }
    }

    test::ManualClock m_clock;
    Device m_device;
    CWnd m_parent;
    std::vector<int> m_events;
    SerialControl m_control{m_parent, 999, [](std::int16_t port) { return port == 1 ? "/dev/x" : ""; },
                            m_device.Calls()};
};

TEST_F(SerialControlTest, SettingsReachTheSystem) {
    Open();
    const struct {
        const char* settings;
        int handshaking;
        unsigned baud;
        unsigned control;
        unsigned input;
    } rows[] = {
        {"300,n,8,1", 0, 300, CS8, 0},
        {"9600,E,7,2", 0, 9600, CS7 | PARENB | CSTOPB, 0},
        {" 250000 , o , 5 , 1.5 ", 1, 250000, CS5 | PARENB | PARODD | CSTOPB, IXON | IXOFF},
        {"4000000,m,8,1", 2, 4000000, CS8 | PARENB | PARODD | CMSPAR | CRTSCTS, 0},
        {"1,s,6,1", 3, 1, CS6 | PARENB | CMSPAR | CRTSCTS, IXON | IXOFF},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Set(Property::Handshaking, VARIANT::Long(row.handshaking)), "");
        EXPECT_EQ(Set(Property::Settings, VARIANT::String(row.settings)), "");
        EXPECT_EQ(m_device.modes.c_cflag, row.control | BOTHER | CREAD | CLOCAL) << row.settings;
        EXPECT_EQ(m_device.modes.c_iflag, row.input | INPCK | PARMRK) << row.settings;
        EXPECT_EQ(m_device.modes.c_ispeed, row.baud);
        EXPECT_EQ(m_device.modes.c_ospeed, row.baud);
        EXPECT_EQ(m_device.modes.c_cc[VSTART] * 256 + m_device.modes.c_cc[VSTOP], 0x1113);
        EXPECT_EQ(m_device.modes.c_cc[VMIN] * 256 + m_device.modes.c_cc[VTIME], 0x100);
    }
}

// Each value to each property of a port that is closed, open, or open on a system that refuses: the answer,
// the properties that changed, what was asked of the system. Three bytes wait each way.
TEST_F(SerialControlTest, EveryValueToEveryProperty) {
    const std::vector<VARIANT> values{VARIANT::Bool(true),
                                      VARIANT::Bool(false),
                                      VARIANT::Short(-1),
                                      VARIANT::Short(1),
                                      VARIANT::Short(0),
                                      VARIANT::Long(3),
                                      VARIANT::Long(4),
                                      VARIANT::Long(256),
                                      VARIANT::Long(32767),
                                      VARIANT::Long(32768),
                                      VARIANT::Double(2.5),
                                      VARIANT(),
                                      VARIANT::String(""),
                                      VARIANT::String("x"),
                                      VARIANT::String("26"),
                                      VARIANT::FromArray({VARIANT::Byte(1), VARIANT::Bool(true)}),
                                      VARIANT::FromArray({VARIANT::Short(200)}),
                                      VARIANT::String("1,n,5,1.5"),
                                      VARIANT::String("9600,n,8,1.5"),
                                      VARIANT::String("0,n,8,1"),
                                      VARIANT::String("4000001,n,8,1"),
                                      VARIANT::String("9600,x,8,1"),
                                      VARIANT::String("9600,n,9,1"),
                                      VARIANT::String("9600,n,4,1"),
                                      VARIANT::String("9600,n,8,3"),
                                      VARIANT::String("9600,n,8,1,1"),
                                      VARIANT::String("9600"),
                                      VARIANT::String(std::string(100, 'l'))};
    std::vector<Property> properties(std::begin(kAll), std::end(kAll));
    properties.insert(properties.end(), {Property::Input, Property::CommEvent, static_cast<Property>(2)});
    CString all;
    for (const char* port : {"closed", "open", "stubborn"}) {
        for (const Property property : properties) {
            for (const VARIANT& value : values) {
                FreshPort fresh(*port != 'c', *port == 's');
                const std::vector<CString> before = fresh.State();
                const CString text = fresh.control.SetProperty(property, value).text;
                const std::vector<CString> after = fresh.State();
                all += Format("%s, %d = %.20s: ", port, static_cast<int>(property), value.ToJson().c_str()) +
                       text;
                for (std::size_t i = 0; i < after.size(); ++i) {
                    all += after[i] == before[i]
                               ? ""
                               : Format(" %d: %s", static_cast<int>(kAll[i]), after[i].c_str());
                }
                all += " " + fresh.device.log + Format("%x\n", fresh.device.modes.c_cflag);
            }
        }
    }
    test::ExpectGolden(__FILE__, "serial.txt", all);
    EXPECT_EQ(m_control.GetProperty(Property::Input).text, "Input cannot be read: the port is not open");
    EXPECT_FALSE(m_control.GetProperty(static_cast<Property>(2)).Ok());
}

TEST_F(SerialControlTest, WhyAPortCannotBeOpenedIsTold) {
    const struct {
        int Device::*call;
        int error;
        const char* text;
    } rows[] = {
        {&Device::openError, -ENOENT, "there is no /dev/x"},
        {&Device::openError, -EACCES, "this user has no rights to /dev/x"},
        {&Device::openError, -EBUSY, "another program holds /dev/x"},
        {&Device::openError, -EIO, "/dev/x: Input/output error"},
        {&Device::setError, -ENOTTY, "/dev/x is no serial device"},
        {&Device::lockError, -EWOULDBLOCK, "another program holds /dev/x"},
    };
    for (const auto& row : rows) {
        m_device = Device();
        m_device.*row.call = row.error;
        EXPECT_EQ(Set(Property::PortOpen, VARIANT::Bool(true)),
                  CString("PortOpen cannot be true: ") + row.text);
        EXPECT_EQ(Get(Property::PortOpen), "false");
        EXPECT_EQ(m_device.log, row.call == &Device::openError ? "" : "shared close ");
    }
    Set(Property::CommPort, VARIANT::Short(2));
    EXPECT_EQ(Set(Property::PortOpen, VARIANT::Bool(true)),
              "PortOpen cannot be true: this computer has no serial port 2");
}

TEST_F(SerialControlTest, LinesAndBreak) {
    m_control.onComm = [this](CommEvent event) { m_events.push_back(static_cast<int>(event)); };
    Set(Property::DTREnable, VARIANT::Bool(false));
    Open();
    Set(Property::DTREnable, VARIANT::Bool(true));
    Set(Property::RTSEnable, VARIANT::Bool(false));
    Set(Property::Break, VARIANT::Bool(true));
    Set(Property::Break, VARIANT::Bool(false));
    Set(Property::Handshaking, VARIANT::Long(2));
    Set(Property::RTSEnable, VARIANT::Bool(true)); // the system's now
    EXPECT_EQ(m_device.log, "alone -DTR +RTS +DTR -RTS break no-break ");
    m_device.lines = TIOCM_CD | TIOCM_CTS | TIOCM_RI;
    EXPECT_EQ(Get(Property::CDHolding) + Get(Property::CTSHolding) + Get(Property::DSRHolding),
              "truetruefalse");
    m_device.lines = TIOCM_DSR;
    EXPECT_EQ(Get(Property::CDHolding) + Get(Property::CTSHolding) + Get(Property::DSRHolding),
              "falsefalsetrue");
    EXPECT_EQ(m_events, (std::vector<int>{3, 5, 6, 3, 4, 5}));
    EXPECT_EQ(Get(Property::CommEvent), "5");
}

TEST_F(SerialControlTest, DamagedBytesBreaksAndStopsInTheInput) {
    m_control.onComm = [this](CommEvent event) { m_events.push_back(static_cast<int>(event)); };
    Set(Property::Settings, VARIANT::String("9600,e,8,1"));
    Set(Property::NullDiscard, VARIANT::Bool(true));
    Open();
    using namespace std::string_view_literals;
    Receive("ab\xFF\0cd\xFF\xFF\0e\xFF\0\0f"sv);
    EXPECT_EQ(m_events, (std::vector<int>{1009, 1001}));
    Set(Property::InputMode, VARIANT::Long(1));
    EXPECT_EQ(Get(Property::Input), "[97,98,63,100,255,101,102]");
    Set(Property::ParityReplace, VARIANT::String(""));
    Set(Property::Settings, VARIANT::String("9600,n,8,1"));
    Receive("\xFF\0x"sv);
    EXPECT_EQ(m_events.back(), 1004);

    Set(Property::InputMode, VARIANT::Long(0));
    Set(Property::EOFEnable, VARIANT::Bool(true));
    Set(Property::InputLen, VARIANT::Short(2));
    m_device.input = "yz\x1A"
                     "1\x1A"
                     "2";
    m_control.Poll();
    EXPECT_EQ(m_events.back(), 7);
    EXPECT_EQ(Get(Property::Input), "\"xy\"");
    EXPECT_EQ(Get(Property::InBufferCount), "1") << "stopped until the buffer was read";
    EXPECT_EQ(Get(Property::Input), "\"z\"");
    EXPECT_EQ(Get(Property::Input), "\"1\"");
    Set(Property::EOFEnable, VARIANT::Bool(false));
    EXPECT_EQ(Get(Property::Input), "\"2\"");
}

TEST_F(SerialControlTest, OutputWaitsAndIsDroppedAtLast) {
    m_control.onComm = [this](CommEvent event) { m_events.push_back(static_cast<int>(event)); };
    Set(Property::OutBufferSize, VARIANT::Short(6));
    Set(Property::SThreshold, VARIANT::Short(3));
    Set(Property::RThreshold, VARIANT::Short(2));
    Open();
    m_device.takesOutput = false;
    EXPECT_EQ(Set(Property::Output, VARIANT::FromArray({VARIANT::Byte(0x80), VARIANT::Short(0)})), "");
    EXPECT_EQ(Set(Property::Output, VARIANT::Long(65)), "");
    EXPECT_EQ(
        Set(Property::Output, VARIANT::String("wxyz")),
        "Output cannot be \"wxyz\": its 4 bytes do not fit into the 3 that are free in the output buffer");
    EXPECT_EQ(Get(Property::OutBufferCount), "3");
    m_device.takesOutput = true;
    m_clock.Advance(5);
    PumpMessages(); // the timer's turn
    EXPECT_EQ(m_device.output, (std::string{'\x80', '\0', 'A'}));
    m_device.input = "1";
    m_control.Poll();
    m_device.input = "2";
    m_control.Poll();
    EXPECT_EQ(m_events, (std::vector<int>{1010, 1, 2}));

    m_device.takesOutput = false;
    m_device.log.clear();
    Set(Property::Output, VARIANT::String("left"));
    const std::uint32_t start = m_clock.TickCount();
    Set(Property::PortOpen, VARIANT::Bool(false));
    EXPECT_EQ(m_clock.TickCount() - start, 500U);
    EXPECT_EQ(m_device.log, "flush shared close ");
    EXPECT_EQ(Get(Property::OutBufferCount), "0");
    for (const int waiting : {0, 3}) { // what the system has taken has to get out too
        Open();
        m_device.waiting = waiting;
        const std::uint32_t before = m_clock.TickCount();
        Set(Property::PortOpen, VARIANT::Bool(false));
        EXPECT_EQ(m_clock.TickCount() - before, waiting == 0 ? 0U : 500U);
    }
}

} // namespace
} // namespace kalvio::reference_host
