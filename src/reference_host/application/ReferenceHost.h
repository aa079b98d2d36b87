#pragma once

// A complete host of the library: the unit, the documents, the engine, and the loop that drives them.

#include "hardware/Hardware.h"
#include "host/HostApplication.h"
#include "peripheral_network/KvNetSettings.h"
#include "reference_host/application/MainWindow.h"
#include "reference_host/application/ReferenceHostOptions.h"
#include "reference_host/configuration/Configuration.h"
#include "reference_host/configuration/SessionLayouts.h"
#include "reference_host/measurement/GeneratorRecords.h"
#include "reference_host/measurement/MeasurementEngine.h"
#include "reference_host/unit/ImageFiles.h"
#include "reference_host/windows/WindowSession.h"
#include "regulation/RegulationSettings.h"
#include "settling/SettlingDetails.h"
#include "simulator/VirtualUnit.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace kalvio::reference_host {

class HostPorts;

// How a wait ended.
enum class WaitEnd { Done, TimedOut, Interrupted };

enum class BringUpStatus {
    Ok,
    NoImages,    // the program images of the virtual unit could not be written
    NoUnit,      // the unit did not come up
    Interrupted, // `isInterrupted` answered true meanwhile
};

struct BringUpResult {
    BringUpStatus status = BringUpStatus::Ok;
    std::string text;   // a sentence without its full stop; empty when all is well or the user ended it
    std::string note{}; // what the user should know although all is well; empty: nothing

    [[nodiscard]] bool Ok() const { return status == BringUpStatus::Ok; }
};

// Installs itself as the host application for its lifetime; its destruction stops what runs and shuts the
// unit down. One at a time in a process. User-interface thread: the one that makes it.
class ReferenceHost final : public CHostApplication {
public:
    explicit ReferenceHost(const ReferenceHostOptions& options = {});
    ~ReferenceHost() override;
    ReferenceHost(const ReferenceHost&) = delete;
    ReferenceHost& operator=(const ReferenceHost&) = delete;

    // Set before BringUp; each may stay empty.
    // Every line of the library's debug file, from the thread that writes it.
    std::function<void(const CString& line)> onDebugLine;
    // In every turn of a message loop on the user-interface thread, after the messages; may answer dialogs.
    std::function<void()> onTurn;
    // Whether nobody waits any more (Ctrl-C, a closed window): every wait then ends. User-interface thread.
    std::function<bool()> isInterrupted;

    // Opens the registry, brings the unit up and turns the generator on at 1 V, 1 kHz. Once.
    BringUpResult BringUp();

    // One turn of the program: results, messages, and a moment's sleep.
    void Turn();
    // Turns until `done` answers true, so many milliseconds are over, or the wait is interrupted.
    WaitEnd TurnUntil(const std::function<bool()>& done, std::uint32_t milliseconds = kInfinite);

    [[nodiscard]] MeasurementEngine& Engine() { return m_engine; }
    [[nodiscard]] simulator::VirtualUnit& Unit() { return m_unit; }
    [[nodiscard]] CHardware& Hardware() { return m_hardware; }
    [[nodiscard]] CGeneratorSettings& Generator() { return m_generator; }
    [[nodiscard]] CSettlingDetails& Settling() { return *m_settling; }
    [[nodiscard]] CRegulationSettings& Regulation() { return *m_regulation; }
    [[nodiscard]] CKvNetSettings& Network() { return *m_network; }
    [[nodiscard]] HostPorts& Ports() { return *m_ports; }
    // The library's windows by name.
    [[nodiscard]] WindowSession& WindowsByName() { return m_windowSession; }
    // Saves and loads this host's documents; the host must outlive it.
    [[nodiscard]] Configuration MakeConfiguration() {
        return Configuration({*this, *m_network, &m_windowLayouts});
    }
    // The objects that automation names are looked for in, in this order.
    [[nodiscard]] std::vector<CCmdTarget*> AutomationObjects();
    // Why the generator cannot put out so many volts and hertz, with the range; empty when it can.
    [[nodiscard]] CString RefuseGenerator(double volts, double hertz);
    // Sets sources of both channels' generators, in volts and hertz, and sends them to the unit.
    void SetGenerator(double volts, double hertz);

    bool CheckSecurityLevel(int level) override { return level <= m_options.securityLevel; }
    int GetOLEDisplay() override { return 1; }
    int GetWindowsVersion() override;
    std::unique_ptr<CommunicationsControl> CreateCommunicationsControl(CWnd& parent, int controlId) override;
    void DoMessageLoop() override;

private:
    void OpenRegistry();
    void MakeDocuments();
    void MakePorts();
    void RunWakeUps();
    [[nodiscard]] bool IsInterrupted() const { return isInterrupted && isInterrupted(); }

    const ReferenceHostOptions m_options;
    const std::thread::id m_thread = std::this_thread::get_id();
    ImageFiles m_images;
    simulator::VirtualUnit m_unit;
    std::unique_ptr<DeviceDriver> m_wrapper; // null: the library talks to the unit directly
    CHardware m_hardware;
    SourceGate m_gate;
    GeneratorRecords m_records;
    CAnalyserSettings m_analyser{this};
    CGeneratorSettings m_generator{nullptr, this};
    CFFTParametersSettings m_fftParameters{this};
    CFFTDetectorList m_fftDetectors{this};
    MeasurementEngine m_engine;
    MainWindow m_window;
    std::unique_ptr<CSettlingDetails> m_settling;
    std::unique_ptr<CRegulationSettings> m_regulation;
    std::unique_ptr<CKvNetSettings> m_network;
    std::unique_ptr<HostPorts> m_ports;
    WindowSession m_windowSession{*this};
    SessionLayouts m_windowLayouts{m_windowSession};
    bool m_isUp = false;
    std::uint32_t m_lastWakeUp = 0; // tick; only without the pre-processor's thread
    CHostApplication* m_previous;
};

} // namespace kalvio::reference_host
