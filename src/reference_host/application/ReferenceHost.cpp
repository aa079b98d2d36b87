#include "reference_host/application/ReferenceHost.h"

#include "adapters/FormatConverterSettings.h"
#include "adapters/KEDAAdapterSettings.h"
#include "platform/Clock.h"
#include "platform/DebugFile.h"
#include "platform/Registry.h"
#include "platform/UserInterface.h"
#include "preprocessor/PreProcessor.h"
#include "reference_host/ports/HostPorts.h"
#include "switching/IOSwitcherSettings.h"
#include "switching/SwitcherSettings.h"

namespace kalvio::reference_host {

namespace {

constexpr std::uint32_t kTurnMs = 2;
constexpr double kStartVolts = 1.0;
constexpr double kStartHertz = 1000.0;
constexpr const char* kDetectorNames[] = {"Fundamental", "Second harmonic", "Third harmonic"};
static_assert(std::size(kDetectorNames) == kHarmonics);

simulator::UnitClock MakeUnitClock() {
    return {[] { return GetTickCount(); }, [](std::uint32_t milliseconds) { Sleep(milliseconds); }};
}

simulator::UnitOptions MakeUnitOptions(const ReferenceHostOptions& options) {
    simulator::UnitOptions unit;
    unit.present = options.unit == UnitKind::Simulated;
    return unit;
}

std::unique_ptr<DeviceDriver> Wrap(const ReferenceHostOptions& options, DeviceDriver& unit) {
    return options.wrapDriver ? options.wrapDriver(unit) : nullptr;
}

} // namespace

ReferenceHost::ReferenceHost(const ReferenceHostOptions& options)
    : m_options(options),
      m_unit(MakeUnitClock(), MakeUnitOptions(options)),
      m_wrapper(Wrap(options, m_unit)),
      m_hardware(m_wrapper != nullptr ? *m_wrapper : m_unit),
      m_records(m_hardware, m_gate),
      m_engine(m_hardware, *this, m_gate),
      m_window(*this),
      m_previous(InstallHostApplication(this)) {
    preprocessor::SetThreaded(options.threaded);
    m_unit.SetDeviceUnderTest(options.device);
    for (const auto& peripheral : simulator::ParsePeripherals(options.peripherals).peripherals) {
        m_unit.Attach(peripheral);
    }
    hardware = &m_hardware;
    mainWindow = &m_window;
    analyser = &m_analyser;
    generator = &m_generator;
    fftParameters = &m_fftParameters;
    fftDetectors = &m_fftDetectors;
    CDebugFile::SetSink([this](const CString& line) {
        if (onDebugLine) {
            onDebugLine(line);
        }
    });
    MakeDocuments();
}

ReferenceHost::~ReferenceHost() {
    closing = true;
    m_isUp = false;
    Windows().CloseAll();
    portOutput = nullptr;
    m_ports.reset();
    m_regulation.reset(); // its watch stops the pre-processor's thread
    regulation = nullptr;
    regulationDetails = nullptr;
    kvNet = nullptr;
    m_network.reset();
    m_hardware.TerminateHardware();
    settling = nullptr;
    settlingDetails = nullptr;
    m_settling.reset();
    CDebugFile::SetSink(nullptr);
    preprocessor::SetThreaded(true);
    InstallHostApplication(m_previous);
}

void ReferenceHost::OpenRegistry() {
    CRegistry::Reset();
    CString error;
    // A damaged file is kept aside and the defaults hold; the user is told and goes on.
    if (!m_options.registryFile.empty() && !CRegistry::Open(m_options.registryFile, error)) {
        ShowMessage(error, BoxIcon::Exclamation);
    }
}

void ReferenceHost::MakeDocuments() {
    for (const char* name : kDetectorNames) {
        m_fftDetectors.Add(name);
    }
    m_settling = std::make_unique<CSettlingDetails>(this);
    m_settling->Initialise();
    settling = m_settling.get();
    settlingDetails = m_settling.get();
    m_regulation = std::make_unique<CRegulationSettings>(this);
    regulation = m_regulation.get();
    regulationDetails = m_regulation.get();
    m_network = std::make_unique<CKvNetSettings>(this);
    kvNet = m_network.get();
    m_network->Initialise();
    for (const int ctrlID : {kCtrlGeneratorOnA, kCtrlGeneratorOnB}) {
        m_generator.SetSwitch(ctrlID, 1);
    }
    MakePorts();
}

void ReferenceHost::MakePorts() {
    m_ports = std::make_unique<HostPorts>(
        m_options.ports, [this](const std::function<bool()>& done, std::uint32_t milliseconds) {
            TurnUntil(done, milliseconds);
        });
    portOutput = &m_ports->Output();
    m_ports->Ports().Initialise();
}

int ReferenceHost::GetWindowsVersion() {
    return m_ports->WindowsVersion();
}

std::unique_ptr<CommunicationsControl> ReferenceHost::CreateCommunicationsControl(CWnd& parent,
                                                                                  int controlId) {
    return m_ports->MakeControl(parent, controlId);
}

BringUpResult ReferenceHost::BringUp() {
    OpenRegistry();
    if (!m_ports->Complaint().empty()) {
        ShowMessage(m_ports->Complaint(), BoxIcon::Exclamation);
    }
    if (!m_images.Create(m_options.registryFile)) {
        return {BringUpStatus::NoImages,
                "cannot write the program images of the simulated unit: " + m_images.Failure()};
    }
    if (m_hardware.InitialiseHardware(m_window.Handle()) == 0) {
        PumpMessages(); // the reason may be on its way to the main window
        if (IsInterrupted()) {
            return {BringUpStatus::Interrupted, {}};
        }
        const std::string image = ImageFiles::Unreadable();
        return {BringUpStatus::NoUnit,
                image.empty() ? "the unit did not come up" : "the unit did not come up: " + image};
    }
    m_generator.SetOutput(&m_records);
    SetGenerator(kStartVolts, kStartHertz);
    m_isUp = true;
    return {BringUpStatus::Ok, {}, m_images.Note()};
}

CString ReferenceHost::RefuseGenerator(double volts, double hertz) {
    const struct {
        int ctrlID;
        int unit;
        double value;
    } wanted[] = {{kCtrlGeneratorAmplitudeA, kUnitVolt, volts},
                  {kCtrlGeneratorFrequencyA, kUnitHertz, hertz}};
    for (const auto& each : wanted) {
        const FieldDetails& details = *m_generator.GetDefaultFieldDetails(each.ctrlID, each.unit);
        if (!(each.value >= details.minimum && each.value <= details.maximum)) {
            return OutOfRangeText(LoadText(details.stringId), details.numberType, details.minimum,
                                  details.maximum, GetStringForUnit(each.unit));
        }
    }
    return {};
}

void ReferenceHost::SetGenerator(double volts, double hertz) {
    const double amplitude = CPhysicalValue::UnitToStorage(volts, kUnitVolt, {});
    const double frequency = CPhysicalValue::UnitToStorage(hertz, kUnitHertz, {});
    for (const int ctrlID : {kCtrlGeneratorAmplitudeA, kCtrlGeneratorAmplitudeB}) {
        m_generator.SetSource(ctrlID, amplitude);
    }
    for (const int ctrlID : {kCtrlGeneratorFrequencyA, kCtrlGeneratorFrequencyB}) {
        m_generator.SetSource(ctrlID, frequency);
    }
    m_generator.UpdateHardware(kCtrlGeneratorAmplitudeA);
}

std::vector<CCmdTarget*> ReferenceHost::AutomationObjects() {
    CSwitcherSettings* switchers = m_network->GetSwitcherSettings();
    std::vector<CCmdTarget*> objects{&m_hardware,
                                     m_settling.get(),
                                     m_regulation.get(),
                                     m_network.get(),
                                     switchers,
                                     switchers->GetIOSwitcherSettings(),
                                     m_network->GetFormatConverterSettings()->GetKEDAAdapterSettings()};
    for (CCmdTarget* object : m_ports->AutomationObjects()) {
        objects.push_back(object);
    }
    return objects;
}

void ReferenceHost::DoMessageLoop() {
    CHostApplication::DoMessageLoop();
    if (std::this_thread::get_id() != m_thread) {
        return;
    }
    if (onTurn) {
        onTurn();
    }
    if (m_isUp) {
        m_engine.Poll();
    }
}

void ReferenceHost::RunWakeUps() {
    bool ran = false;
    while (preprocessor::RunPendingWakeUp()) {
        ran = true;
    }
    const std::uint32_t now = GetTickCount();
    if (!ran && now - m_lastWakeUp < preprocessor::kBlockListTimeoutMs) {
        return;
    }
    if (!ran) {
        preprocessor::WakeUp(preprocessor::ListIndex::TimedOut);
    }
    m_lastWakeUp = now;
}

void ReferenceHost::Turn() {
    DoMessageLoop();
    if (!m_options.threaded) {
        RunWakeUps();
    }
    Sleep(kTurnMs);
}

WaitEnd ReferenceHost::TurnUntil(const std::function<bool()>& done, std::uint32_t milliseconds) {
    const std::uint32_t start = GetTickCount();
    while (!done()) {
        if (IsInterrupted()) {
            return WaitEnd::Interrupted;
        }
        if (milliseconds != kInfinite && GetTickCount() - start >= milliseconds) {
            return WaitEnd::TimedOut;
        }
        Turn();
    }
    return WaitEnd::Done;
}

} // namespace kalvio::reference_host
