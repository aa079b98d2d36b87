#include "peripheral_network/KvNetSetupGeneralPage.h"

#include "host/HostApplication.h"
#include "peripheral_network/KvNetSettings.h"
#include "peripheral_network/KvNetSetupLayout.h"
#include "peripheral_network/KvNetTexts.h"
#include "platform/UserInterface.h"
#include "platform/windows/WaitCursor.h"

namespace {

using namespace kalvio;

CKvNetSettings* Network() {
    return dynamic_cast<CKvNetSettings*>(GetHostApplication().kvNet);
}

char VersionLetter(std::uint8_t version) {
    return static_cast<char>('A' + version);
}

} // namespace

CKvNetSetupGeneralPage::CKvNetSetupGeneralPage() : CPropertyPage(kSetupGeneralLayout) {}

CKvNetSetupGeneralPage::~CKvNetSetupGeneralPage() = default;

CListBox* CKvNetSetupGeneralPage::List() const {
    return dynamic_cast<CListBox*>(GetDlgItem(kCtrlDeviceList));
}

bool CKvNetSetupGeneralPage::OnInitDialog() {
    List()->SetTabStops({30, 95, 155, 200, 245});
    FillDeviceListBox();
    OnDeviceListSelChanged();
    return true;
}

int CKvNetSetupGeneralPage::FillDeviceListBox() {
    CKvNetSettings* const network = Network();
    if (network == nullptr) {
        return 0;
    }
    const WaitCursor wait;
    const QuietNetwork quiet(*network);
    List()->ResetContent();
    for (const CKvNetStatus& status : network->Devices()) {
        if (AddDeviceToListBox(List(), status) == 0) {
            return 0;
        }
    }
    return 1;
}

int CKvNetSetupGeneralPage::AddDeviceToListBox(CListBox* list, const CKvNetStatus& status) {
    if (list == nullptr) {
        return 0;
    }
    list->AddString(GetDeviceListString(status), status.GetAddress());
    return 1;
}

CString CKvNetSetupGeneralPage::GetDeviceListString(const CKvNetStatus& status) {
    return Format("%2d\t%s\t%s\t%c\t%c\t%s", status.GetAddress(), status.ClassName().c_str(),
                  status.TypeName().c_str(), VersionLetter(status.GetHardwareVersion()),
                  VersionLetter(status.GetFirmwareVersion()), GetOnOffText(status.IsOn()).c_str());
}

int CKvNetSetupGeneralPage::GetStatusFromCurSel(CKvNetStatus& status) const {
    const CKvNetSettings* const network = Network();
    const int selected = List()->GetCurSel();
    if (network == nullptr || selected < 0 ||
        static_cast<std::size_t>(selected) >= network->Devices().size()) {
        return 0;
    }
    status = network->Devices()[static_cast<std::size_t>(selected)];
    return 1;
}

void CKvNetSetupGeneralPage::OnDeviceListSelChanged() {
    CKvNetStatus status;
    GetDlgItem(kCtrlDownloadFirmware)
        ->EnableWindow(GetStatusFromCurSel(status) != 0 && CKvNetSettings::CanDownloadFirmware(status) != 0);
}

void CKvNetSetupGeneralPage::OnRefreshDeviceList() {
    if (CKvNetSettings* const network = Network(); network != nullptr && network->FillDeviceList() != 0) {
        FillDeviceListBox();
        OnDeviceListSelChanged();
    }
}

void CKvNetSetupGeneralPage::OnDownloadFirmware() {
    CKvNetSettings* const network = Network();
    CKvNetStatus status;
    if (network == nullptr || GetStatusFromCurSel(status) == 0) {
        return;
    }
    // The program's messages run meanwhile, and the sheet must wait for the end.
    CWnd& waiting = Sheet() != nullptr ? static_cast<CWnd&>(*Sheet()) : *this;
    waiting.EnableWindow(false);
    const bool done = network->DownloadFirmware(status) != 0;
    waiting.EnableWindow(true);
    if (done) {
        FillDeviceListBox();
        OnDeviceListSelChanged();
        ShowMessage(LoadText(kTextFirmwareDone), BoxIcon::Information);
    } else {
        ShowMessage(LoadText(kTextFirmwareFailed), BoxIcon::Exclamation);
    }
}

int CKvNetSetupGeneralPage::OnControlChanged(int controlId) {
    if (controlId == kCtrlDeviceList) {
        OnDeviceListSelChanged();
    }
    return 1;
}

void CKvNetSetupGeneralPage::OnCommand(int controlId) {
    if (controlId == kCtrlDetectDevices) {
        OnRefreshDeviceList();
    } else if (controlId == kCtrlDownloadFirmware) {
        OnDownloadFirmware();
    }
}
