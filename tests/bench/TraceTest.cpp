#include "bench/trace/AdapterFrames.h"
#include "bench/trace/CommandNames.h"
#include "bench/trace/DriverTrace.h"
#include "platform/Text.h"
#include "testing/ManualClock.h"

#include <gtest/gtest.h>

namespace kalvio::bench {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Answers requests from a script and counts what came.
class ScriptedDriver : public DeviceDriver {
public:
    explicit ScriptedDriver(test::ManualClock& clock) : m_clock(clock) {}

    struct Answer {
        Bytes data;
        bool ok = true;
        std::uint32_t error = 0;
        std::uint32_t takes = 0; // milliseconds
    };
    DeviceHandle Open(std::string_view) override { return DeviceHandle{1}; }
    DriverReply Control(DeviceHandle, const DriverRequest& request) override {
        const Answer answer = next < answers.size() ? answers[next] : Answer();
        ++next;
        m_clock.Advance(answer.takes);
        std::copy(answer.data.begin(), answer.data.end(), request.dataFromUnit.begin());
        return {answer.ok, static_cast<std::uint32_t>(answer.data.size()), answer.error};
    }
    void Close(DeviceHandle) override {}

    std::vector<Answer> answers;
    std::size_t next = 0;

private:
    test::ManualClock& m_clock;
};

class TraceTest : public testing::Test {
protected:
    void Write(const Bytes& data, ScriptedDriver::Answer answer = {}) {
        m_driver.answers.push_back(std::move(answer));
        m_trace.Control(DeviceHandle{1}, {kControlBulkWrite, m_block, data, {}});
    }
    void Read(std::size_t room, ScriptedDriver::Answer answer) {
        m_driver.answers.push_back(std::move(answer));
        Bytes buffer(room);
        m_trace.Control(DeviceHandle{1}, {kControlBulkRead, m_block, {}, buffer});
    }
    void Request(std::uint32_t code, const Bytes& input, std::size_t room, ScriptedDriver::Answer answer) {
        m_driver.answers.push_back(std::move(answer));
        Bytes buffer(room);
        m_trace.Control(DeviceHandle{1}, {code, input, {}, buffer});
    }

    test::ManualClock m_clock{5000};
    ScriptedDriver m_driver{m_clock};
    std::vector<std::string> m_lines;
    Bytes m_block = Bytes(8);
    DriverTrace m_trace{m_driver, [this](const std::string& line) { m_lines.push_back(line); }, false};
};

TEST_F(TraceTest, WhatGoesWrongIsNamed) {
    const Bytes waitBit{0, 0, 0xAB, 0xCD, 0, 0,    0,    17,   0, 0, 0,   0,
                        0, 0, 0,    0,    0, 0xB0, 0x22, 0x08, 0, 1, 'X', 1};
    const char* call = "MicroWaitBit(space 'X', bit address 0xB02208, state 1, time-out 1) -> ";
    Write(waitBit);
    Read(16, {{0, 0, 0xB0, 0x0B, 0, 0, 0, 17, 0x01, 0x18, 0, 0, 0, 0, 0, 0}});
    Write(waitBit);
    Read(16, {{0, 0, 0, 0, 0, 0, 0, 18, 0, 0, 0, 0, 0, 0, 0, 0}});
    Write(waitBit);
    Read(16, {{0, 0, 0, 0, 0}});
    Write(waitBit);
    Read(16, {{}, false, 121});
    Write(waitBit, {{}, false, 31});
    const char* ends[] = {"refused, error 0x0118", "wrong echo 18", "short answer of 5 bytes",
                          "read failed, error 121", "write failed, error 31"};
    ASSERT_EQ(m_lines.size(), std::size(ends));
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        EXPECT_EQ(m_lines[i], Format("      0 ms %s%s (0 ms)", call, ends[i]));
    }
}

TEST_F(TraceTest, RequestsOutsideCommandsHaveLinesOfTheirOwn) {
    Bytes descriptor(18);
    descriptor[12] = 0x0B;
    descriptor[13] = 0x01;
    Request(kControlGetDescriptor, {}, 18, {descriptor});
    Request(kControlResetDevice, {}, 0, {});
    Request(kControlResetPipe, {8, 0, 0, 0}, 0, {});
    Request(kControlVendorRequest, {0, 2, 0, 0, 0xB0, 0, 2, 0, 0, 0}, 0, {});
    Request(kControlLastUsbError, {}, 4, {{4, 0, 0, 0xC0}});
    Read(65472, {{}, false, 121});
    m_trace.Close(DeviceHandle{1});
    EXPECT_EQ(m_lines, (std::vector<std::string>{
                           "      0 ms get descriptor, release 267 (0 ms)",
                           "      0 ms reset device (0 ms)",
                           "      0 ms reset pipe 8 (0 ms)",
                           "      0 ms reset endpoint 2 (0 ms)",
                           "      0 ms last error 0xC0000004 (0 ms)",
                           "      0 ms read outside a command, 0 bytes -> failed, error 121 (0 ms)",
                           "           close",
                       }));
}

TEST(AdapterFrames, FieldsAreNamedByRegisterGroup) {
    const struct {
        std::uint8_t command;
        Bytes data;
        const char* text;
    } kRows[] = {
        {0xC1, {0x06}, "relays: reference 0, analyser 1, generator through the adapter 1"},
        {0xC2, {0x99}, "I/O: audio voltage 1, audio on 1, control voltage 1, control on 1"},
        {0xC3,
         {0, 0xFF, 0, 0xAA},
         "generator routing: routed 8-15 0x00, routed 0-7 0xFF, B 8-15 0x00, B 0-7 0xAA"},
        {0xC4,
         {0xB3, 1, 7},
         "generator format: slots per wire 16, LSB first 0, slot length 32, sign extend 1, lead pad 1, trail "
         "pad 7"},
        {0xC8,
         {0xC4, 0xD3},
         "analyser clocks: multiplier 256, master clock in 1, master clock off 1, measured Hz 48000, frame "
         "invert 0, frame early 1, frame 1 bit 0, bit invert 1, serial clocks in 1"},
        {0xCE, {0x27}, "delays: generator ns -7, analyser ns 28"},
        {0xC6, {}, "analyser routing"},
        {0xC6, {1}, ""},
        {0xCA, {0x85, 0}, "SPI 85 00"},
        {0xCB, {0x34, 5}, "I2C to 0x1A: 05"},
        {0xCD, {0x35}, "frame clocks: generator 96000 Hz, analyser 48000 Hz"},
        {0xB1, {}, ""},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(DecodeAdapterFrame(row.command, row.data), row.text);
    }
    EXPECT_TRUE(DecodeAdapterFrame(0xC0, Bytes(20)).ends_with("; delays: generator ns 0, analyser ns 0"));
    EXPECT_EQ(DecodeAdapterFrame(0xC0, Bytes(19)), "");
}

std::string Command(std::uint32_t code, const Bytes& parameters) {
    std::string text;
    AppendCommand(text, code, parameters);
    return text;
}

TEST(CommandNames, ShortHeadersAndUnknownCodesAreStillNamed) {
    EXPECT_EQ(Command(99, {}), "command 99");
    EXPECT_EQ(Command(20, {}), "FPGALoad()");
    const Bytes half{0x80};
    EXPECT_EQ(Command(3, half), "MicroGetMem(space missing, address missing)");
    const Bytes strange{0x80, 0, '\n'}; // a line of the trace stays a line
    EXPECT_EQ(Command(3, strange), "MicroGetMem(space 0xA, address 0x8000)");
}

} // namespace
} // namespace kalvio::bench
