// What the network document adds to the exchanges that it makes: a scan of all addresses, answered and not,
// and a download of three whole sectors. Fails when an aim is missed.

#include "AnsweringBus.h"
#include "RunningHardware.h"
#include "Timing.h"

#include "peripheral_network/KvNetSettings.h"

namespace {

using namespace kalvio;
using namespace kalvio::benchmarks;

constexpr double kMostPerExchange = 500.0; // ns beside the bare one
constexpr int kAddresses = 64;
constexpr int kSectors = 3;
constexpr int kRecords = kSectors * kBlocksPerSector;
constexpr int kRuns = 60;
constexpr std::uint8_t kDevice = 9;
constexpr std::uint8_t kClassType = 0x22;
constexpr std::uint16_t kNobody = 0xFFFD;

using Frame = std::array<std::uint8_t, kKvNetLongestFrame>;

struct Rig {
    Rig() {
        running.application.kvNet = &network;
        network.Initialise();
    }
    ~Rig() { running.application.kvNet = nullptr; }
    Rig(const Rig&) = delete;
    Rig& operator=(const Rig&) = delete;

    // One exchange without the library's help.
    double Bare(std::uint8_t command, std::uint8_t dataBytes, std::uint8_t answerBytes) {
        Frame frame{kKvNetStart, kDevice, dataBytes, command};
        Frame answer{};
        const auto length = static_cast<std::uint8_t>(dataBytes + kKvNetFramingBytes);
        return PerCall(
            [&] { running.hardware.SendKvNetCommand(frame.data(), length, answer.data(), answerBytes, 0); });
    }

    AnsweringBus bus;
    RunningHardware running{bus};
    CKvNetSettings network;
};

class NoProgress final : public ProgressDisplay {
public:
    void GoModal(const CString&) override {}
    void SetRange(int, int, int) override {}
    void SetText(const CString&) override {}
    void SetPos(int) override {}
    void StepIt() override {}
    void PeekAndPump(bool) override {}
    [[nodiscard]] bool Cancelled() const override { return false; }
};

CString FirmwareContent() {
    CString content("Kv-NET DOWNLOAD");
    content.resize(kFirmwareHeaderBytes, '\0');
    content[18] = static_cast<char>(kClassType);
    for (int record = 0; record < kRecords; ++record) {
        const int block = record % kBlocksPerSector;
        content += static_cast<char>((record / kBlocksPerSector + 1) << 4 | block >> 8);
        content += static_cast<char>(block);
        content.append(kFirmwareDataBytes, static_cast<char>(record));
    }
    return content;
}

// The row of a table; whether the aim was met.
bool Compare(const char* what, int exchanges, double whole, double bare) {
    const double own = whole / exchanges - bare;
    std::printf("%-28s %9d %9.1f us %9.1f us %9.1f ns\n", what, exchanges, whole / 1000.0,
                exchanges * bare / 1000.0, own);
    return own <= kMostPerExchange;
}

bool CompareScan(Rig& rig, const char* what, std::uint16_t status, std::size_t found) {
    rig.bus.status = status;
    const double bare = rig.Bare(0x00, 0, 9);
    const double whole = Fastest(
        kRuns, [] {}, [&rig] { rig.network.FillDeviceList(); });
    const bool sound = rig.network.Devices().size() == found;
    rig.bus.status = 0;
    return Compare(what, kAddresses, whole, bare) && sound;
}

bool CompareDownload(Rig& rig) {
    const test::ScratchFolder folder;
    const CString path = folder.Path("firmware");
    test::WriteText(path, FirmwareContent());
    const double bare = rig.Bare(0xB1, 34, 6);
    NoProgress progress;
    DownloadOutcome outcome = DownloadOutcome::Cancelled;
    const double whole = Fastest(
        kRuns, [] {},
        [&] {
            outcome = rig.network.DownloadFirmwareFile({kDevice, std::uint32_t{kClassType}}, path, progress)
                          .outcome;
        });
    return Compare("download of three sectors", kRecords, whole, bare) && outcome == DownloadOutcome::Sent;
}

} // namespace

int main() {
    Rig rig;
    std::printf("%-28s %9s %12s %12s %12s\n", "", "exchanges", "library", "bare", "own of each");
    const bool answered = CompareScan(rig, "scan, everybody answers", 0, kAddresses);
    const bool silent = CompareScan(rig, "scan, nobody answers", kNobody, 0);
    const bool download = CompareDownload(rig);
    const bool met = Aim("At most 0.5 us of our own per exchange, each of them done well:",
                         answered && silent && download);
    return met ? EXIT_SUCCESS : EXIT_FAILURE;
}
