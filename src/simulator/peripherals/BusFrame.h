#pragma once

// Frames of the peripheral bus: 0x55, address, number of data bytes, command, data, checksum, terminator.

#include "simulator/Bytes.h"

#include <string>

namespace kalvio::simulator {

inline constexpr std::size_t kFramingBytes = 6;
inline constexpr std::uint8_t kBroadcastAddress = 255;
inline constexpr std::uint8_t kLastPeripheralAddress = 63;
inline constexpr std::uint8_t kCommandStatus = 0x00;
inline constexpr std::uint8_t kCommandReset = 0xFF;
inline constexpr std::uint8_t kCommandWriteSector = 0xB1;

// A frame that wants an answer, or is one.
ByteVector MakeFrame(std::uint8_t address, std::uint8_t command, ByteView data);

// What is wrong with a frame; empty when it is sound.
std::string FrameFault(ByteView frame);

// Whether a device has to listen to a frame, sound or not: it is for its address or for all.
bool IsFor(ByteView frame, std::uint8_t address);
// Of a sound frame.
bool WantsAnswer(ByteView frame);
// The data bytes of a sound frame.
ByteView FrameData(ByteView frame);

// Gives a frame that was changed its right checksum again.
void Seal(ByteVector& frame);
// Spoils the first data byte, or the command of a frame without data; the frame stays sound.
void InvertEcho(ByteVector& frame);

} // namespace kalvio::simulator
