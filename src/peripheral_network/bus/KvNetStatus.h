#pragma once

// What is known of one peripheral: its address and the status that it last told.

#include "peripheral_network/bus/KvNetErrors.h"
#include "platform/Automation.h"
#include "platform/Export.h"

#include <cstdint>
#include <span>

class CArchive;

namespace kalvio {

inline constexpr std::uint8_t kClassTypeIOSwitcher = 0x11;
inline constexpr std::uint8_t kClassTypeKedaAdapter = 0x21;
inline constexpr std::uint8_t kClassSwitcher = 1;
inline constexpr std::uint8_t kClassFormatConverter = 2;
inline constexpr std::size_t kStatusDataBytes = 3;

// The status word of the three data bytes of a status or reset answer (class and type, versions, flags). A
// format converter of type 1 whose hardware version reads 15 counts as version 0. Any thread.
[[nodiscard]] KALVIO_API std::uint32_t PackStatusWord(std::span<const std::uint8_t, kStatusDataBytes> data);

inline constexpr std::uint8_t kDeviceAddresses = 64; // 0 to 63

// 0 to 63 of a text of decimal digits, read as far as they go, after trimming the text in place; 254 for an
// empty text and any other number. The other way round: empty for no device address. Any thread.
[[nodiscard]] KALVIO_API std::uint8_t StringToAddress(CString& text);
[[nodiscard]] KALVIO_API CString AddressToString(std::uint8_t address);

} // namespace kalvio

// A value; user-interface thread. The status word is the class-type byte in bits 0 to 7 (class in the high
// nibble), the version byte in bits 8 to 15 (hardware in the low nibble, firmware in the high one, each
// shown as a letter from 'A'), the flags in bits 16 to 23 (bit 16: on, else in standby), 0 above.
class KALVIO_API CKvNetStatus {
public:
    CKvNetStatus() = default; // no device: address 254, status word 0
    CKvNetStatus(std::uint8_t address, std::uint32_t statusWord);
    CKvNetStatus(std::uint8_t address, const VARIANT& statusWord); // a 32-bit integer
    CKvNetStatus(const CKvNetStatus&) = default;
    CKvNetStatus& operator=(const CKvNetStatus&) = default;
    virtual ~CKvNetStatus() = default;

    // One byte of address and the status word as 32 bits, little-endian.
    virtual void Serialize(CArchive& archive);

    void Set(std::uint8_t address, std::uint32_t statusWord);
    void Set(std::uint8_t address, const VARIANT& statusWord);
    void SetOn(bool on);

    [[nodiscard]] std::uint8_t GetAddress() const { return m_address; }
    [[nodiscard]] std::uint32_t GetStatusWord() const { return m_statusWord; }
    [[nodiscard]] std::uint8_t GetDeviceClassType() const;
    [[nodiscard]] std::uint8_t GetDeviceClass() const;
    [[nodiscard]] std::uint8_t GetDeviceType() const;
    [[nodiscard]] std::uint8_t GetHardwareVersion() const;
    [[nodiscard]] std::uint8_t GetFirmwareVersion() const;
    [[nodiscard]] bool IsOn() const;

    // "Switcher", "Format converter" or "Unknown"; "I/O Switcher", "KEDA Adapter" or "Unknown".
    [[nodiscard]] CString ClassName() const;
    [[nodiscard]] CString TypeName() const;

private:
    std::uint8_t m_address = KVNET_ADDRESS_NONE;
    std::uint32_t m_statusWord = 0;
};
