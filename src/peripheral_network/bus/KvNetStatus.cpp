#include "peripheral_network/bus/KvNetStatus.h"

#include "platform/Archive.h"

namespace {

constexpr std::uint32_t kOnBit = 0x10000;
constexpr unsigned kVersionShift = 8;
constexpr unsigned kFlagsShift = 16;
constexpr std::uint8_t kNoHardwareVersion = 0x0F; // what unprogrammed adapters tell

std::uint32_t WordOf(const VARIANT& value) {
    std::int32_t word = 0;
    value.Get(word);
    return static_cast<std::uint32_t>(word);
}

} // namespace

std::uint32_t kalvio::PackStatusWord(std::span<const std::uint8_t, kStatusDataBytes> data) {
    std::uint32_t version = data[1];
    if (data[0] == kClassTypeKedaAdapter && (version & kNoHardwareVersion) == kNoHardwareVersion) {
        version &= 0xF0U;
    }
    return data[0] | version << kVersionShift | std::uint32_t{data[2]} << kFlagsShift;
}

std::uint8_t kalvio::StringToAddress(CString& text) {
    text = Trim(text);
    if (text.empty()) {
        return KVNET_ADDRESS_NONE;
    }
    const int number = ParseLeadingInt(text);
    return number >= 0 && number < kDeviceAddresses ? static_cast<std::uint8_t>(number) : KVNET_ADDRESS_NONE;
}

CString kalvio::AddressToString(std::uint8_t address) {
    return address < kDeviceAddresses ? Format("%d", address) : CString();
}

CKvNetStatus::CKvNetStatus(std::uint8_t address, std::uint32_t statusWord)
    : m_address(address), m_statusWord(statusWord) {}

CKvNetStatus::CKvNetStatus(std::uint8_t address, const VARIANT& statusWord)
    : m_address(address), m_statusWord(WordOf(statusWord)) {}

void CKvNetStatus::Serialize(CArchive& archive) {
    if (archive.IsStoring()) {
        archive.WriteByte(m_address);
        archive.WriteUInt32(m_statusWord);
    } else {
        const std::uint8_t address = archive.ReadByte();
        Set(address, archive.ReadUInt32());
    }
}

void CKvNetStatus::Set(std::uint8_t address, std::uint32_t statusWord) {
    m_address = address;
    m_statusWord = statusWord;
}

void CKvNetStatus::Set(std::uint8_t address, const VARIANT& statusWord) {
    Set(address, WordOf(statusWord));
}

void CKvNetStatus::SetOn(bool on) {
    m_statusWord = on ? m_statusWord | kOnBit : m_statusWord & ~kOnBit;
}

std::uint8_t CKvNetStatus::GetDeviceClassType() const {
    return static_cast<std::uint8_t>(m_statusWord);
}

std::uint8_t CKvNetStatus::GetDeviceClass() const {
    return static_cast<std::uint8_t>(GetDeviceClassType() >> 4U);
}

std::uint8_t CKvNetStatus::GetDeviceType() const {
    return static_cast<std::uint8_t>(GetDeviceClassType() & 0x0FU);
}

std::uint8_t CKvNetStatus::GetHardwareVersion() const {
    return static_cast<std::uint8_t>(m_statusWord >> kVersionShift & 0x0FU);
}

std::uint8_t CKvNetStatus::GetFirmwareVersion() const {
    return static_cast<std::uint8_t>(m_statusWord >> (kVersionShift + 4) & 0x0FU);
}

bool CKvNetStatus::IsOn() const {
    return (m_statusWord & kOnBit) != 0;
}

CString CKvNetStatus::ClassName() const {
    switch (GetDeviceClass()) {
    case kalvio::kClassSwitcher:
        return kalvio::LoadText(kTextClassSwitcher);
    case kalvio::kClassFormatConverter:
        return kalvio::LoadText(kTextClassFormatConverter);
    default:
        return kalvio::LoadText(kTextClassUnknown);
    }
}

CString CKvNetStatus::TypeName() const {
    switch (GetDeviceClassType()) {
    case kalvio::kClassTypeIOSwitcher:
        return kalvio::LoadText(kTextTypeIOSwitcher);
    case kalvio::kClassTypeKedaAdapter:
        return kalvio::LoadText(kTextTypeKedaAdapter);
    default:
        return kalvio::LoadText(kTextClassUnknown);
    }
}
