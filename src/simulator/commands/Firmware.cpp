#include "simulator/commands/Firmware.h"

#include "simulator/commands/GeneralCommands.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kalvio::simulator {

namespace {

constexpr std::uint8_t kI2cSpace = '2';
constexpr std::size_t kLongestI2cRead = 0x10000;
constexpr std::uint8_t kCommandClearHf2 = 0x3C;

using Outcome = CommandOutcome;

Outcome From(UnitError error) {
    return Outcome::Refused(error);
} // None refuses nothing

I2cTransaction Transaction(const CommandFrame& frame) {
    return {frame.Code(), frame.tick};
}

// A run of bytes of a micro-controller space or of an I2C device.
UnitError ReadBytes(const CommandFrame& frame, UnitBoards& boards, std::size_t length, ByteVector& into) {
    const std::uint32_t address = frame.Get(Field::Address);
    if (length > kLongestI2cRead) {
        return UnitError::AddressRange;
    }
    into.resize(length);
    if (frame.GetByte(Field::Space) == kI2cSpace) {
        return boards.i2c.Read(address, into, Transaction(frame));
    }
    return boards.micro.Read(frame.GetByte(Field::Space), address, into);
}

UnitError WriteBytes(const CommandFrame& frame, UnitBoards& boards, ByteView bytes) {
    const std::uint32_t address = frame.Get(Field::Address);
    if (frame.Get(Field::Check) != 0 && std::exchange(boards.armedAddress, std::nullopt) != address) {
        return UnitError::AddressCheck;
    }
    if (frame.GetByte(Field::Space) == kI2cSpace) {
        return boards.i2c.Write(address, bytes, Transaction(frame));
    }
    return boards.micro.Write(frame.GetByte(Field::Space), address, bytes);
}

Outcome Initialise(const CommandFrame&, UnitBoards& boards) {
    boards.initialised = true;
    boards.analogue.StartSession();
    return {};
}

Outcome Terminate(const CommandFrame&, UnitBoards& boards) {
    boards.initialised = false;
    return {};
}

Outcome MicroGetMem(const CommandFrame& frame, UnitBoards& boards) {
    ByteVector byte;
    const UnitError error = ReadBytes(frame, boards, 1, byte);
    return error == UnitError::None ? Outcome::ByteValue(byte[0]) : From(error);
}

// A bit address is the byte's address and, below it, the mask.
Outcome MicroGetBit(const CommandFrame& frame, UnitBoards& boards) {
    const std::uint32_t bitAddress = frame.Get(Field::Address);
    std::uint8_t byte = 0;
    const UnitError error = boards.micro.Read(frame.GetByte(Field::Space), bitAddress >> 8, {&byte, 1});
    return error == UnitError::None ? Outcome::ByteValue((byte & bitAddress & 0xFF) != 0 ? 1 : 0)
                                    : From(error);
}

Outcome MicroPutBit(const CommandFrame& frame, UnitBoards& boards) {
    const std::uint32_t bitAddress = frame.Get(Field::Address);
    const auto mask = static_cast<std::uint8_t>(bitAddress);
    const std::uint8_t set = frame.Get(Field::Value) != 0 ? mask : std::uint8_t{0};
    return From(boards.micro.Modify(frame.GetByte(Field::Space), bitAddress >> 8, mask, set));
}

Outcome MicroGetBlock(const CommandFrame& frame, UnitBoards& boards) {
    ByteVector bytes;
    const UnitError error = ReadBytes(frame, boards, frame.inLength, bytes);
    return error == UnitError::None ? Outcome::Data(std::move(bytes)) : From(error);
}

Outcome MicroPutMem(const CommandFrame& frame, UnitBoards& boards) {
    const std::uint8_t value = frame.GetByte(Field::Value);
    return From(WriteBytes(frame, boards, {&value, 1}));
}

Outcome MicroPutBlock(const CommandFrame& frame, UnitBoards& boards) {
    return From(WriteBytes(frame, boards, frame.outData));
}

Outcome MicroFill(const CommandFrame& frame, UnitBoards& boards) {
    return From(boards.micro.Fill(frame.GetByte(Field::Space), frame.Get(Field::Address),
                                  frame.Get(Field::Length), frame.GetByte(Field::Value)));
}

Outcome MicroPutBits(const CommandFrame& frame, UnitBoards& boards) {
    return From(boards.micro.Modify(frame.GetByte(Field::Space), frame.Get(Field::Address),
                                    frame.GetByte(Field::ClearBits), frame.GetByte(Field::SetBits)));
}

DspMemory* FindDsp(const CommandFrame& frame, UnitBoards& boards) {
    const std::uint32_t index = frame.Get(Field::Dsp);
    return index < boards.dsps.size() ? &boards.dsps[index] : nullptr;
}

// Runs an operation on the word that a command names, if there is such a word.
template<typename Operation>
Outcome WithDspWord(const CommandFrame& frame, UnitBoards& boards, Operation operation) {
    DspMemory* dsp = FindDsp(frame, boards);
    if (dsp == nullptr) {
        return From(UnitError::UnknownDsp);
    }
    const std::uint8_t space = frame.GetByte(Field::Space);
    const std::uint32_t address = frame.Get(Field::Address);
    const UnitError error = DspMemory::Check(space, address, 1);
    if (error != UnitError::None) {
        return From(error);
    }
    std::uint32_t word = dsp->Get(space, address);
    Outcome outcome = operation(word);
    dsp->Put(space, address, word);
    return outcome;
}

Outcome DspGetMem(const CommandFrame& frame, UnitBoards& boards) {
    return WithDspWord(frame, boards, [](std::uint32_t& word) { return Outcome::Value(word); });
}

Outcome DspPutMem(const CommandFrame& frame, UnitBoards& boards) {
    return WithDspWord(frame, boards, [&frame](std::uint32_t& word) {
        word = frame.Get(Field::Value);
        return Outcome{};
    });
}

Outcome DspGetBit(const CommandFrame& frame, UnitBoards& boards) {
    return WithDspWord(frame, boards, [&frame](std::uint32_t& word) {
        return Outcome::ByteValue((word & frame.Get(Field::Mask)) != 0 ? 1 : 0);
    });
}

Outcome DspPutBit(const CommandFrame& frame, UnitBoards& boards) {
    return WithDspWord(frame, boards, [&frame](std::uint32_t& word) {
        const std::uint32_t mask = frame.Get(Field::Mask);
        word = frame.Get(Field::Value) != 0 ? word | mask : word & ~mask;
        return Outcome{};
    });
}

Outcome DspGetBlock(const CommandFrame& frame, UnitBoards& boards) {
    DspMemory* dsp = FindDsp(frame, boards);
    if (dsp == nullptr) {
        return From(UnitError::UnknownDsp);
    }
    ByteVector bytes;
    const UnitError error =
        dsp->ReadBlock(frame.GetByte(Field::Space), frame.Get(Field::Address), frame.inLength, bytes);
    return error == UnitError::None ? Outcome::Data(std::move(bytes)) : From(error);
}

Outcome DspPutBlock(const CommandFrame& frame, UnitBoards& boards) {
    DspMemory* dsp = FindDsp(frame, boards);
    return From(dsp == nullptr
                    ? UnitError::UnknownDsp
                    : dsp->WriteBlock(frame.GetByte(Field::Space), frame.Get(Field::Address), frame.outData));
}

Outcome DspFill(const CommandFrame& frame, UnitBoards& boards) {
    DspMemory* dsp = FindDsp(frame, boards);
    return From(dsp == nullptr ? UnitError::UnknownDsp
                               : dsp->Fill(frame.GetByte(Field::Space), frame.Get(Field::Address),
                                           frame.Get(Field::Length), frame.Get(Field::Value)));
}

Outcome DspCommand(const CommandFrame& frame, UnitBoards& boards) {
    if (FindDsp(frame, boards) == nullptr) {
        return From(UnitError::UnknownDsp);
    }
    if (frame.Get(Field::Value) == kCommandClearHf2) {
        boards.micro.Modify('X', kHf2Address[frame.Get(Field::Dsp)], kHf2Mask, 0);
    }
    return {};
}

Outcome Store(const CommandFrame& frame, UnitBoards& boards, std::uint8_t which) {
    if (frame.outData.empty()) {
        return From(UnitError::EmptyImage);
    }
    boards.images.Add({frame.Code(), which, frame.outData});
    return {};
}

Outcome DspLoad(const CommandFrame& frame, UnitBoards& boards) {
    if (FindDsp(frame, boards) == nullptr) {
        return From(UnitError::UnknownDsp);
    }
    return Store(frame, boards, frame.GetByte(Field::Dsp));
}

// The image of the micro-controller, or of the gate array, which needs no selector.
Outcome Load(const CommandFrame& frame, UnitBoards& boards) {
    return Store(frame, boards, frame.GetByte(Field::Selector));
}

struct Handler {
    CommandCode code;
    Outcome (*execute)(const CommandFrame& frame, UnitBoards& boards);
};

constexpr Handler kHandlers[] = {
    {CommandCode::Initialise, Initialise},
    {CommandCode::Terminate, Terminate},
    {CommandCode::MicroGetMem, MicroGetMem},
    {CommandCode::MicroGetBit, MicroGetBit},
    {CommandCode::DspGetMem, DspGetMem},
    {CommandCode::DspGetBit, DspGetBit},
    {CommandCode::MicroPutMem, MicroPutMem},
    {CommandCode::MicroPutBit, MicroPutBit},
    {CommandCode::DspPutMem, DspPutMem},
    {CommandCode::DspPutBit, DspPutBit},
    {CommandCode::MicroGetBlock, MicroGetBlock},
    {CommandCode::DspGetBlock, DspGetBlock},
    {CommandCode::MicroPutBlock, MicroPutBlock},
    {CommandCode::DspPutBlock, DspPutBlock},
    {CommandCode::MicroFill, MicroFill},
    {CommandCode::DspFill, DspFill},
    {CommandCode::MicroWaitBit, MicroGetBit},
    {CommandCode::DspWaitBit, DspGetBit},
    {CommandCode::MicroLoad, Load},
    {CommandCode::FpgaLoad, Load},
    {CommandCode::DspLoad, DspLoad},
    {CommandCode::General, ExecuteGeneral},
    {CommandCode::DspCommand, DspCommand},
    {CommandCode::MicroPutBits, MicroPutBits},
};

} // namespace

CommandOutcome ExecuteCommand(const CommandFrame& frame, UnitBoards& boards) {
    const auto* handler =
        std::find_if(std::begin(kHandlers), std::end(kHandlers),
                     [&frame](const Handler& row) { return row.code == frame.shape->code; });
    return handler->execute(frame, boards); // every shape in the command table has its handler
}

} // namespace kalvio::simulator
