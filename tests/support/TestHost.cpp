#include "support/TestHost.h"

#include "platform/DebugFile.h"
#include "platform/Registry.h"

#include <memory>

namespace kalvio::test {

LRESULT RecordingWindow::OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) {
    const Message noted{message, wParam, lParam};
    messages.push_back(noted);
    if (message == kMessageBringUpFailed) {
        const std::unique_ptr<char[]> text(reinterpret_cast<char*>(lParam));
        bringUpFailures.emplace_back(text == nullptr ? "" : text.get());
    }
    if (onMessage) {
        onMessage(noted);
    }
    return CWnd::OnMessage(message, wParam, lParam);
}

std::int16_t RecordingOutput::Apply(const GeneratorState& state) {
    const std::scoped_lock hold(m_lock);
    m_states.push_back(state);
    return status.load();
}

std::vector<GeneratorState> RecordingOutput::States() const {
    const std::scoped_lock hold(m_lock);
    return m_states;
}

TestHost::TestHost(std::uint32_t startTick) : clock(startTick), generator(&output) {
    CRegistry::Reset();
    application.mainWindow = &mainWindow;
    application.analyser = &analyser;
    application.generator = &generator;
    application.fftParameters = &fftParameters;
    application.fftDetectors = &fftDetectors;
    application.AddViewObserver([this](CView*, int hint, void*, int flag) { hints.push_back({hint, flag}); });
    CDebugFile::SetSink([this](const CString& line) {
        const std::scoped_lock hold(m_debugLock);
        debugLines.push_back(line);
    });
    m_previous = InstallHostApplication(&application);
}

TestHost::~TestHost() {
    InstallHostApplication(m_previous);
    CDebugFile::SetSink(nullptr);
    CRegistry::Reset();
}

} // namespace kalvio::test
