#pragma once

// A host for tests: clock, user interface, main window, documents and an application object, all installed
// for its lifetime.

#include "host/HostApplication.h"
#include "testing/ManualClock.h"
#include "testing/ScriptedUserInterface.h"

#include <mutex>
#include <vector>

namespace kalvio::test {

// A window that notes every message it gets.
class RecordingWindow : public CWnd {
public:
    struct Message {
        unsigned id;
        WPARAM wParam;
        LPARAM lParam;
    };
    LRESULT OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) override;
    std::vector<Message> messages;                 // window's thread
    std::vector<CString> bringUpFailures;          // texts of message 0x8071, freed here
    std::function<void(const Message&)> onMessage; // called after it was noted
};

// Notes every generator state it is given; answers `status`.
class RecordingOutput : public GeneratorOutput {
public:
    std::int16_t Apply(const GeneratorState& state) override;
    [[nodiscard]] std::vector<GeneratorState> States() const;
    std::atomic<std::int16_t> status{0};

private:
    mutable std::mutex m_lock;
    std::vector<GeneratorState> m_states; // guarded by m_lock
};

// The host application of the tests: security level, automation display and version are plain fields.
class TestApplication : public CHostApplication {
public:
    int securityLevel = 4;
    int oleDisplay = 1;
    bool CheckSecurityLevel(int level) override { return level <= securityLevel; }
    int GetOLEDisplay() override { return oleDisplay; }
};

struct ViewHint {
    int hint;
    int flag;
};

// The hint's number, then "v" when a view gave it and the flag when it is not 0.
inline std::string HintText(const CView* sender, int hint, int flag) {
    return std::to_string(hint) + (sender != nullptr ? "v" : "") +
           (flag != 0 ? "/" + std::to_string(flag) : "");
}

class TestHost {
public:
    explicit TestHost(std::uint32_t startTick = 1000);
    ~TestHost();

    ManualClock clock;
    ScriptedUserInterface user;
    RecordingWindow mainWindow;
    RecordingOutput output;
    CAnalyserSettings analyser;
    CGeneratorSettings generator;
    CFFTParametersSettings fftParameters;
    CFFTDetectorList fftDetectors;
    TestApplication application;
    std::vector<ViewHint> hints;     // every view update that arrived
    std::vector<CString> debugLines; // every line written to the debug file

private:
    CHostApplication* m_previous;
    std::mutex m_debugLock; // guards debugLines while other threads trace
};

} // namespace kalvio::test
