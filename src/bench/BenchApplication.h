#pragma once

// The host application of this program: the unit, the documents, the engine, and the loop that drives them.

#include "bench/BenchOptions.h"
#include "bench/DriverTrace.h"
#include "bench/ExitCode.h"
#include "bench/GeneratorRecords.h"
#include "bench/ImageFiles.h"
#include "bench/LineSource.h"
#include "bench/MainWindow.h"
#include "bench/MeasurementEngine.h"
#include "bench/Terminal.h"
#include "bench/TerminalUserInterface.h"
#include "host/HostApplication.h"
#include "regulation/RegulationSettings.h"
#include "settling/SettlingDetails.h"
#include "simulator/VirtualUnit.h"

#include <array>
#include <fstream>
#include <functional>
#include <memory>
#include <thread>

namespace kalvio::bench {

// How a wait ended.
enum class WaitEnd { Done, TimedOut, Interrupted };

// Installs itself as the host application for its lifetime; its destruction stops what runs and shuts the
// unit down. User-interface thread.
class BenchApplication final : public CHostApplication {
public:
    BenchApplication(const BenchOptions& options, Terminal& terminal);
    ~BenchApplication() override;
    BenchApplication(const BenchApplication&) = delete;
    BenchApplication& operator=(const BenchApplication&) = delete;

    // Called with every line of the library's debug file, from the thread that writes it; set before
    // BringUp.
    std::function<void(const CString& line)> onDebugLine;

    // Opens the files that the options name, brings the unit up and turns the generator on at 1 V, 1 kHz.
    ExitCode BringUp();
    // True unless the trace could not be written to its end.
    [[nodiscard]] bool IsTraceWhole() const;

    // One turn of the program: results, messages, and a moment's sleep.
    void Turn();
    // Turns until `done` answers true, the time is over, or nobody waits any more: Ctrl-C, or an output that
    // cannot be written.
    WaitEnd TurnUntil(const std::function<bool()>& done, std::uint32_t milliseconds = kInfinite);

    [[nodiscard]] MeasurementEngine& Engine() { return m_engine; }
    [[nodiscard]] simulator::VirtualUnit& Unit() { return m_unit; }
    [[nodiscard]] TerminalUserInterface& User() { return m_user; }
    [[nodiscard]] LineSource& Lines() { return m_lines; }
    [[nodiscard]] CHardware& Hardware() { return m_hardware; }
    [[nodiscard]] CRegulationSettings& Regulation() { return *m_regulation; }
    [[nodiscard]] CGeneratorSettings& Generator() { return m_generator; }
    // The objects that automation names are looked for in, in this order.
    [[nodiscard]] std::array<CCmdTarget*, 3> AutomationObjects();
    // Sets sources of both channels' generators, in volts and hertz, and sends them to the unit.
    void SetGenerator(double volts, double hertz);

    bool CheckSecurityLevel(int level) override { return level <= m_options.securityLevel; }
    int GetOLEDisplay() override { return 1; }
    void DoMessageLoop() override;

private:
    void OpenRegistry();
    bool OpenTrace();
    void StartDocuments();
    void RunWakeUps();

    const BenchOptions m_options;
    Terminal& m_terminal;
    const std::thread::id m_thread = std::this_thread::get_id();
    LineSource m_lines;
    TerminalUserInterface m_user;
    ImageFiles m_images;
    std::ofstream m_traceFile; // guarded by the trace's lock once it is open
    simulator::VirtualUnit m_unit;
    std::unique_ptr<DriverTrace> m_trace; // null: none was asked for
    CHardware m_hardware;
    SourceGate m_gate;
    GeneratorRecords m_records;
    CAnalyserSettings m_analyser;
    CGeneratorSettings m_generator;
    CFFTParametersSettings m_fftParameters;
    CFFTDetectorList m_fftDetectors;
    MeasurementEngine m_engine;
    MainWindow m_window;
    std::unique_ptr<CSettlingDetails> m_settling;
    std::unique_ptr<CRegulationSettings> m_regulation;
    std::uint32_t m_lastWakeUp = 0; // tick; only without the pre-processor's thread
    CHostApplication* m_previous;
};

} // namespace kalvio::bench
