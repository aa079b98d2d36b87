// Firmware files: whatever they hold, the device gets records in order, and all of them when the download
// says so.

#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "peripheral_network/FirmwareDownload.h"

namespace {

using namespace kalvio;
using fuzz::Require;

class QuietProgress final : public ProgressDisplay {
public:
    void GoModal(const CString&) override {}
    void SetRange(int low, int high, int) override { Require(low == 0 && high >= 0, "a range is a range"); }
    void SetText(const CString& text) override { Require(!text.empty(), "progress has a text"); }
    void SetPos(int position) override { Require(position >= 0, "no position is before the start"); }
    void StepIt() override {}
    void PeekAndPump(bool) override {}
    [[nodiscard]] bool Cancelled() const override { return false; }
};

fuzz::Bytes File(int sectors, int blocksOfLast) {
    fuzz::Bytes file{1,   'K', 'v', '-', 'N', 'E', 'T', ' ', 'D', 'O',
                     'W', 'N', 'L', 'O', 'A', 'D', 0,   0,   0,   0x21};
    file.resize(1 + kFirmwareHeaderBytes);
    for (int sector = 1; sector <= sectors; ++sector) {
        const int blocks = sector == sectors ? blocksOfLast : kBlocksPerSector;
        for (int block = 0; block < blocks; ++block) {
            file.push_back(static_cast<std::uint8_t>(sector << 4 | block >> 8));
            file.push_back(static_cast<std::uint8_t>(block));
            file.insert(file.end(), kFirmwareDataBytes, static_cast<std::uint8_t>(block * 7 + sector));
        }
    }
    return file;
}

} // namespace

// The first byte says after how many records each write fails once; 0 and 1: none does.
std::vector<kalvio::fuzz::Bytes> kalvio::fuzz::Seeds() {
    std::vector<Bytes> seeds{File(1, 3), File(2, 5), File(1, 20), File(4, 1)};
    seeds[1][0] = 200;
    seeds[2][0] = 7;
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FuzzInput input(data, size);
    const int failEvery = input.Byte();
    const auto content = input.Rest();
    FirmwareFile file(content);
    if (file.CheckHeader()) {
        return 0;
    }
    const FirmwareContent inside = InspectFirmware(file);
    file.Seek(kFirmwareHeaderBytes);
    std::vector<FirmwareRecord> stored;
    int writes = 0;
    QuietProgress progress;
    const DownloadResult result = SendRecords(
        file,
        [&](const FirmwareRecord& record) {
            Require(record.Sector() != 0 && record.Sector() != 4, "no forbidden sector is sent");
            if (failEvery > 1 && ++writes % failEvery == 0) {
                return false;
            }
            // A sector that is sent again replaces what it left.
            std::erase_if(stored, [&](const FirmwareRecord& old) {
                return old.Sector() == record.Sector() && old.Block() >= record.Block();
            });
            stored.push_back(record);
            return true;
        },
        progress);
    Require((result.outcome == DownloadOutcome::Sent) == result.text.empty(), "a failed download says why");
    if (result.outcome == DownloadOutcome::Sent) {
        Require(!inside.fault, "a file with a fault is never sent");
        fuzz::Bytes image;
        for (const FirmwareRecord& record : stored) {
            image.insert(image.end(), record.bytes.begin(), record.bytes.end());
        }
        Require(std::ranges::equal(image, content.subspan(kFirmwareHeaderBytes)),
                "what was sent is the file");
    } else if (result.outcome == DownloadOutcome::FileRefused) {
        Require(result.text == inside.fault.Text(), "the fault is the file's first one");
    }
    return 0;
}
