#pragma once

// The one object through which the library reaches everything of its host.

#include "host/Measurement.h"
#include "host/PanelWindows.h"
#include "host/PeripheralNetworkQueries.h"
#include "host/ResultIds.h"
#include "host/SettlingQueries.h"
#include "host/UpdaterManager.h"
#include "host/Views.h"
#include "platform/CommunicationsControl.h"
#include "platform/Export.h"

#include <atomic>
#include <functional>
#include <map>
#include <memory>

#include "platform/MacroNamesBegin.h"

class CChannelArray;
class CHardware;
class CSettlingDetails;
class CRegulationSettings;

namespace NPreProcessor {
class RegulationDetailsProvider;
}

namespace kalvio {
class PortOutput;
class ViewUpdates;
} // namespace kalvio

// FFT averaging of the host. Any thread.
struct FftAveragingState {
    std::atomic<bool> on{false};
    std::atomic<int> requested{0};
    std::atomic<int> done{0};
    std::atomic<bool> active{false};
    std::atomic<bool> restart{false};       // set together with `active` to begin again
    std::atomic<bool> clearSpectrum{false}; // likewise
};

// One sweep axis: what it varies and whether it is in use.
struct SweepAxis {
    int type = 0; // the source type; kSweepChannelArray: the channels of an array
    CSettingsData* settings = nullptr;
    bool inUse = false;
    CChannelArray* channelArray = nullptr; // not owned; the network document clears it when the array goes
};

inline constexpr int kSweepChannelArray = 19;

// Made by the host program on its user-interface thread before it uses the library, installed with
// InstallHostApplication, and destroyed on that thread after the library's other threads have ended.
class KALVIO_API CHostApplication {
public:
    CHostApplication();
    virtual ~CHostApplication();
    CHostApplication(const CHostApplication&) = delete;
    CHostApplication& operator=(const CHostApplication&) = delete;

    // The library's objects; set by the program before other threads start, cleared after they ended.
    CHardware* hardware = nullptr;
    const kalvio::SettlingQueries* settling = nullptr; // the settling document's queries
    CSettlingDetails* settlingDetails = nullptr;       // the settling document
    CRegulationSettings* regulation = nullptr;         // the regulation document
    NPreProcessor::RegulationDetailsProvider* regulationDetails =
        nullptr;                                       // the same, as the regulator sees it
    kalvio::PeripheralNetworkQueries* kvNet = nullptr; // the peripheral network

    // How I/O ports are written to; not owned. Null: not at all. User-interface thread.
    kalvio::PortOutput* portOutput = nullptr;

    CWnd* mainWindow = nullptr;              // set once; its handle may be posted to from any thread
    std::atomic<bool> closing{false};        // the program is shutting down; any thread
    std::atomic<bool> settlingSwitch{false}; // waits for results wait for settled ones; any thread
    FftAveragingState fftAveraging;          // any thread
    SweepAxis sweepAxes[2];                  // user-interface thread

    // Load switches of archives; user-interface thread.
    bool discardStoredValues = false; // values read are dropped
    bool applyUnsavedGroups = false;  // values of groups whose flag is clear are applied too

    // Documents; set before other threads start.
    CAnalyserSettings* analyser = nullptr;
    CGeneratorSettings* generator = nullptr;
    CFFTParametersSettings* fftParameters = nullptr;
    CFFTDetectorList* fftDetectors = nullptr;  // null: no list
    std::atomic<bool> kvNetUseResponses{true}; // read while `kvNet` is null, which else decides; any thread
    std::atomic<int> fftUsageCount{0};
    std::atomic<int> triggerToggles{0}; // how often ToggleTrigger(1) was asked for

    // Result values; see ResultIds.h for how they are shared.
    kalvio::AnalyserResults analyserResults;
    kalvio::CtDetectorResults ctDetectorResults;
    kalvio::DigitalInputResults digitalInputResults;
    kalvio::CarrierResults carrierResults;
    kalvio::SyncResults syncResults;

