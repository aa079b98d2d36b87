#pragma once

// A small window that shows the settling supervision at work on one result.

#include "host/FieldDetails.h"
#include "host/FormView.h"
#include "platform/Export.h"
#include "preprocessor/SettlingWatcher.h"

// Watches the RMS amplitude of channel A. Start (4) begins a watch and looks at it every 200 ms, Stop (3)
// ends it. User-interface thread; the watch reports to the view with kMessageWatchFinished.
class KALVIO_API CPPDebugView : public CFormView {
public:
    static constexpr int kWindowType = 36; // shared with the regulation's, whose panels have other numbers
    static constexpr int kPanel = 0;

    CPPDebugView();

    // Also sizes and centres the frame.
    void OnInitialUpdate() override;
    LRESULT OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) override;

protected:
    void OnCommand(int controlId) override;

private:
    void OnStart();
    void OnStop();
    void ShowState(int state); // says nothing of a state that no watch ends with
    void Refresh();
    void SetControlText(int controlId, const CString& text);

    CSettlingWatcher m_watcher;
    FieldDetails m_details; // of the amplitude as the host shows it, in volts
};

// Opens one more such window. Nothing when the host cannot make it; the user was told. User-interface thread.
KALVIO_API void CreatePPDebugWindow();
