#include "bench/trace/CommandNames.h"

#include "bench/trace/HexText.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace kalvio::bench {

namespace {

enum class Show { Hex, Decimal, Letter, Dsp, General };

constexpr std::uint32_t kFirstPrintable = 0x20;
constexpr std::uint32_t kLastPrintable = 0x7E;

struct Parameter {
    const char* label = nullptr;
    std::uint8_t offset = 0;
    std::uint8_t width = 0;
    Show show = Show::Hex;
};

struct Command {
    std::uint32_t code;
    const char* name;
    std::size_t resultBytes;
    std::array<Parameter, 5> parameters;
};

constexpr Parameter kAddress16{"address", 0, 2};
constexpr Parameter kAddress32{"address", 0, 4};
constexpr Parameter kBitAddress{"bit address", 0, 4};
constexpr Parameter kMask{"mask", 4, 4};

constexpr Parameter Space(std::uint8_t offset) {
    return {"space", offset, 1, Show::Letter};
}
constexpr Parameter Dsp(std::uint8_t offset) {
    return {"DSP", offset, 1, Show::Dsp};
}
constexpr Parameter Value(std::uint8_t offset, std::uint8_t width = 1) {
    return {"value", offset, width};
}
constexpr Parameter Number(const char* label, std::uint8_t offset, std::uint8_t width = 1) {
    return {label, offset, width, Show::Decimal};
}

constexpr Command kCommands[] = {
    {1, "Initialise", 0, {{Number("parameter", 0, 2)}}},
    {2, "Terminate", 0, {{Number("parameter", 0, 2)}}},
    {3, "MicroGetMem", 1, {{Space(2), kAddress16}}},
    {4, "MicroGetBit", 1, {{Space(4), kBitAddress}}},
    {5, "DSPGetMem24", 4, {{Dsp(4), Space(5), kAddress32}}},
    {6, "DSPGetBit", 1, {{Dsp(8), Space(9), kAddress32, kMask}}},
    {7, "MicroPutMem", 0, {{Space(2), kAddress16, Value(3), Number("check", 4)}}},
    {8, "MicroPutBit", 0, {{Space(4), kBitAddress, Value(5)}}},
    {9, "DSPPutMem24", 0, {{Dsp(8), Space(9), kAddress32, Value(4, 4)}}},
    {10, "DSPPutBit", 0, {{Dsp(8), Space(9), kAddress32, kMask, Value(10)}}},
    {11, "MicroGetMemBlock", 0, {{Space(2), kAddress16}}},
    {12, "DSPGetMemBlock24", 0, {{Dsp(4), Space(5), kAddress32}}},
    {13, "MicroPutMemBlock", 0, {{Space(2), kAddress16, Number("check", 3)}}},
    {14, "DSPPutMemBlock24", 0, {{Dsp(4), Space(5), kAddress32}}},
    {15, "MicroFillMemBlock", 0, {{Space(4), kAddress16, Number("length", 2, 2), Value(5)}}},
    {16, "DSPFillMemBlock24", 0, {{Dsp(12), Space(13), kAddress32, Number("length", 4, 4), Value(8, 4)}}},
    {17, "MicroWaitBit", 1, {{Space(6), kBitAddress, Number("state", 7), Number("time-out", 4, 2)}}},
    {18, "DSPWaitBit", 1, {{Dsp(10), kAddress32, kMask, Number("state", 12), Number("time-out", 8, 2)}}},
    {19, "MicroLoad", 0, {{Number("which", 0)}}},
    {20, "FPGALoad", 0, {}},
    {21, "DSPLoad", 0, {{Dsp(0), Number("flag", 1)}}},
    {kGeneralCommand, "DoCommand", 0, {{{"id", 0, 1, Show::General}}}},
    {23, "DSPSendCommand", 0, {{Dsp(0), {"command", 1, 1}}}},
    {24, "MicroPutBits", 0, {{Space(6), {"address", 4, 2}, {"off", 7, 1}, {"on", 8, 1}}}},
};

struct GeneralName {
    std::uint32_t id;
    const char* name;
};

constexpr GeneralName kGeneralNames[] = {
    {2, "main board relay"},  {5, "peak detectors"},  {6, "video sync"}, {7, "divisors"},
    {8, "arm address check"}, {12, "peripheral bus"}, {13, "generator"}, {14, "auto-range"},
};

const char* NameOfGeneral(std::uint32_t id) {
    const auto* found = std::find_if(std::begin(kGeneralNames), std::end(kGeneralNames),
                                     [id](const GeneralName& each) { return each.id == id; });
    return found == std::end(kGeneralNames) ? "unknown" : found->name;
}

const Command* Find(std::uint32_t code) {
    const auto* found = std::find_if(std::begin(kCommands), std::end(kCommands),
                                     [code](const Command& each) { return each.code == code; });
    return found == std::end(kCommands) ? nullptr : found;
}

std::uint32_t Read(std::span<const std::uint8_t> bytes, const Parameter& parameter) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < parameter.width; ++i) {
        value = (value << 8) | bytes[parameter.offset + i];
    }
    return value;
}

void AppendParameter(std::string& text, const Parameter& parameter, std::uint32_t value) {
    if (parameter.show == Show::General) {
        AppendDecimal(text, value);
        text.append(": ").append(NameOfGeneral(value));
        return;
    }
    text.append(parameter.label) += ' ';
    if (parameter.show == Show::Decimal) {
        AppendDecimal(text, value);
    } else if (parameter.show == Show::Letter && value >= kFirstPrintable && value <= kLastPrintable) {
        text.append({'\'', static_cast<char>(value), '\''});
    } else if (parameter.show == Show::Dsp) {
        text += value == 0 ? 'A' : 'B';
    } else {
        AppendHex(text, value);
    }
}

} // namespace

void AppendCommand(std::string& text, std::uint32_t code, std::span<const std::uint8_t> parameters) {
    const Command* command = Find(code);
    if (command == nullptr) {
        text += "command ";
        AppendDecimal(text, code);
        return;
    }
    text.append(command->name) += '(';
    const char* separator = "";
    for (const Parameter& parameter : command->parameters) {
        if (parameter.label == nullptr) {
            break;
        }
        text += separator;
        separator = ", ";
        if (parameters.size() >= parameter.offset + std::size_t{parameter.width}) {
            AppendParameter(text, parameter, Read(parameters, parameter));
        } else {
            text.append(parameter.label).append(" missing");
        }
    }
    text += ')';
}

std::size_t ResultBytes(std::uint32_t code) {
    const Command* command = Find(code);
    return command == nullptr ? 0 : command->resultBytes;
}

} // namespace kalvio::bench
