#include "peripheral_network/KvNetSettings.h"

#include "adapters/FormatConverterSettings.h"
#include "adapters/KEDAAdapterSettings.h"
#include "host/HostApplication.h"
#include "host/HostTexts.h"
#include "peripheral_network/KvNetSetupPropertySheet.h"
#include "peripheral_network/KvNetTexts.h"
#include "peripheral_network/bus/KvNetHints.h"
#include "peripheral_network/bus/KvNetTrace.h"
#include "platform/UserInterface.h"
#include "platform/windows/WaitCursor.h"
#include "switching/ChannelArrayControlPanelView.h"
#include "switching/Creation.h"
#include "switching/IOSwitcherSettings.h"
#include "switching/SwitcherSettings.h"

#include <new>

namespace {

// The I/O switcher panel's controls and the view updates that this document answers for.
constexpr int kControls[] = {2557,
                             2556,
                             2558,
                             2555,
                             HINT_BALANCE_CHANGED,
                             HINT_ARRAY_REMOVED,
                             HINT_ARRAY_CHANGED,
                             HINT_EXCLUSIVE_MODE_CHANGED,
                             HINT_ARRAY_MOVED,
                             HINT_ARRAY_NAME_CHANGED,
                             HINT_ARRAY_ADDED,
                             HINT_DEVICE_CHANGED};

enum MenuCommand : unsigned {
    kMenuSetup = 33192,
    kMenuIOSwitcherPanel = 33193,
    kMenuChannelArrayPanel = 33194,
    kMenuKedaAdapterPanel = 33196,
};

void ShowKvNetSetup(CKvNetSettings&, const CString& caption, CWnd* owner) {
    CKvNetSetupPropertySheet(caption, owner).DoModal();
}

} // namespace

CKvNetSettings::CKvNetSettings(CHostApplication* host)
    : CSettingsData(host),
      m_setupSheet(ShowKvNetSetup),
      m_viewFactory(CChannelArrayControlPanelView::GetInstance) {
    RegisterControls();
}

void CKvNetSettings::RegisterControls() {
    for (const int control : kControls) {
        Host().RegisterControl(control, this);
    }
}

CKvNetSettings::~CKvNetSettings() {
    Host().UnregisterControls(this);
}

int CKvNetSettings::Initialise() {
    m_switcherSettings = kalvio::MakeOrPost<CSwitcherSettings>(GivenHost());
    if (m_switcherSettings == nullptr || m_switcherSettings->Initialise() == 0) {
        return 0;
    }
    m_formatConverterSettings = kalvio::MakeOrPost<CFormatConverterSettings>(GivenHost());
    const bool made = m_formatConverterSettings != nullptr && m_formatConverterSettings->Initialise() != 0;
    RegisterControls(); // the adapters' document enters some of them too
    return made ? 1 : 0;
}

int CKvNetSettings::SetShowErrorMessages(int show) {
    return std::exchange(m_showErrorMessages, show);
}

bool CKvNetSettings::ShowsMessages() const {
    return Host().GetOLEDisplay() != 0 && m_showErrorMessages != 0;
}

void CKvNetSettings::ReportMethodError(const CString& method, unsigned reason, int parameter) {
    const CString parameterText = parameter == kalvio::kNoParameterText
                                      ? CString()
                                      : kalvio::LoadText(static_cast<unsigned>(parameter));
    const CString text = kalvio::FormatText(kalvio::LoadText(kTextKvNetMethodFailed), method,
                                            kalvio::FormatText(kalvio::LoadText(reason), parameterText));
    kalvio::TraceKvNet(text);
    if (ShowsMessages()) {
        kalvio::ShowMessage(text);
    }
}

bool CKvNetSettings::ReportCode(const char* method, short code) {
    if (code == KVNET_OK) {
        return true;
    }
    ReportMethodError(method, GetErrorMessageID(code), kalvio::kNoParameterText);
    return false;
}

int CKvNetSettings::OnMenuCommand(unsigned id) {
    switch (id) {
    case kMenuSetup:
        OnKvNetSetup();
        return 1;
    case kMenuIOSwitcherPanel:
        m_switcherSettings->GetIOSwitcherSettings()->OnIOSwitcherControlPanel();
        return 1;
    case kMenuChannelArrayPanel:
        OnChannelArrayControlPanel();
        return 1;
    case kMenuKedaAdapterPanel:
        m_formatConverterSettings->GetKEDAAdapterSettings()->OnKEDAAdapterControlPanel();
        return 1;
    default:
        return 0;
    }
}

void CKvNetSettings::OnKvNetSetup() {
    if (m_setupSheet) {
        m_setupSheet(*this, kalvio::LoadText(kalvio::kTextSetupCaption), Host().mainWindow);
    } else {
        kalvio::ShowMessage(kalvio::LoadText(kalvio::kTextNoWindow), kalvio::BoxIcon::Exclamation);
    }
}

void CKvNetSettings::OnChannelArrayControlPanel() {
    OpenChannelArrayControlPanel();
}

CTypedFrameWnd* CKvNetSettings::OpenChannelArrayControlPanel() {
    return m_windows.Open(m_viewFactory, kalvio::kTextArrayPanel);
}

int CKvNetSettings::FillDeviceList(const ScanProgress& progress) {
    const kalvio::WaitCursor wait;
    const kalvio::QuietNetwork quiet(*this);
    DeleteDeviceList();
    try {
        Scan(progress);
        return 1;
    } catch (const std::bad_alloc&) {
        return 0;
    }
}
