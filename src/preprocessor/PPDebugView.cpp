#include "preprocessor/PPDebugView.h"

#include "host/HostApplication.h"
#include "host/MeasurementHelpers.h"

#include <algorithm>
#include <iterator>

namespace {

using kalvio::Area;
using kalvio::ControlKind;

enum : int {
    kCtrlStop = 3,
    kCtrlStart = 4,
    kCtrlTest1 = 2505,
    kCtrlTest2 = 2506,
    kCtrlStability = 2507,
    kCtrlValue = 2508,
    kCtrlState = 2659,
};

constexpr kalvio::ControlTemplate kControls[] = {
    {ControlKind::Static, kCtrlState, "Not Settled", Area(12, 10, 100, 18)},
    {ControlKind::Static, kCtrlStability, "Not Stable", Area(12, 31, 100, 18)},
    {ControlKind::Static, kCtrlValue, "0", Area(12, 52, 100, 18)},
    {ControlKind::PushButton, kCtrlStart, "Start", Area(129, 7, 50, 14)},
    {ControlKind::PushButton, kCtrlStop, "Stop", Area(129, 24, 50, 14)},
    {ControlKind::PushButton, kCtrlTest1, "Test 1", Area(129, 42, 50, 14)},
    {ControlKind::PushButton, kCtrlTest2, "Test 2", Area(129, 60, 50, 14)},
};
constexpr kalvio::DialogTemplate kLayout{265, "", Area(0, 0, 186, 82), kControls};

constexpr unsigned kTextTitle = 227;
constexpr kalvio::TextResource kTexts[] = {{kTextTitle, "Pre-processor"}};
const kalvio::TextTable kRegisterTexts{kTexts};

constexpr unsigned kRefreshTimer = 1;
constexpr std::uint32_t kRefreshMs = 200;
constexpr int kFrameWidth = 300;
constexpr int kFrameHeight = 150;

struct StateText {
    int state;
    const char* text;
};

constexpr StateText kStateTexts[] = {
    {NPreProcessor::Working, "Working..."},        {NPreProcessor::Settled, "Settled"},
    {NPreProcessor::Failed, "Failure!"},           {NPreProcessor::NotSettled, "Did not settle"},
    {NPreProcessor::NoData, "Data not arriving!"},
};

FieldDetails AmplitudeDetails() {
    CAnalyserSettings* const analyser = GetHostApplication().analyser;
    const FieldDetails* details =
        analyser == nullptr ? nullptr : analyser->GetDefaultFieldDetails(kalvio::kResultRmsA, kUnitVolt);
    constexpr int kReal = 5;
    return details != nullptr ? *details
                              : FieldDetails{.numberType = kReal, .decimals = GetNumDPsForUnit(kUnitVolt)};
}

// In the middle of the main window.
void Centre(CTypedFrameWnd& frame) {
    const CWnd* const mainWindow = GetHostApplication().mainWindow;
    const CRect around = mainWindow == nullptr ? CRect{} : mainWindow->GetWindowRect();
    const int left = std::max((around.left + around.right - kFrameWidth) / 2, around.left);
    const int top = std::max((around.top + around.bottom - kFrameHeight) / 2, around.top);
    frame.MoveWindow(Area(left, top, kFrameWidth, kFrameHeight));
}

} // namespace

CPPDebugView::CPPDebugView()
    : CFormView(kLayout), m_watcher(this, nullptr, nullptr), m_details(AmplitudeDetails()) {}

void CPPDebugView::OnInitialUpdate() {
    CFormView::OnInitialUpdate();
    if (CTypedFrameWnd* const frame = GetParentFrame(); frame != nullptr) {
        Centre(*frame);
    }
    m_watcher.AddSignal(kalvio::kResultRmsA, kalvio::kNoDetector);
}

LRESULT CPPDebugView::OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case kalvio::kMessageWatchFinished:
        ShowState(static_cast<int>(wParam));
        return 0;
    case WM_TIMER:
        Refresh();
        return 0;
    default:
        return CFormView::OnMessage(message, wParam, lParam);
    }
}

void CPPDebugView::OnCommand(int controlId) {
    if (controlId == kCtrlStart) {
        OnStart();
    } else if (controlId == kCtrlStop) {
        OnStop();
    }
}

void CPPDebugView::OnStart() {
    SetControlText(kCtrlState, "Waiting...");
    m_watcher.StartAndRequestNotification();
    kalvio::SetTimer(Handle(), kRefreshTimer, kRefreshMs);
}

void CPPDebugView::OnStop() {
    m_watcher.Start(0);
    SetControlText(kCtrlState, "Stopped");
    kalvio::KillTimer(Handle(), kRefreshTimer);
}

void CPPDebugView::ShowState(int state) {
    const auto* const found = std::ranges::find(kStateTexts, state, &StateText::state);
    if (found != std::end(kStateTexts)) {
        SetControlText(kCtrlState, found->text);
    }
}

void CPPDebugView::Refresh() {
    CSettlingWatcher::Status status;
    m_watcher.GetStatus(&status, 1);
    const double volts = ConvertHexToV(status.value, kStepsPerVolt);
    SetControlText(kCtrlValue, CSettingsData::FormatNumber(volts, m_details));
    SetControlText(kCtrlStability, status.status == NPreProcessor::Settled ? "Stable" : "Not Stable");
}

void CPPDebugView::SetControlText(int controlId, const CString& text) {
    if (CWnd* const control = Find<CWnd>(controlId); control != nullptr) {
        control->SetText(text);
    }
}

void CreatePPDebugWindow() {
    CPPDebugView* view = nullptr;
    const auto make = [&view] {
        auto made = std::make_unique<CPPDebugView>();
        view = made.get();
        return made;
    };
    CTypedFrameWnd* const frame = GetHostApplication().Windows().Open(make, kTextTitle);
    if (frame != nullptr) {
        frame->SetWindowType(CPPDebugView::kWindowType, CPPDebugView::kPanel);
        view->OnInitialUpdate();
    }
}
