// firmware and download.

#include "bench/commands/Commands.h"

#include "bench/commands/WithUnit.h"
#include "bench/output/FirmwareReport.h"
#include "bench/output/JsonOutput.h"
#include "bench/terminal/TerminalProgress.h"
#include "platform/Clock.h"

#include <nlohmann/json.hpp>

namespace kalvio::bench {

namespace {

constexpr std::size_t kRecordsOfStep = 4; // of a download's progress

struct OutcomeRow {
    DownloadOutcome outcome;
    const char* word;
    ExitCode code;
};

constexpr OutcomeRow kOutcomes[] = {
    {DownloadOutcome::Sent, "sent", kExitOk},
    {DownloadOutcome::NotOpened, "refused", kExitFile},
    {DownloadOutcome::FileRefused, "refused", kExitFile},
    {DownloadOutcome::WriteFailed, "failed", kExitRunFailed},
    {DownloadOutcome::Cancelled, "cancelled", kExitInterrupted},
};

void Complain(Terminal& terminal, const std::string& text) {
    terminal.err << "kalvio-bench: " << text << std::endl;
}

class DownloadCommand {
public:
    DownloadCommand(CKvNetSettings& network, const BenchOptions& options, const DownloadOptions& download,
                    Terminal& terminal)
        : m_network(network), m_options(options), m_download(download), m_terminal(terminal) {}

    int Run() {
        CKvNetStatus device;
        if (!FindDevice(device)) {
            return kExitRunFailed;
        }
        const std::uint32_t start = GetTickCount();
        TerminalProgress progress(m_terminal.err, kRecordsOfStep * kFirmwareDataBytes);
        const DownloadResult result = m_network.DownloadFirmwareFile(device, m_download.file, progress);
        Tell(result, GetTickCount() - start);
        return RowOf(result.outcome).code;
    }

private:
    static const OutcomeRow& RowOf(DownloadOutcome outcome) {
        return kOutcomes[static_cast<std::size_t>(outcome)];
    }

    bool FindDevice(CKvNetStatus& device) {
        const auto address = static_cast<std::uint8_t>(m_download.address);
        VARIANT status;
        const QuietNetwork quiet(m_network);
        if (const short code = m_network.GetStatus(address, &status); code != KVNET_OK) {
            Complain(m_terminal, Format("nothing to download into at address %u: %s", address,
                                        LoadText(GetErrorMessageID(code)).c_str()));
            return false;
        }
        device.Set(address, status);
        if (CKvNetSettings::CanDownloadFirmware(device) == 0) {
            Complain(m_terminal,
                     Format("the %s at address %u takes no firmware", device.TypeName().c_str(), address));
            return false;
        }
        return true;
    }

    void Tell(const DownloadResult& result, std::uint32_t milliseconds) {
        const char* word = RowOf(result.outcome).word;
        if (!result.text.empty()) {
            Complain(m_terminal, result.text);
        }
        if (m_options.json) {
            m_terminal.out << DumpJson({{"file", m_download.file},
                                        {"address", m_download.address},
                                        {"outcome", word},
                                        {"text", result.text},
                                        {"milliseconds", milliseconds}})
                           << std::endl;
        } else {
            m_terminal.out << Format("%s: %s, address %d, %u ms", m_download.file.c_str(), word,
                                     m_download.address, milliseconds)
                           << std::endl;
        }
    }

    CKvNetSettings& m_network;
    const BenchOptions& m_options;
    const DownloadOptions& m_download;
    Terminal& m_terminal;
};

} // namespace

int RunFirmware(const BenchOptions& options, const std::string& path, Terminal& terminal) {
    const FirmwareCheck check(path);
    if (options.json) {
        terminal.out << DumpJson(FirmwareJson(check)) << std::endl;
    } else if (check.Fault().kind != FirmwareFault::Kind::NotOpened) {
        terminal.out << FirmwareTable(check) << std::flush;
    }
    if (!check.Fault()) {
        return kExitOk;
    }
    Complain(terminal, FirmwareFaultText(check));
    return kExitFile;
}

int RunDownload(const BenchOptions& options, const DownloadOptions& download, Terminal& terminal) {
    // A file that shows its fault only half way would leave the device with half of a firmware.
    if (const FirmwareCheck check(download.file); check.Fault()) {
        Complain(terminal, FirmwareFaultText(check));
        return kExitFile;
    }
    return WithUnit(
        options, terminal, {.run = [&](BenchApplication& application) {
            return DownloadCommand(application.Host().Network(), options, download, terminal).Run();
        }});
}

} // namespace kalvio::bench
