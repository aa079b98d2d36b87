#include "peripheral_network/FirmwareDownload.h"

#include "peripheral_network/KvNetTexts.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace kalvio {
namespace {

constexpr int kRecordsPerStep = 4;

DownloadResult Refused(const FirmwareFault& fault) {
    const bool unread = fault.kind == FirmwareFault::Kind::NotOpened;
    return {unread ? DownloadOutcome::NotOpened : DownloadOutcome::FileRefused, fault.Text()};
}

// One download on its way.
class Download {
public:
    Download(FirmwareFile& file, const SectorWriter& write, ProgressDisplay& progress)
        : m_file(file), m_write(write), m_progress(progress) {}

    DownloadResult Run() {
        ShowProgress();
        for (;;) {
            for (int record = 0; record < kRecordsPerStep; ++record) {
                if (std::optional<DownloadResult> end = SendNext()) {
                    return std::move(*end);
                }
            }
            m_progress.StepIt();
            m_progress.PeekAndPump(true);
        }
    }

private:
    void ShowProgress() {
        constexpr std::uint64_t kBytesPerStep = kRecordsPerStep * kFirmwareRecordBytes;
        const std::uint64_t steps = (m_file.Length() - kFirmwareHeaderBytes) / kBytesPerStep;
        constexpr std::uint64_t kMostSteps = std::numeric_limits<int>::max();
        m_progress.GoModal(LoadText(kTextProgressTitle));
        m_progress.SetRange(0, static_cast<int>(std::min(steps, kMostSteps)), 1);
    }

    void ShowSector(unsigned text, int sector) {
        m_progress.SetText(FormatText(LoadText(kTextProgressFrame), FormatText(LoadText(text), sector)));
    }

    // One record; how the download ended if it did.
    std::optional<DownloadResult> SendNext() {
        const std::size_t at = m_file.Position();
        FirmwareRecord record;
        const FirmwareFile::Read read = m_file.Next(record);
        if (read == FirmwareFile::Read::End) {
            return DownloadResult{};
        }
        const FirmwareFault fault = read == FirmwareFile::Read::CutOff
                                        ? FirmwareFault{FirmwareFault::Kind::EndOfFile, 0, 0, at}
                                        : m_order.Check(record, at);
        if (fault) {
            return Refused(fault);
        }
        if (m_order.BeginsSector(record)) {
            m_sectorStart = at;
            if (!m_order.IsRetrying()) {
                ShowSector(kTextProgressSector, record.Sector());
            }
        }
        m_order.Begin(record);
        if (m_write(record)) {
            m_order.Accept(record);
        } else if (++m_failedWrites == kMostFailedWrites) {
            return DownloadResult{
                DownloadOutcome::WriteFailed,
                FormatTwoNumbers(LoadText(kTextFirmwareWrite), record.Sector(), kMostFailedWrites)};
        } else {
            SendSectorAgain(record);
        }
        return m_progress.Cancelled() ? std::optional(DownloadResult{DownloadOutcome::Cancelled, {}})
                                      : std::nullopt;
    }

    void SendSectorAgain(const FirmwareRecord& failed) {
        m_file.Seek(m_sectorStart);
        ShowSector(kTextProgressAgain, failed.Sector());
        m_order.Retry(failed);
        m_progress.SetPos((failed.Sector() - 1) * kBlocksPerSector / kRecordsPerStep);
    }

    FirmwareFile& m_file;
    const SectorWriter& m_write;
    ProgressDisplay& m_progress;
    FirmwareOrder m_order;
    std::size_t m_sectorStart = kFirmwareHeaderBytes;
    int m_failedWrites = 0; // over the whole download
};

} // namespace

DownloadResult SendFirmware(const CString& path, std::uint8_t classType, const SectorWriter& write,
                            ProgressDisplay& progress) {
    FirmwareFile file;
    FirmwareFault fault = file.Open(path);
    if (!fault && file.ClassType() != classType) {
        fault.kind = FirmwareFault::Kind::Header;
    }
    return fault ? Refused(fault) : SendRecords(file, write, progress);
}

DownloadResult SendRecords(FirmwareFile& file, const SectorWriter& write, ProgressDisplay& progress) {
    return Download(file, write, progress).Run();
}

} // namespace kalvio
