#pragma once

// A unit on the bench and a driver's hands on it: requests are written as hex, answers read as hex.

#include "simulator/VirtualUnit.h"

#include <cstdio>
#include <string>
#include <vector>

namespace kalvio::simulator {

inline std::vector<std::uint8_t> Hex(std::string_view text) {
    std::vector<std::uint8_t> bytes;
    std::string digits;
    for (const char c : text) {
        if (c == ' ')
            continue;
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
    for (std::size_t i = 0; i < count; ++i)
        text += hex;
    return text;
}

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
        if (!Write(header).ok)
            return "header failed";
        if (!out.empty() && !Write(out).ok)
            return "out data failed";
        const DriverReply response = Read(responseLength);
        if (!response.ok)
            return "response failed with " + std::to_string(response.error);
        std::string text = ToHex(got);
        if (inLength == 0)
            return text;
        return Read(inLength).ok ? text + " | " + ToHex(got) : text + " | in data failed";
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
