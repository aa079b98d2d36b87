#pragma once

// The control registers of a KEDA adapter: their bytes, the groups that are sent with one command each, and
// the fields within them.

#include "peripheral_network/bus/KvNetExchange.h"

#include <array>
#include <cstdint>

namespace kalvio::keda {

// The bytes of the image, in the order of the archive. The I2C slave address is no register of the unit's.
enum Byte : std::size_t {
    kRelayControl,
    kIOControl,
    kGenFormat1,
    kGenFormat2,  // lead pad, bits
    kGenFormat3,  // trail pad, bits
    kGenRouting1, // slots 8 to 15: routed
    kGenRouting2, // slots 0 to 7: routed
    kGenRouting3, // slots 8 to 15: carries channel B
    kGenRouting4, // slots 0 to 7: carries channel B
    kGenClocks1,
    kGenClocks2,
    kAnaRoutingA,
    kAnaRoutingB,
    kAnaFormat1,
    kAnaFormat2,
    kAnaFormat3,
    kAnaClocks1,
    kAnaClocks2,
    kDelays,
    kControlMode,
    kSlaveAddress,
    kByteCount
};

using Image = std::array<std::uint8_t, kByteCount>;

inline constexpr Image kDefaults{0x00, 0x00, 0x30, 0x00, 0x08, 0x00, 0xFF, 0x00, 0xAA, 0x80, 0x00,
                                 0x00, 0x01, 0x30, 0x00, 0x08, 0x80, 0x80, 0x21, 0x06, 0x00};

enum Direction : std::size_t { kGenerator, kAnalyser };

// One group of registers: its command and where its bytes stand.
struct Group {
    const char* operation; // its name line in the trace
    KvNetCommand command;
    Byte first;
};

inline constexpr Group kRelayGroup{"CKEDAAdapter::UpdateRelayCtrl\n", {0xC1, 1, 0}, kRelayControl};
inline constexpr Group kIOGroup{"CKEDAAdapter::UpdateIOCtrl\n", {0xC2, 1, 0}, kIOControl};
inline constexpr Group kGenRoutingGroup{"CKEDAAdapter::UpdateGenRouting\n", {0xC3, 4, 0}, kGenRouting1};
inline constexpr Group kAnaRoutingGroup{"CKEDAAdapter::UpdateAnaRouting\n", {0xC6, 2, 0}, kAnaRoutingA};
inline constexpr Group kControlGroup{"CKEDAAdapter::UpdateCtrlMode\n", {0xC9, 1, 0}, kControlMode};
inline constexpr Group kDelaysGroup{"CKEDAAdapter::UpdateDelays\n", {0xCE, 1, 0}, kDelays};
inline constexpr std::array<Group, 2> kFormatGroups{
    {{"CKEDAAdapter::UpdateGenAnaFormat\n", {0xC4, 3, 0}, kGenFormat1},
     {"CKEDAAdapter::UpdateGenAnaFormat\n", {0xC7, 3, 0}, kAnaFormat1}}};
inline constexpr std::array<Group, 2> kClockGroups{
    {{"CKEDAAdapter::UpdateGenAnaClocks\n", {0xC5, 2, 0}, kGenClocks1},
     {"CKEDAAdapter::UpdateGenAnaClocks\n", {0xC8, 2, 0}, kAnaClocks1}}};

inline constexpr KvNetCommand kReadStatus{0xC0, 0, 20};
inline constexpr KvNetCommand kReadFrameClocks{0xCD, 0, 1};
inline constexpr std::uint8_t kSpiTransfer = 0xCA;
inline constexpr std::uint8_t kI2cTransfer = 0xCB;

// The answer to kReadStatus: what each of its data bytes is, kByteCount for what is not used.
inline constexpr std::array<Byte, 19> kStatusOrder{
    kRelayControl, kIOControl,  kGenRouting1, kGenRouting2, kGenRouting3, kGenRouting4, kGenFormat1,
    kGenFormat2,   kGenFormat3, kGenClocks1,  kGenClocks2,  kByteCount,   kByteCount,   kAnaFormat1,
    kAnaFormat2,   kAnaFormat3, kAnaClocks1,  kAnaClocks2,  kControlMode};

// Some bits of one byte.
struct BitField {
    Byte byte;
    unsigned shift;
    unsigned width;

