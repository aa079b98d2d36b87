// A calibration table over a memory that holds and answers anything.

#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "hardware/CalibrationTable.h"
#include "support/TestHost.h"

#include <cmath>
#include <numeric>

namespace {

using namespace kalvio;
using fuzz::Require;

constexpr std::size_t kMirror = 0;
constexpr std::size_t kMaster = 2048;
constexpr std::size_t kImageBytes = 640;

enum Option : std::uint8_t {
    kUnitPresent = 1,
    kAnswerYes = 2,
    kRightMirror = 4,
    kRightMaster = 8,
    kOddGeometry = 16,
    kAnalogueBoard = 32,
};

// A memory that wraps around; every access may fail.
class AnyMemory final : public MemoryAccess {
public:
    AnyMemory(bool present, std::uint8_t failEvery) : m_present(present), m_failEvery(failEvery) {}

    [[nodiscard]] bool IsUnitPresent() const override { return m_present; }
    std::int16_t PutByte(std::uint8_t device, std::uint8_t value) override {
        return PutBlock(device, &value, 1, false);
    }
    std::int16_t PutBlock(std::uint8_t, const std::uint8_t* block, std::uint32_t length, bool) override {
        const std::uint32_t addressBytes = std::min<std::uint32_t>(length, 2);
        m_pointer = std::accumulate(block, block + addressBytes, std::size_t{0},
                                    [](std::size_t sum, std::uint8_t byte) { return sum * 256 + byte; });
        for (std::uint32_t i = addressBytes; i < length; ++i) {
            Next() = block[i];
        }
        return Status();
    }
    std::int16_t GetBlock(std::uint8_t, std::uint8_t* block, std::uint32_t length) override {
        std::generate_n(block, length, [this] { return Next(); });
        return Status();
    }
    std::int16_t ReadStatusRegister(std::uint16_t, std::uint8_t& value) override {
        value = 0x21;
        return Status();
    }
    std::int16_t ReadAnalogueRegister(char, std::uint8_t& value) override {
        value = 0x12;
        return Status();
    }

    // An image at its place, with the checksum that belongs to it if asked.
    void Put(std::size_t at, std::span<const std::uint8_t> image, bool right) {
        std::ranges::copy(image, m_bytes.begin() + static_cast<std::ptrdiff_t>(at));
        if (right) {
            const auto first = m_bytes.begin() + static_cast<std::ptrdiff_t>(at);
            PutLittle16(&*first, static_cast<std::uint16_t>(
                                     std::accumulate(first + 2, first + kImageBytes, 0U) % 65535));
        }
    }

private:
    std::uint8_t& Next() { return m_bytes[m_pointer++ % m_bytes.size()]; }
    std::int16_t Status() {
        ++m_accesses;
        return m_failEvery != 0 && m_accesses % m_failEvery == 0 ? std::int16_t{0x0101} : std::int16_t{0};
    }

    std::array<std::uint8_t, 4096> m_bytes{};
    std::size_t m_pointer = 0;
    unsigned m_accesses = 0;
    bool m_present;
    unsigned m_failEvery; // 0: none fails
};

void CheckReading(const CCalibrationTable& table, std::span<const CalibTableRecord> records) {
    for (int id = -1; id <= static_cast<int>(records.size()); ++id) {
        Require(std::isfinite(table.GetCalibrationValueForID(id)), "an entry is a number");
    }
    for (const int offset : {-1, 0, 1, 30, 255, 511, 512, 65535, std::numeric_limits<int>::max()}) {
        Require(std::isfinite(table.GetCalibrationValue(offset)), "an entry is a number");
        static_cast<void>(table.GetCalibrationByte(offset));
        static_cast<void>(table.GetByte(offset));
        for (const int length : {-1, 0, 32, std::numeric_limits<int>::max()}) {
            Require(table.GetCalibrationString(offset, length).size() <= 32,
                    "a text is at most 32 characters");
        }
    }
    std::array<VARIANT, 6> date;
    Require(table.GetCalibrationDate(&date[0], &date[1], &date[2], &date[3], &date[4], &date[5]) == 1,
            "a date can be read");
    Require(table.GetCalibrationOrganisation().size() <= 32 && table.GetCalibrationOperator().size() <= 32 &&
                table.GetSoftwareVersionLetter().size() <= 1,
            "a header text keeps its length");
    static_cast<void>(table.GetCalibrationVersion());
    static_cast<void>(table.GetSoftwareVersion());
    static_cast<void>(table.GetUnitSerialNum());
}

void Change(CCalibrationTable& table, fuzz::FuzzInput& input) {
    table.SetCalibrationValue(static_cast<int>(input.Word()) - 16, input.Real());
    table.SetCalibrationString(static_cast<int>(input.Word()) - 16, static_cast<int>(input.Long()),
                               input.Text());
    table.SetCalibrationByte(static_cast<int>(input.Word()) - 16, input.Byte());
    table.SetCalibrationOperator(input.Text());
    table.SetCalibrationOrganisation(input.Text());
    table.SetCalibrationVersion(input.Word());
    table.SetUnitSerialNum(input.Word());
    table.WriteTable();
    table.WriteMasterTable();
    table.CopyMasterToMirror();
}

} // namespace

std::vector<kalvio::fuzz::Bytes> kalvio::fuzz::Seeds() {
    std::vector<Bytes> seeds;
    for (const int options : {kUnitPresent | kRightMirror, kUnitPresent | kAnswerYes | kRightMaster,
                              kUnitPresent | kAnalogueBoard, kUnitPresent | kOddGeometry, 0}) {
        for (const int failEvery : {0, 3, 90}) {
            Bytes seed(2 + 2 * kImageBytes + 64, 0x20);
            seed[0] = static_cast<std::uint8_t>(options);
            seed[1] = static_cast<std::uint8_t>(failEvery);
            seeds.push_back(seed);
        }
    }
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    test::TestHost host;
    fuzz::FuzzInput input(data, size);
    const std::uint8_t options = input.Byte();
    AnyMemory memory((options & kUnitPresent) != 0, input.Byte());
    memory.Put(kMirror, input.Take(kImageBytes), (options & kRightMirror) != 0);
    memory.Put(kMaster, input.Take(kImageBytes), (options & kRightMaster) != 0);
    if ((options & kAnswerYes) != 0) {
        host.user.QueueAnswer(BoxAnswer::Yes);
    }
    const bool isMain = (options & kAnalogueBoard) == 0;
    const auto records = isMain ? MainBoardRecords() : AnalogueBoardRecords();
    const bool odd = (options & kOddGeometry) != 0;
    const std::uint8_t pageBytes = odd ? input.Byte() : std::uint8_t{32};
    const std::uint8_t addressBytes = odd ? input.Byte() : std::uint8_t{2};
    const std::uint16_t dataBytes =
        odd ? static_cast<std::uint16_t>(input.Word() % 4096) : std::uint16_t{512};
    CCalibrationTable table(memory);
    const int made =
        table.InitialiseTable(isMain ? kMainBoardMemory : kAnalogueBoardMemory, pageBytes, addressBytes,
                              dataBytes, kMirror, kMaster, records.data(), static_cast<int>(records.size()));
    Require(made == (pageBytes != 0 ? 1 : 0), "only a page size of 0 is refused");
    CheckReading(table, records);
    Change(table, input);
    CheckReading(table, records);
    return 0;
}
