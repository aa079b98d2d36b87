// The network document's work with single devices: status, reset, firmware, addresses.

#include "host/HostApplication.h"
#include "host/HostTexts.h"
#include "peripheral_network/KvNetSettings.h"
#include "peripheral_network/KvNetTexts.h"
#include "peripheral_network/bus/KvNetExchange.h"
#include "peripheral_network/bus/KvNetHints.h"
#include "peripheral_network/bus/KvNetTrace.h"
#include "platform/Files.h"
#include "platform/UserInterface.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::uint8_t kOnFlag = 1; // in the flags byte of a status
constexpr std::size_t kFlagsAt = 2;

using kalvio::KvNetExchange;

void TellStatus(const KvNetExchange& exchange, VARIANT* status) {
    if (status != nullptr) {
        const auto data = exchange.AnswerData().first<kalvio::kStatusDataBytes>();
        *status = VARIANT::Long(static_cast<std::int32_t>(kalvio::PackStatusWord(data)));
    }
}

} // namespace

short CKvNetSettings::ReportBadAddress(const char* method) {
    ReportMethodError(method, kTextReasonParameter, kTextParameterAddress);
    return KVNET_ERR_PARAMETER;
}

short CKvNetSettings::GetStatus(std::uint8_t address, VARIANT* status) {
    return ReadStatus(address, status);
}

short CKvNetSettings::Reset(std::uint8_t address, int on, VARIANT* status) {
    return ResetDevice(address, on, status);
}

short CKvNetSettings::ReadStatus(short address, VARIANT* status) {
    static constexpr const char* kMethod = "KVNET_GetStatus";
    kalvio::TraceKvNet("CKvNetSettings::GetStatus\n");
    if (IsValidAddress(address, 0) == 0) {
        return ReportBadAddress(kMethod);
    }
    KvNetExchange exchange(static_cast<std::uint8_t>(address));
    const short code = exchange.Send(kalvio::kCommandGetStatus);
    if (ReportCode(kMethod, code)) {
        TellStatus(exchange, status);
    }
    return code;
}

short CKvNetSettings::ResetDevice(short address, int on, VARIANT* status) {
    static constexpr const char* kMethod = "KVNET_Reset";
    kalvio::TraceKvNet("CKvNetSettings::Reset\n");
    if (IsValidAddress(address, 1) == 0) {
        return ReportBadAddress(kMethod);
    }
    KvNetExchange exchange(static_cast<std::uint8_t>(address));
    const std::array<std::uint8_t, 1> onFlag{on != 0 ? kOnFlag : std::uint8_t{0}};
    const short code = exchange.Send(kalvio::kCommandReset, onFlag);
    if (!ReportCode(kMethod, code)) {
        return code;
    }
    kalvio::TellDeviceReset(exchange.Address());
    if ((exchange.AnswerData()[kFlagsAt] & kOnFlag) != onFlag[0]) {
        ReportMethodError(kMethod, kTextReasonFieldMismatch, kTextParameterOn);
        return KVNET_ERR_RESPONSE_MISMATCH;
    }
    UpdateLoadStatusForAllArrays(exchange.Address(), kalvio::kAllBuses, 0);
    TellStatus(exchange, status);
    return KVNET_OK;
}

short CKvNetSettings::WriteSector(std::uint8_t address, std::uint8_t first, std::uint8_t second,
                                  std::uint8_t byteCount, const std::uint8_t* data) {
    static constexpr const char* kMethod = "KVNET_WriteSector";
    kalvio::TraceKvNet("CKvNetSettings::WriteSector\n");
    if (IsValidAddress(address, 0) == 0) {
        return ReportBadAddress(kMethod);
    }
    std::array<std::uint8_t, kalvio::kFirmwareRecordBytes> record{first, second};
    std::copy_n(data, std::min<std::size_t>(byteCount, kalvio::kFirmwareDataBytes), record.begin() + 2);
    KvNetExchange exchange(address);
    const short code = exchange.Send(kalvio::kCommandWriteSector, record, nullptr, kalvio::kSectorTimeout);
    if (!ReportCode(kMethod, code)) {
        return code;
    }
    return exchange.AnswerCommand() == kalvio::kAnswerSectorAccepted ? KVNET_OK : KVNET_ERR_RESPONSE_MISMATCH;
}

void CKvNetSettings::Scan(const ScanProgress& progress) {
    for (std::uint8_t address = 0; address < kalvio::kDeviceAddresses; ++address) {
        if (progress) {
            progress(address);
        }
        VARIANT status;
        if (GetStatus(address, &status) == KVNET_OK) {
            m_devices.emplace_back(address, status);
        }
    }
}

void CKvNetSettings::PutDevicesIntoStandby() {
    const kalvio::QuietNetwork quiet(*this);
    Reset(KVNET_ADDRESS_BROADCAST, 0, nullptr);
}

int CKvNetSettings::FillKvNetCombo(CComboBox* combo, std::uint8_t deviceClass, std::uint8_t deviceType,
                                   std::uint8_t selectAddress) const {
    if (combo == nullptr) {
        return 0;
    }
    combo->ResetContent();
    for (const CKvNetStatus& device : m_devices) {
        if ((deviceClass == 0 || device.GetDeviceClass() == deviceClass) &&
            (deviceType == 0 || device.GetDeviceType() == deviceType)) {
            combo->AddString(AddressToString(device.GetAddress()), device.GetAddress());
        }
    }
    combo->SetCurSelFromItemData(selectAddress);
    return 1;
}

int CKvNetSettings::CanDownloadFirmware(const CKvNetStatus& status) {
    return status.GetDeviceClassType() != kalvio::kClassTypeIOSwitcher ? 1 : 0;
}

int CKvNetSettings::DownloadFirmware(const CKvNetStatus& status) {
    using namespace kalvio;
    const CString chosen =
        CurrentUserInterface().BrowseForFile(LoadText(kTextFirmwareBrowse), LoadText(kTextFirmwareFilter));
    if (chosen.empty()) {
        return 0;
    }
    CProgressWnd progress(Host().mainWindow, LoadText(kTextProgressCaption));
    const DownloadResult result = DownloadFirmwareFile(status, GetFullPathName(chosen), progress);
    if (!result.text.empty()) {
        ShowMessage(result.text);
    }
    return result.outcome == DownloadOutcome::Sent ? 1 : 0;
}

kalvio::DownloadResult CKvNetSettings::DownloadFirmwareFile(const CKvNetStatus& status, const CString& path,
                                                            kalvio::ProgressDisplay& progress) {
    const auto write = [this, address = status.GetAddress()](const kalvio::FirmwareRecord& record) {
        return WriteSector(address, record.bytes[0], record.bytes[1], kalvio::kFirmwareDataBytes,
                           record.Data().data()) == KVNET_OK;
    };
    return kalvio::SendFirmware(path, status.GetDeviceClassType(), write, progress);
}