    [[nodiscard]] constexpr unsigned Mask() const { return ((1U << width) - 1U) << shift; }
    [[nodiscard]] constexpr int Get(const Image& image) const {
        return static_cast<int>((image[byte] & Mask()) >> shift);
    }
    constexpr void Set(Image& image, int value) const {
        const unsigned kept = image[byte] & ~Mask();
        image[byte] = static_cast<std::uint8_t>(kept | (static_cast<unsigned>(value) << shift & Mask()));
    }
};

inline constexpr BitField kRefThroughAdapter{kRelayControl, 0, 1}; // a clear bit bypasses the adapter
inline constexpr BitField kAnaThroughAdapter{kRelayControl, 1, 1};
inline constexpr BitField kGenThroughAdapter{kRelayControl, 2, 1};
inline constexpr BitField kAudioVoltage{kIOControl, 0, 3};
inline constexpr BitField kAudioOn{kIOControl, 3, 1};
inline constexpr BitField kCtrlVoltage{kIOControl, 4, 3};
inline constexpr BitField kCtrlOn{kIOControl, 7, 1};
inline constexpr BitField kPortMode{kControlMode, 0, 1};
inline constexpr BitField kSpiPhase{kControlMode, 1, 1};
inline constexpr BitField kSpiPolarity{kControlMode, 2, 1};

// The fields that both directions have; [kGenerator], [kAnalyser].
using FieldPair = std::array<BitField, 2>;
inline constexpr FieldPair kSlotsPerWire{{{kGenFormat1, 0, 2}, {kAnaFormat1, 0, 2}}};
inline constexpr FieldPair kLsbFirst{{{kGenFormat1, 3, 1}, {kAnaFormat1, 3, 1}}};
inline constexpr FieldPair kSlotLength{{{kGenFormat1, 4, 2}, {kAnaFormat1, 4, 2}}};
inline constexpr FieldPair kSignExtend{{{kGenFormat1, 7, 1}, {kAnaFormat1, 7, 1}}};
inline constexpr FieldPair kLeadPad{{{kGenFormat2, 0, 8}, {kAnaFormat2, 0, 8}}};
inline constexpr FieldPair kTrailPad{{{kGenFormat3, 0, 8}, {kAnaFormat3, 0, 8}}};
inline constexpr FieldPair kMultiplier{{{kGenClocks1, 0, 3}, {kAnaClocks1, 0, 3}}};
inline constexpr FieldPair kMasterIn{{{kGenClocks1, 6, 1}, {kAnaClocks1, 6, 1}}};
inline constexpr FieldPair kMasterNotOut{{{kGenClocks1, 7, 1}, {kAnaClocks1, 7, 1}}};
inline constexpr FieldPair kFrameInvert{{{kGenClocks2, 3, 1}, {kAnaClocks2, 3, 1}}};
inline constexpr FieldPair kFrameEarly{{{kGenClocks2, 4, 1}, {kAnaClocks2, 4, 1}}};
inline constexpr FieldPair kFrame1Bit{{{kGenClocks2, 5, 1}, {kAnaClocks2, 5, 1}}};
inline constexpr FieldPair kBitInvert{{{kGenClocks2, 6, 1}, {kAnaClocks2, 6, 1}}};
inline constexpr FieldPair kSerialIn{{{kGenClocks2, 7, 1}, {kAnaClocks2, 7, 1}}};
inline constexpr FieldPair kRateCode{{{kGenClocks2, 0, 3}, {kAnaClocks2, 0, 3}}};
inline constexpr FieldPair kDelayCode{{{kDelays, 0, 3}, {kDelays, 4, 3}}};

// What the codes stand for.
inline constexpr std::array kSlotLengths{8, 16, 24, 32}; // bits
inline constexpr std::array kSlotCounts{2, 4, 8, 16};    // per wire
inline constexpr std::array kWireCounts{4, 4, 2, 1};     // by the code of the slots per wire
inline constexpr std::array kMultipliers{64, 96, 128, 192, 256, 384, 512, 64};
inline constexpr std::array kFrameRates{0, 32000, 44100, 48000, 88200, 96000, 176400, 192000}; // hertz
inline constexpr std::array kDelayTimes{0, 35, 28, 21, 14, 7, 0, -7};                          // nanoseconds

} // namespace kalvio::keda
