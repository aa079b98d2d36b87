#include "bench/BenchApplication.h"

#include "bench/Interrupt.h"
#include "platform/Clock.h"
#include "platform/DebugFile.h"
#include "platform/Registry.h"
#include "preprocessor/PreProcessor.h"

#include <cstring>

namespace kalvio::bench {

namespace {

constexpr std::uint32_t kTurnMs = 2;
constexpr double kStartVolts = 1.0;
constexpr double kStartHertz = 1000.0;
constexpr const char* kDetectorNames[] = {"Fundamental", "Second harmonic", "Third harmonic"};
static_assert(std::size(kDetectorNames) == kHarmonics);

simulator::UnitClock MakeUnitClock() {
    return {[] { return GetTickCount(); }, [](std::uint32_t milliseconds) { Sleep(milliseconds); }};
}

simulator::UnitOptions MakeUnitOptions(const BenchOptions& options) {
    simulator::UnitOptions unit;
    unit.present = options.unit == UnitKind::Simulated;
    return unit;
}

std::unique_ptr<DriverTrace> MakeTrace(const BenchOptions& options, DeviceDriver& driver, Terminal& terminal,
                                       std::ofstream& file) {
    if (options.traceFile.empty())
        return nullptr;
    std::ostream& stream = options.traceFile == "-" ? terminal.err : file;
    return std::make_unique<DriverTrace>(
        driver, [&stream](const std::string& line) { stream << line << '\n'; }, options.traceBytes);
}

DeviceDriver& TracedOr(const std::unique_ptr<DriverTrace>& trace, DeviceDriver& driver) {
    return trace == nullptr ? driver : *trace;
}

} // namespace

BenchApplication::BenchApplication(const BenchOptions& options, Terminal& terminal)
    : m_options(options),
      m_terminal(terminal),
      m_lines(terminal.in),
      m_user(terminal, m_lines, options.answers, options.unit == UnitKind::None),
      m_unit(MakeUnitClock(), MakeUnitOptions(options)),
      m_trace(MakeTrace(options, m_unit, terminal, m_traceFile)),
      m_hardware(TracedOr(m_trace, m_unit)),
      m_records(m_hardware, m_gate),
      m_engine(m_hardware, *this, m_gate),
      m_window(*this),
      m_previous(InstallHostApplication(this)) {
    preprocessor::SetThreaded(options.threaded);
    m_unit.SetDeviceUnderTest(options.device);
    hardware = &m_hardware;
    mainWindow = &m_window;
    analyser = &m_analyser;
    generator = &m_generator;
    fftParameters = &m_fftParameters;
    fftDetectors = &m_fftDetectors;
    CDebugFile::SetSink([this](const CString& line) {
        if (m_trace != nullptr)
            m_trace->Note(Trim(line));
        if (onDebugLine)
            onDebugLine(line);
    });
}

BenchApplication::~BenchApplication() {
    closing = true;
    m_regulation.reset(); // its watch stops the pre-processor's thread
    regulation = nullptr;
    regulationDetails = nullptr;
    m_hardware.TerminateHardware();
    settling = nullptr;
    settlingDetails = nullptr;
    m_settling.reset();
    CDebugFile::SetSink(nullptr);
    preprocessor::SetThreaded(true);
    InstallHostApplication(m_previous);
}

void BenchApplication::OpenRegistry() {
    CRegistry::Reset();
    CString error;
    // A damaged file is kept aside and the defaults hold; the user is told and goes on.
    if (!m_options.registryFile.empty() && !CRegistry::Open(m_options.registryFile, error))
        ShowMessage(error, BoxIcon::Exclamation);
}

bool BenchApplication::OpenTrace() {
    if (m_options.traceFile.empty() || m_options.traceFile == "-")
        return true;
    m_traceFile.open(m_options.traceFile);
    if (m_traceFile)
        return true;
    m_terminal.err << "kalvio-bench: cannot write " << m_options.traceFile << ": " << std::strerror(errno)
                   << std::endl;
    return false;
}

void BenchApplication::StartDocuments() {
    for (const char* name : kDetectorNames)
        m_fftDetectors.Add(name);
    m_settling = std::make_unique<CSettlingDetails>();
    m_settling->Initialise();
    settling = m_settling.get();
    settlingDetails = m_settling.get();
    m_regulation = std::make_unique<CRegulationSettings>();
    regulation = m_regulation.get();
    regulationDetails = m_regulation.get();
    m_generator.SetOutput(&m_records);
    for (const int ctrlID : {kCtrlGeneratorOnA, kCtrlGeneratorOnB})
        m_generator.SetSwitch(ctrlID, 1);
    SetGenerator(kStartVolts, kStartHertz);
}

ExitCode BenchApplication::BringUp() {
    if (!OpenTrace())
        return kExitRunFailed;
    OpenRegistry();
    if (!m_images.Create(m_options.registryFile)) {
        m_terminal.err << "kalvio-bench: cannot write the program images of the simulated unit" << std::endl;
        return kExitRunFailed;
    }
    if (m_hardware.InitialiseHardware(m_window.Handle()) == 0) {
        PumpMessages(); // the reason may be on its way to the main window
        if (!IsInterrupted())
            m_terminal.err << "kalvio-bench: the unit did not come up" << std::endl;
        return IsInterrupted() ? kExitInterrupted : kExitNoUnit;
    }
    StartDocuments();
    return kExitOk;
}

bool BenchApplication::IsTraceWhole() const {
    return !m_traceFile.is_open() || m_traceFile.good();
}

void BenchApplication::SetGenerator(double volts, double hertz) {
    const double amplitude = CPhysicalValue::UnitToStorage(volts, kUnitVolt, {});
    const double frequency = CPhysicalValue::UnitToStorage(hertz, kUnitHertz, {});
    for (const int ctrlID : {kCtrlGeneratorAmplitudeA, kCtrlGeneratorAmplitudeB})
        m_generator.SetSource(ctrlID, amplitude);
    for (const int ctrlID : {kCtrlGeneratorFrequencyA, kCtrlGeneratorFrequencyB})
        m_generator.SetSource(ctrlID, frequency);
    m_generator.UpdateHardware(kCtrlGeneratorAmplitudeA);
}

std::array<CCmdTarget*, 3> BenchApplication::AutomationObjects() {
    return {&m_hardware, m_settling.get(), m_regulation.get()};
}

void BenchApplication::DoMessageLoop() {
    CHostApplication::DoMessageLoop();
    if (std::this_thread::get_id() != m_thread)
        return;
    m_user.AnswerDialog();
    if (m_regulation != nullptr)
        m_engine.Poll();
}

void BenchApplication::RunWakeUps() {
    bool ran = false;
    while (preprocessor::RunPendingWakeUp())
        ran = true;
    const std::uint32_t now = GetTickCount();
    if (!ran && now - m_lastWakeUp < preprocessor::kBlockListTimeoutMs)
        return;
    if (!ran)
        preprocessor::WakeUp(preprocessor::ListIndex::TimedOut);
    m_lastWakeUp = now;
}

void BenchApplication::Turn() {
    DoMessageLoop();
    if (!m_options.threaded)
        RunWakeUps();
    Sleep(kTurnMs);
}

WaitEnd BenchApplication::TurnUntil(const std::function<bool()>& done, std::uint32_t milliseconds) {
    const std::uint32_t start = GetTickCount();
    while (!done()) {
        if (IsInterrupted() || !m_terminal.out)
            return WaitEnd::Interrupted;
        if (milliseconds != kInfinite && GetTickCount() - start >= milliseconds)
            return WaitEnd::TimedOut;
        Turn();
    }
    return WaitEnd::Done;
}

} // namespace kalvio::bench
