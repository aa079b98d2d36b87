#pragma once

// A serial memory on a bus of its own: address pointer, page write, write protect, damage.

#include "hardware/CalibrationTable.h"
#include "platform/Clock.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kalvio::test {

inline constexpr std::size_t kImageBytes = 640; // 512 bytes of data
inline constexpr std::size_t kMirror = 0;
inline constexpr std::size_t kMaster = 2048;

// An image of zeroes but for these bytes, with its checksum.
[[nodiscard]] std::vector<std::uint8_t> MakeImage(std::span<const std::uint8_t> bytes, std::size_t at = 128);

class FakeMemory final : public MemoryAccess {
public:
    [[nodiscard]] bool IsUnitPresent() const override { return present; }
    std::int16_t PutByte(std::uint8_t device, std::uint8_t value) override;
    std::int16_t PutBlock(std::uint8_t device, const std::uint8_t* block, std::uint32_t length,
                          bool checked) override;
    std::int16_t GetBlock(std::uint8_t device, std::uint8_t* block, std::uint32_t length) override;
    std::int16_t ReadStatusRegister(std::uint16_t address, std::uint8_t& value) override;
    std::int16_t ReadAnalogueRegister(char reg, std::uint8_t& value) override;

    void Put(std::size_t at, std::span<const std::uint8_t> image);
    [[nodiscard]] std::vector<std::uint8_t> Image(std::size_t at) const;
    // Gives the table the main board's geometry over this memory.
    int Initialise(CCalibrationTable& table, std::uint8_t device = kMainBoardMemory);

    bool present = true;
    bool writeProtected = false;
    std::size_t addressBytes = 2;
    std::optional<std::size_t> unreadableFrom; // reads at and above this address fail
    std::optional<std::size_t> unwritableFrom;
    std::int16_t registerStatus = 0;
    std::uint8_t version = 0x23; // of either board
    std::uint8_t options = 0x45;

    std::vector<std::uint8_t> devices;                    // of every access
    std::vector<std::vector<std::uint8_t>> pointers;      // unchecked writes: the address pointer
    std::vector<std::vector<std::uint8_t>> checkedWrites; // address and data

private:
    std::size_t SetPointer(const std::uint8_t* bytes);
    std::array<std::uint8_t, 4096> m_bytes{};
    std::size_t m_pointer = 0;
};

} // namespace kalvio::test
