#include "simulator/commands/CommandTable.h"

#include <algorithm>
#include <iterator>

namespace kalvio::simulator {

namespace {

using enum CommandCode;
using enum Field;

constexpr std::size_t kPlain = 12;  // response of a command without a result
constexpr std::size_t kResult = 16; // response of a command that returns a value
constexpr DataRule kNo = DataRule::None;
constexpr DataRule kBytes = DataRule::Bytes;
constexpr DataRule kWords = DataRule::Words24;

constexpr FieldPlace kMicroAddress{Address, 0, 2};
constexpr FieldPlace kLongAddress{Address, 0, 4};
constexpr FieldPlace kMask{Mask, 4, 4};

// Time-outs and wanted states of the wait commands are not listed: the unit answers at once.
constexpr CommandShape kCommands[] = {
    {Initialise, "Initialise", 20, kPlain, kNo, kNo, {{{Value, 0, 2}}}},
    {Terminate, "Terminate", 20, kPlain, kNo, kNo, {{{Value, 0, 2}}}},
    {MicroGetMem, "MicroGetMem", 20, kResult, kNo, kNo, {{kMicroAddress, {Space, 2, 1}}}},
    {MicroGetBit, "MicroGetBit", 24, kResult, kNo, kNo, {{kLongAddress, {Space, 4, 1}}}},
    {DspGetMem, "DSPGetMem24", 24, kResult, kNo, kNo, {{kLongAddress, {Dsp, 4, 1}, {Space, 5, 1}}}},
    {DspGetBit, "DSPGetBit", 28, kResult, kNo, kNo, {{kLongAddress, kMask, {Dsp, 8, 1}, {Space, 9, 1}}}},
    {MicroPutMem,
     "MicroPutMem",
     24,
     kPlain,
     kNo,
     kNo,
     {{kMicroAddress, {Space, 2, 1}, {Value, 3, 1}, {Check, 4, 1}}}},
    {MicroPutBit, "MicroPutBit", 24, kPlain, kNo, kNo, {{kLongAddress, {Space, 4, 1}, {Value, 5, 1}}}},
    {DspPutMem,
     "DSPPutMem24",
     28,
     kPlain,
     kNo,
     kNo,
     {{kLongAddress, {Value, 4, 4}, {Dsp, 8, 1}, {Space, 9, 1}}}},
    {DspPutBit,
     "DSPPutBit",
     28,
     kPlain,
     kNo,
     kNo,
     {{kLongAddress, kMask, {Dsp, 8, 1}, {Space, 9, 1}, {Value, 10, 1}}}},
    {MicroGetBlock, "MicroGetMemBlock", 20, kPlain, kNo, kBytes, {{kMicroAddress, {Space, 2, 1}}}},
    {DspGetBlock, "DSPGetMemBlock24", 24, kPlain, kNo, kWords, {{kLongAddress, {Dsp, 4, 1}, {Space, 5, 1}}}},
    {MicroPutBlock,
     "MicroPutMemBlock",
     20,
     kPlain,
     kBytes,
     kNo,
     {{kMicroAddress, {Space, 2, 1}, {Check, 3, 1}}}},
    {DspPutBlock, "DSPPutMemBlock24", 24, kPlain, kWords, kNo, {{kLongAddress, {Dsp, 4, 1}, {Space, 5, 1}}}},
    {MicroFill,
     "MicroFillMemBlock",
     24,
     kPlain,
     kNo,
     kNo,
     {{kMicroAddress, {Length, 2, 2}, {Space, 4, 1}, {Value, 5, 1}}}},
    {DspFill,
     "DSPFillMemBlock24",
     32,
     kPlain,
     kNo,
     kNo,
     {{kLongAddress, {Length, 4, 4}, {Value, 8, 4}, {Dsp, 12, 1}, {Space, 13, 1}}}},
    {MicroWaitBit, "MicroWaitBit", 24, kResult, kNo, kNo, {{kLongAddress, {Space, 6, 1}}}},
    {DspWaitBit, "DSPWaitBit", 32, kResult, kNo, kNo, {{kLongAddress, kMask, {Dsp, 10, 1}, {Space, 11, 1}}}},
    {MicroLoad, "MicroLoad", 20, kPlain, kBytes, kNo, {{{Selector, 0, 1}}}},
    {FpgaLoad, "FPGALoad", 16, kPlain, kBytes, kNo, {}},
    {DspLoad, "DSPLoad", 20, kPlain, kWords, kNo, {{{Dsp, 0, 1}}}},
    {General, "DoCommand", 20, kPlain, kBytes, kBytes, {{{Selector, 0, 1}}}},
    {DspCommand, "DSPSendCommand", 20, kPlain, kNo, kNo, {{{Dsp, 0, 1}, {Value, 1, 1}}}},
    {MicroPutBits,
     "MicroPutBits",
     28,
     kPlain,
     kNo,
     kNo,
     {{{Address, 4, 2}, {Space, 6, 1}, {ClearBits, 7, 1}, {SetBits, 8, 1}}}},
};

} // namespace

const CommandShape* FindCommand(std::uint32_t code) {
    const auto* found =
        std::find_if(std::begin(kCommands), std::end(kCommands), [code](const CommandShape& shape) {
            return static_cast<std::uint32_t>(shape.code) == code;
        });
    return found == std::end(kCommands) ? nullptr : found;
}

bool Allows(DataRule rule, std::uint32_t length) {
    switch (rule) {
    case DataRule::None:
        return length == 0;
    case DataRule::Bytes:
        return true;
    case DataRule::Words24:
        return length % 3 == 0;
    }
    return false;
}

} // namespace kalvio::simulator
