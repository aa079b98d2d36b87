#pragma once

// A unit on the bench and a driver's hands on it: requests are written as hex, answers read as hex.

#include "simulator/VirtualUnit.h"
#include "support/ScriptedDriver.h"

#include <algorithm>
#include <string>
#include <vector>

namespace kalvio::simulator {

using test::Hex;

// Capital hex with a blank after every fourth byte.
inline std::string ToHex(std::span<const std::uint8_t> bytes) {
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += 4) {
        text +=
            (at > 0 ? " " : "") + test::ToHex(bytes.subspan(at, std::min<std::size_t>(4, bytes.size() - at)));
    }
    return text;
}

class Wire {
public:
    explicit Wire(UnitOptions options = {}, std::uint32_t tick = 1000)
        : now(tick),
          unit({[this] { return now; }, [this](std::uint32_t ms) { now += ms; }}, std::move(options)),
          handle(unit.Open(R"(\\.\kvusb-0)")) {}

    DriverReply Control(std::uint32_t code, std::string_view input, std::string_view toUnit = {},
                        std::size_t fromUnit = 0) {
        const auto inputBytes = Hex(input);
        const auto toUnitBytes = Hex(toUnit);
        got.assign(fromUnit, 0);
        return unit.Control(handle, {code, inputBytes, toUnitBytes, got});
    }

    DriverReply Write(std::string_view hex) { return Control(kControlBulkWrite, "01000000B80B0000", hex); }
    DriverReply Read(std::size_t length) { return Control(kControlBulkRead, "08000000B80B0000", {}, length); }

    // A whole exchange: the response, then " | " and the in data if there is any; or what failed.
    std::string Ask(std::string_view header, std::string_view out = {}) {
        if (!Write(header).ok) {
            return "header failed";
        }
        if (!out.empty() && !Write(out).ok) {
            return "out data failed";
        }
        const auto bytes = Hex(header);
        const bool hasResult =
            std::string_view("\x03\x04\x05\x06\x11\x12").find(static_cast<char>(bytes[7])) !=
            std::string_view::npos;
        const DriverReply response = Read(hasResult ? 16 : 12);
        if (!response.ok) {
            return "response failed with " + std::to_string(response.error);
        }
        std::string text = ToHex(got);
        if (const std::size_t inLength = bytes[14] * 256U + bytes[15]; inLength > 0) {
            text += Read(inLength).ok ? " | " + ToHex(got) : " | in data failed";
        }
        return text;
    }

    // One exchange over the peripheral bus, by general command 12: the answer, "no answer" when none was
    // wanted, or "status" and the unit's word.
    std::string Bus(std::string_view frame, std::size_t answerLength, unsigned timeoutMs = 0) {
        const auto sent = Hex(frame);
        std::vector<std::uint8_t> block{
            static_cast<std::uint8_t>(sent.size()), static_cast<std::uint8_t>(answerLength),
            static_cast<std::uint8_t>(timeoutMs >> 8), static_cast<std::uint8_t>(timeoutMs)};
        block.insert(block.end(), sent.begin(), sent.end());
        block.resize(44);
        Ask("0000ABCD 00000016 0000002C 0000002C 0C000000", ToHex(block));
        if (got[0] != 0 || got[1] != 0) {
            return "status " + ToHex(std::span(got).first(2));
        }
        return sent.back() == 0xA5 ? "no answer" : ToHex(std::span(got).subspan(4, answerLength));
    }

    std::uint32_t now;
    VirtualUnit unit;
    DeviceHandle handle;
    std::vector<std::uint8_t> got; // what the last request brought
};

} // namespace kalvio::simulator