    // Services. User-interface thread unless said otherwise.
    // Whether the user may do what asks for the level; 3 and 4 gate calibration writes. Refused by default.
    virtual bool CheckSecurityLevel(int level);
    // Whether automation calls may show message boxes: 0, the default, for no.
    [[nodiscard]] virtual int GetOLEDisplay();
    // The system's version as a code; programs may write to I/O ports where it is less than 5. By default 5.
    [[nodiscard]] virtual int GetWindowsVersion();
    // A control for one serial port as a child of a window, with its id; null, the default, when there is
    // none to be had.
    [[nodiscard]] virtual std::unique_ptr<kalvio::CommunicationsControl>
    CreateCommunicationsControl(CWnd& parent, int controlId);
    // Lets pending messages and timers of this thread run once, without waiting. Any thread.
    virtual void DoMessageLoop();
    virtual void SetThreadName(const CString& name); // any thread, of itself
    // Which views show which controls, and the windows that belong to no document.
    [[nodiscard]] CUpdaterManager& Updaters() { return m_updaters; }
    [[nodiscard]] kalvio::PanelWindows& Windows() { return m_windows; }
    // A window of the host's for a view: null when it cannot be made. By default the frame itself, at
    // `where` in its own size (null: where it is), shown unless `show` is 0; the caller keeps view and frame.
    virtual CTypedFrameWnd* CreateSettingsWindow(int show, CView* view, CTypedFrameWnd* frame,
                                                 const CPoint* where);
    // An open settings window of a type, or null. By default FindWindow, its former name, which programs that
    // override it go on with.
    [[nodiscard]] virtual CTypedFrameWnd* FindSettingsWindow(int type);
    [[nodiscard]] virtual CTypedFrameWnd* FindWindow(int type);
    // The same of a panel (-1: all of them), where windows of different panels share a type.
    [[nodiscard]] CTypedFrameWnd* FindSettingsWindow(int type, int panel);
    // The control item list: a document enters the controls that it owns (the last one to enter a control has
    // it) and takes them all out before it goes.
    void RegisterControl(int ctrlID, CSettingsData* document);
    void UnregisterControls(const CSettingsData* document);
    // The document that owns a control, or null: the one that registered it; else the generator document for
    // its controls and the sync results, the analyser document for the other results.
    [[nodiscard]] virtual CSettingsData* GetDocForID(int ctrlID);

    // View updates: observers are called on the user-interface thread (the one that made this object), after
    // the views. They may add and remove observers. User-interface thread.
    using ViewObserver = std::function<void(CView* sender, int hint, void* object, int flag)>;
    int AddViewObserver(ViewObserver observer); // a token for RemoveViewObserver
    void RemoveViewObserver(int token);
    // Tells views and observers at once on the user-interface thread; from another thread queues the update
    // for that one's next message loop and drops the sender and object, which belong to it. An update that
    // waits already is not queued again. Any thread.
    void NotifyViews(CView* sender, int hint, void* object, int flag);

private:
    std::unique_ptr<kalvio::ViewUpdates> m_views;
    std::map<int, CSettingsData*> m_controls; // user-interface thread
    CUpdaterManager m_updaters;               // user-interface thread
    kalvio::PanelWindows m_windows;           // user-interface thread
};

// The host application in force; a plain one of the library's own, made by the thread that asks first,
// until another is installed. Any thread.
[[nodiscard]] KALVIO_API CHostApplication& GetHostApplication();
// Installs one, or the plain one with null; returns the one before (null for the plain one). Install while
// no other thread uses the library.
KALVIO_API CHostApplication* InstallHostApplication(CHostApplication* application);

namespace kalvio {

// Messages to the main window.
inline constexpr unsigned kMessageWatchFinished = WM_APP + 0x38; // wParam the outcome
// wParam 11701, lParam a text (NUL-terminated, made with new char[]) that the receiver deletes.
inline constexpr unsigned kMessageBringUpFailed = WM_APP + 0x71;
inline constexpr unsigned kMessageSuspending = WM_APP + 0x33;
inline constexpr unsigned kMessageOutOfMemory = WM_APP + 0x04; // wParam 11304
// lParam: window type in the low, panel in the high 16 bits; answers the open frame or 0.
inline constexpr unsigned kMessageFindWindow = 32883;

} // namespace kalvio

#include "platform/MacroNamesEnd.h"
