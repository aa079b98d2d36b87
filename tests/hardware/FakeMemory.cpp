#include "hardware/FakeMemory.h"

#include <algorithm>
#include <numeric>

namespace kalvio::test {

namespace {

constexpr std::int16_t kRefused = 0x0101;

} // namespace

std::vector<std::uint8_t> MakeImage(std::span<const std::uint8_t> bytes, std::size_t at) {
    std::vector<std::uint8_t> image(kImageBytes);
    std::copy(bytes.begin(), bytes.end(), image.begin() + static_cast<std::ptrdiff_t>(at));
    const unsigned sum = std::accumulate(bytes.begin(), bytes.end(), 0U) % 65535;
    image[0] = static_cast<std::uint8_t>(sum);
    image[1] = static_cast<std::uint8_t>(sum / 256);
    return image;
}

std::size_t FakeMemory::SetPointer(const std::uint8_t* bytes) {
    m_pointer = addressBytes == 2 ? bytes[0] * 256U + bytes[1] : bytes[0];
    return addressBytes;
}

std::int16_t FakeMemory::PutByte(std::uint8_t device, std::uint8_t value) {
    return PutBlock(device, &value, 1, false);
}

std::int16_t FakeMemory::PutBlock(std::uint8_t device, const std::uint8_t* block, std::uint32_t length,
                                  bool checked) {
    devices.push_back(device);
    (checked ? checkedWrites : pointers).emplace_back(block, block + length);
    const std::size_t skipped = SetPointer(block);
    if (checked && unwritableFrom && m_pointer >= *unwritableFrom) {
        return kRefused;
    }
    if (!writeProtected) {
        std::copy(block + skipped, block + length, m_bytes.begin() + static_cast<std::ptrdiff_t>(m_pointer));
    }
    return 0;
}

std::int16_t FakeMemory::GetBlock(std::uint8_t device, std::uint8_t* block, std::uint32_t length) {
    devices.push_back(device);
    if (unreadableFrom && m_pointer >= *unreadableFrom) {
        return kRefused;
    }
    std::copy_n(m_bytes.begin() + static_cast<std::ptrdiff_t>(m_pointer), length, block);
    m_pointer += length;
    return 0;
}

std::int16_t FakeMemory::ReadStatusRegister(std::uint16_t address, std::uint8_t& value) {
    value = address == 0x8000 ? version : options;
    return registerStatus;
}

std::int16_t FakeMemory::ReadAnalogueRegister(char reg, std::uint8_t& value) {
    value = reg == 'p' ? version : options;
    return registerStatus;
}

void FakeMemory::Put(std::size_t at, std::span<const std::uint8_t> image) {
    std::copy(image.begin(), image.end(), m_bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

std::vector<std::uint8_t> FakeMemory::Image(std::size_t at) const {
    const auto* first = m_bytes.data() + at;
    return {first, first + kImageBytes};
}

int FakeMemory::Initialise(CCalibrationTable& table, std::uint8_t device) {
    const auto records = MainBoardRecords();
    return table.InitialiseTable(device, 32, static_cast<std::uint8_t>(addressBytes), 512, kMirror, kMaster,
                                 records.data(), static_cast<int>(records.size()));
}

} // namespace kalvio::test
