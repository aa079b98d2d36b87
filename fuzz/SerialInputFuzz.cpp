// A serial port over a device that answers anything, used in any order.

#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "reference_host/ports/SerialControl.h"
#include "testing/ManualClock.h"

#include <asm/termbits.h>
#include <cerrno>
#include <sys/ioctl.h>

namespace {

using namespace kalvio;
using namespace kalvio::reference_host;
using fuzz::Require;

constexpr int kMostSteps = 200;
constexpr int kErrors[] = {-EAGAIN, -EIO, -ENOENT, -EBUSY, -EINVAL, -EACCES};

// Each call takes a byte that decides what becomes of it. Past the end of the input nothing comes in and all
// that is put out is sent.
class AnyDevice {
public:
    explicit AnyDevice(fuzz::FuzzInput& input) : m_input(input) {}

    SystemCalls Calls() {
        SystemCalls calls;
        calls.open = [this](const std::string&) { return Answer(7); };
        calls.close = [](int) { return 0; };
        calls.lock = [this](int) { return Answer(0); };
        calls.read = [this](int, std::span<char> bytes) { return Read(bytes); };
        calls.write = [this](int, std::string_view bytes) { return Write(bytes.size()); };
        calls.control = [this](int, unsigned long request, void* argument) {
            return Control(request, argument);
        };
        return calls;
    }

private:
    int Answer(int good) {
        const std::uint8_t how = m_input.Byte();
        return how < 0xF8 ? good : kErrors[how % std::size(kErrors)];
    }

    long Read(std::span<char> bytes) {
        const std::uint8_t how = m_input.Byte();
        if (how == 0 || how > 0xFC) {
            return how == 0 ? -EAGAIN : (how == 0xFD ? 0 : -EIO);
        }
        const auto taken = m_input.Take(std::min<std::size_t>(bytes.size(), how));
        std::ranges::copy(taken, bytes.begin());
        return taken.empty() ? -EAGAIN : static_cast<long>(taken.size());
    }

    long Write(std::size_t count) {
        const std::uint8_t how = m_input.Byte();
        if (how >= 0xF0) {
            return how == 0xFF ? -EIO : -EAGAIN;
        }
        return static_cast<long>(how == 0 ? count : std::min<std::size_t>(count, how));
    }

    int Control(unsigned long request, void* argument) {
        if (request == TIOCMGET || request == TIOCOUTQ) {
            *static_cast<int*>(argument) = request == TIOCMGET ? m_input.Word() : m_input.Byte();
        }
        return Answer(0);
    }

    fuzz::FuzzInput& m_input;
};

VARIANT AnyValue(fuzz::FuzzInput& input) {
    switch (input.Byte() % 5) {
    case 0:
        return VARIANT::Bool((input.Byte() & 1) != 0);
    case 1:
        return VARIANT::Short(static_cast<std::int16_t>(input.Word()));
    case 2:
        return VARIANT::String(input.Text());
    case 3:
        return VARIANT::Long(input.Byte() % 8);
    default: {
        VARIANT::Array bytes;
        for (const std::uint8_t byte : input.Take(input.Byte())) {
            bytes.push_back(VARIANT::Byte(byte));
        }
        return VARIANT::FromArray(std::move(bytes));
    }
    }
}

class Calls {
public:
    explicit Calls(fuzz::FuzzInput& input) : m_input(input), m_device(input) {
        m_control.onComm = [this](CommEvent) { OnEvent(); };
    }

    void Make() {
        for (int step = 0; step < kMostSteps && !m_input.IsAtEnd(); ++step) {
            Step();
            CheckBuffer(CommProperty::InBufferCount, CommProperty::InBufferSize);
            CheckBuffer(CommProperty::OutBufferCount, CommProperty::OutBufferSize);
        }
        Require(m_control.SetProperty(CommProperty::PortOpen, VARIANT::Bool(false)).Ok(),
                "a port can be closed");
    }

private:
    void Step() {
        const std::uint8_t what = m_input.Byte();
        const auto property = static_cast<CommProperty>(m_input.Byte() % 32);
        if (what < 0x60) {
            Check(m_control.SetProperty(property, AnyValue(m_input)));
        } else if (what < 0x80) {
            Check(m_control.SetProperty(CommProperty::PortOpen, VARIANT::Bool((what & 3) != 0)));
        } else if (what < 0xA0) {
            Check(m_control.GetProperty(property));
        } else if (what < 0xC0) {
            Check(m_control.GetProperty(CommProperty::Input));
        } else {
            m_clock.Advance(what & 0x3FU);
            PumpMessages();
        }
    }

    // A handler may do what it likes, even close the port.
    void OnEvent() {
        if (m_depth < 3 && !m_input.IsAtEnd()) {
            ++m_depth;
            Step();
            --m_depth;
        }
    }

    static void Check(const AutomationResult& result) {
        Require(result.Ok() == result.text.empty(), "a refused request says why");
    }

    void CheckBuffer(CommProperty count, CommProperty size) {
        std::int32_t used = -1;
        std::int32_t most = -1;
        m_control.GetProperty(count).value.Get(used);
        m_control.GetProperty(size).value.Get(most);
        Require(used >= 0 && used <= most, "a buffer holds no more than its size");
    }

    fuzz::FuzzInput& m_input;
    test::ManualClock m_clock;
    AnyDevice m_device;
    int m_depth = 0;
    CWnd m_parent;
    SerialControl m_control{m_parent, 1, [](std::int16_t port) { return port < 3 ? "/dev/x" : ""; },
                            m_device.Calls()};
};

} // namespace

std::vector<kalvio::fuzz::Bytes> kalvio::fuzz::Seeds() {
    // Opened: modes read and set, lock, exclusive use and lines; then both output lines and the lines again.
    const Bytes open{0x61, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    Bytes settings{0x00, 23, 2, 10, '9', '6', '0', '0', ',', 'e', ',', '8', ',', '1'};
    settings.insert(settings.end(), open.begin(), open.end());
    settings.insert(settings.end(),
                    {0xA0, 0, 0, 12, 'a', 0xFF, 0, 'c', 0xFF, 0xFF, 0x1A, 0xFF, 0, 0, 'f', 'g', 0, 0, 0});
    Bytes output = open;
    output.insert(output.end(),
                  {0x00, 25, 2, 5, 'h', 'e', 'l', 'l', 'o', 2, 0xF0, 0, 0, 0, 0, 0xC5, 0, 0, 0, 0});
    Bytes stops{0x00, 28, 0, 1, 0x00, 29, 3, 1, 0x00, 21, 1, 2, 0, 0x00, 14, 1, 1, 0};
    stops.insert(stops.end(), open.begin(), open.end());
    stops.insert(stops.end(), {0xC5, 0, 0, 4, 'y', 0x1A, 'z', 'w', 0, 0, 0, 0, 0xA0, 0, 0, 0, 0, 0, 0, 0});
    return {open, settings, output, stops};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FuzzInput input(data, size);
    Calls(input).Make();
    return 0;
}
