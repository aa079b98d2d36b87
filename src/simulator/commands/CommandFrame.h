#pragma once

// One command as it came over the wire: a header that passed every check, and its out data.

#include "simulator/Bytes.h"
#include "simulator/commands/CommandTable.h"

#include <optional>
#include <string>

namespace kalvio::simulator {

struct CommandFrame {
    const CommandShape* shape = nullptr;
    ByteVector parameters; // header bytes from offset 16
    ByteVector outData;
    std::uint32_t outLength = 0; // as the header declares them
    std::uint32_t inLength = 0;
    std::uint32_t tick = 0; // unit clock when the header arrived

    [[nodiscard]] std::uint32_t Code() const { return static_cast<std::uint32_t>(shape->code); }
    // The value of a parameter; 0 for one that the command does not have.
    [[nodiscard]] std::uint32_t Get(Field field) const;
    [[nodiscard]] std::uint8_t GetByte(Field field) const { return static_cast<std::uint8_t>(Get(field)); }
};

// The command code that a header announces; 0 for bytes that are not a header.
std::uint32_t AnnouncedCommand(ByteView header);

// A frame without its out data, or what is wrong with the header.
std::optional<CommandFrame> ParseHeader(ByteView header, std::string& complaint);

} // namespace kalvio::simulator
