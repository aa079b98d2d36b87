#pragma once

// A unit on the bench and a driver's hands on it: requests are written as hex, answers read as hex.

#include "simulator/VirtualUnit.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace kalvio::simulator {

inline std::vector<std::uint8_t> Hex(std::string_view text) {
    std::vector<std::uint8_t> bytes;
    std::string digits;
    for (const char c : text) {
        if (c == ' ') {
            continue;
        }
        digits += c;
        if (digits.size() == 2) {
            bytes.push_back(static_cast<std::uint8_t>(std::stoi(digits, nullptr, 16)));
            digits.clear();
        }
    }
    return bytes;
}

// Capital hex with a blank after every fourth byte.
inline std::string ToHex(std::span<const std::uint8_t> bytes) {
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        char pair[4];
        std::snprintf(pair, sizeof pair, "%02X", bytes[i]);
        text += (i > 0 && i % 4 == 0 ? " " : "") + std::string(pair);
    }
    return text;
}

inline std::string Repeat(std::string_view hex, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += hex;
    }
    return text;
}

// A frame on the peripheral bus and what becomes of it: the answer, "no answer" when none was wanted, or
// "status" and the unit's word. An answer of other than its own length can be asked for.
struct BusLine {
    std::string sent;
    std::string becomes;
    std::size_t length = 0;
};

class Wire {
public:
    explicit Wire(UnitOptions options = {})
        : unit({[this] { return now; }, [this](std::uint32_t ms) { now += ms; }}, std::move(options)),
          handle(unit.Open(R"(\\.\kvusb-0)")) {}

    DriverReply Control(std::uint32_t code, std::string_view input, std::string_view toUnit = {},
                        std::size_t fromUnit = 0) {
        const auto inputBytes = Hex(input);
        const auto toUnitBytes = Hex(toUnit);
        got.assign(fromUnit, 0);
        return unit.Control(handle, {code, inputBytes, toUnitBytes, got});
    }

    DriverReply Write(std::string_view hex) {
        return Control(kControlBulkWrite, "01 00 00 00 B8 0B 00 00", hex);
    }
    DriverReply Read(std::size_t length) { return Control(kControlBulkRead, "08000000B80B0000", {}, length); }
    DriverReply Drain() { return Control(kControlBulkRead, "08 00 00 00 0A 00 00 00", {}, 65472); }
    DriverReply ResetEndpoint() { return Control(kControlVendorRequest, "00 02 00 00 B0 00 02 00 00 00"); }

    // A whole exchange: the response, then " | " and the in data if there is any; or what failed.
    std::string Ask(std::string_view header, std::string_view out = {}, std::size_t responseLength = 12,
                    std::size_t inLength = 0) {
        if (!Write(header).ok) {
            return "header failed";
        }
        if (!out.empty() && !Write(out).ok) {
            return "out data failed";
        }
        const DriverReply response = Read(responseLength);
        if (!response.ok) {
            return "response failed with " + std::to_string(response.error);
        }
        std::string text = ToHex(got);
        if (inLength == 0) {
            return text;
        }
        return Read(inLength).ok ? text + " | " + ToHex(got) : text + " | in data failed";
    }

    // One exchange over the peripheral bus, by general command 12.
    std::string Bus(std::string_view frame, std::size_t answerLength, unsigned timeoutMs = 0) {
        const auto sent = Hex(frame);
        std::vector<std::uint8_t> block{
            static_cast<std::uint8_t>(sent.size()), static_cast<std::uint8_t>(answerLength),
            static_cast<std::uint8_t>(timeoutMs >> 8), static_cast<std::uint8_t>(timeoutMs)};
        block.insert(block.end(), sent.begin(), sent.end());
        block.resize(44);
        Ask("0000ABCD 00000016 0000002C 0000002C 0C000000", ToHex(block), 12, 44);
        if (got[0] != 0 || got[1] != 0) {
            return "status " + ToHex(std::span(got).first(2));
        }
        return sent.back() == 0xA5 ? "no answer" : ToHex(std::span(got).subspan(4, answerLength));
    }

    void Play(const std::vector<BusLine>& lines) {
        for (const BusLine& line : lines) {
            const bool answered = line.becomes.starts_with("55");
            const std::size_t usual = answered ? Hex(line.becomes).size() : 9;
            EXPECT_EQ(Bus(line.sent, line.length != 0 ? line.length : usual), line.becomes) << line.sent;
        }
    }

    std::uint32_t now = 1000;
    VirtualUnit unit;
    DeviceHandle handle;
    std::vector<std::uint8_t> got; // what the last request brought
};

// Frames that many tests send.
inline constexpr const char* kInitialise = "0000ABCD 00000001 00000000 00000000 00000000";
inline constexpr const char* kInitialised = "0000600D 00000001 00000000";
inline constexpr const char* kReadStatus = "0000ABCD 00000003 00000000 00000000 80005800"; // 'X' 0x8000
inline constexpr const char* kStatusRead = "0000600D 00000003 00000000 21000000";

} // namespace kalvio::simulator
