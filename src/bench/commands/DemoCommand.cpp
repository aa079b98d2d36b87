#include "bench/commands/Commands.h"

#include "bench/commands/WithUnit.h"
#include "bench/output/ArrayReport.h"
#include "bench/output/InfoReport.h"
#include "bench/output/JsonOutput.h"
#include "bench/output/OutputFile.h"
#include "bench/output/RegulationReport.h"
#include "bench/output/WatchReport.h"
#include "bench/plots/SvgPlot.h"
#include "bench/plots/TerminalPlot.h"
#include "bench/terminal/Interrupt.h"
#include "reference_host/results/OutcomeTexts.h"
#include "switching/IOSwitcherSettings.h"
#include "switching/SwitcherSettings.h"

#include <filesystem>

namespace kalvio::bench {

namespace {

using NPreProcessor::EResult;
using simulator::DeviceUnderTest;

constexpr std::uint32_t kWatchTimeoutMs = 3000;
constexpr std::uint32_t kCadenceMs = 10; // a brisk unit, so that the demo does not keep anyone waiting

constexpr double kWatchTolerance = 0.5; // percent; the usual 2.5 would be content long before the end
constexpr double kWatchVolts = 4.0;
constexpr double kVolts = 1.0; // where a regulation starts
constexpr double kHertz = 1000.0;

constexpr const char* kArrayName = "outputs";
constexpr std::uint8_t kSwitcherAddress = 1;
constexpr short kSwitchedChannels[] = {3, 12};

DeviceUnderTest SlowDevice() {
    return {.gain = 0.5, .noiseVolts = 0.001, .timeConstantMs = 25.0};
}

DeviceUnderTest SaturatingDevice() {
    return {.gain = 0.7, .saturationVolts = 1.5, .noiseVolts = 0.002};
}

DeviceUnderTest ResonantDevice() {
    return {.resonanceHz = 3200.0, .resonanceQ = 4.0, .noiseVolts = 0.0005};
}

RegulationSetup LevelSetup() {
    RegulationSetup setup;
    setup.to = 1.0;
    setup.unit = "V";
    setup.tolerance = 0.01;
    setup.minimum = 0.1;
    setup.maximum = 5.0;
    return setup;
}

RegulationSetup PeakSetup() {
    RegulationSetup setup;
    setup.type = "max";
    setup.source = "gen-freq";
    setup.minimum = 500.0;
    setup.maximum = 10000.0;
    setup.tolerance = 1.0;
    setup.timeout = 30;
    return setup;
}

class Demo {
public:
    Demo(ReferenceHost& host, const BenchOptions& options, const std::filesystem::path& directory,
         Terminal& terminal)
        : m_host(host), m_options(options), m_directory(directory), m_terminal(terminal) {}

    int Run() {
        Say(InfoTable(m_host.Hardware()));
        m_json["unit"] = InfoJson(m_host.Hardware());
        m_host.Unit().SetResultCadence(kCadenceMs);
        CSettlingDetails& settling = m_host.Settling();
        const double usual = settling.GetSignalAnalyserAmplitudeTolerance();
        settling.SetSignalAnalyserAmplitudeTolerance(kWatchTolerance);
        const bool settled = Watch(SlowDevice());
        settling.SetSignalAnalyserAmplitudeTolerance(usual);
        const bool level =
            Regulate("level", "Level through a saturating, noisy device", SaturatingDevice(), LevelSetup());
        const bool peak = Regulate("peak", "Peak of a resonance", ResonantDevice(), PeakSetup());
        const bool switched = Switch();
        TellPlots();
        return settled && level && peak && switched && m_written ? kExitOk : kExitRunFailed;
    }

private:
    void Say(const std::string& text) {
        if (!m_options.json) {
            m_terminal.out << text << std::endl;
        }
    }

    void Connect(DeviceUnderTest device) {
        device.seed = m_options.host.device.seed;
        m_host.Unit().SetDeviceUnderTest(std::move(device));
    }

    bool Watch(const DeviceUnderTest& device) {
        if (IsInterrupted()) {
            return false;
        }
        Say("A level step through a slow device: its RMS amplitude settles");
        Connect(device);
        SettlingRun run(m_host, {*FindResult("rms")});
        const WatchReport report(run, {kUnitVolt}, m_host.analyser->references);
        run.onSample = [&](const SettlingSample& sample) { Say(report.SampleLine(sample)); };
        if (!run.Prepare().empty()) {
            return false;
        }
        m_host.SetGenerator(kWatchVolts, kHertz);
        const EResult outcome = run.Run(kWatchTimeoutMs);
        for (const std::string& line : report.JudgementLines()) {
            Say(line);
        }
        Say(Format("%s after %u ms\n", WordOf(outcome), run.DecidedAt()));
        m_json["settling"] = report.ToJson(outcome);
        WritePlot("settling", report.MakePlot(outcome));
        return outcome == NPreProcessor::Settled;
    }

    bool Regulate(const char* name, const char* title, const DeviceUnderTest& device,
                  const RegulationSetup& setup) {
        if (IsInterrupted()) {
            return false;
        }
        Say(title);
        Connect(device);
        CRegulationSettings& document = m_host.Regulation();
        if (const std::string error = ApplySetup(setup, document); !error.empty()) {
            m_terminal.err << "kalvio-bench: " << error << std::endl;
            return false;
        }
        m_host.SetGenerator(kVolts, kHertz);
        const RegulationReport report(document);
        RegulationRun run(m_host);
        Say(RegulationReport::Header());
        run.onStep = [&](const NPreProcessor::RegulationStep& step) { Say(report.Row(step)); };
        const EResult outcome = run.Start() ? run.Wait() : NPreProcessor::Failed;
        const Plot plot = report.MakePlot(run, title);
        Say("\n" + DrawTerminal(plot) + "\n" + report.Outcome(run, outcome) + "\n");
        m_json[name] = report.ToJson(run, outcome);
        WritePlot(name, plot);
        return outcome == NPreProcessor::Succeeded;
    }

    // Both groups of bus A as one array, which is taken away again.
    bool Switch() {
        if (IsInterrupted()) {
            return false;
        }
        Say(Format("Sixteen channels of the switcher at address %u: one on, all others off",
                   kSwitcherAddress));
        CKvNetSettings& network = m_host.Network();
        short code = DefineArray(network);
        for (const short channel : kSwitchedChannels) {
            if (code == KVNET_OK) {
                code = network.GetChannelArray(kArrayName)->ExclusiveChannel(channel, 1);
            }
            if (code == KVNET_OK) {
                Say(ArrayTable(*network.GetChannelArray(kArrayName)));
            }
        }
        if (code != KVNET_OK) {
            Say("not done, since " + LoadText(GetErrorMessageID(code)) + "\n");
        }
        m_json["switching"] = ArraysJson(*network.GetChannelArrayList());
        network.RemoveArray(kArrayName);
        return code == KVNET_OK || code == KVNET_ERR_TIMEOUT; // a bus without that switcher is no failure
    }

    static short DefineArray(CKvNetSettings& network) {
        CIOSwitcherSettings& switchers = *network.GetSwitcherSettings()->GetIOSwitcherSettings();
        short code = network.DefineArray(kArrayName, 0, 0);
        for (std::uint8_t group = 0; group < 2 && code == KVNET_OK; ++group) {
            code = switchers.AddBusGroupToArray(kArrayName, kSwitcherAddress, 0, group);
        }
        return code;
    }

    void WritePlot(const char* name, const Plot& plot) {
        const std::string path = (m_directory / (std::string(name) + ".svg")).string();
        OutputFile file(path);
        if (!file.Open(m_terminal.err)) {
            m_written = false;
            return;
        }
        file.Stream() << DrawSvg(plot);
        m_written = file.Close(m_terminal.err) && m_written;
        m_plots.push_back(path);
    }

    void TellPlots() {
        m_json["plots"] = m_plots;
        if (m_options.json) {
            m_terminal.out << DumpJson(m_json) << std::endl;
        }
        for (const std::string& path : m_plots) {
            Say("plot: " + path);
        }
    }

    ReferenceHost& m_host;
    const BenchOptions& m_options;
    std::filesystem::path m_directory;
    Terminal& m_terminal;
    nlohmann::ordered_json m_json;
    std::vector<std::string> m_plots;
    bool m_written = true;
};

} // namespace

int RunDemo(const BenchOptions& options, const DemoOptions& demo, Terminal& terminal) {
    std::error_code error;
    std::filesystem::create_directories(demo.directory, error);
    if (error) {
        terminal.err << "kalvio-bench: cannot make " << demo.directory << ": " << error.message()
                     << std::endl;
        return kExitRunFailed;
    }
    const auto onDebugLine = [&](const CString& line) {
        if (!options.json) {
            terminal.out << "  " << Trim(line) << std::endl;
        }
    };
    if (!options.json) {
        terminal.out << "Bringing the unit up" << std::endl;
    }
    return WithUnit(options, terminal,
                    {.run =
                         [&](BenchApplication& application) {
                             return Demo(application.Host(), options, demo.directory, terminal).Run();
                         },
                     .onDebugLine = onDebugLine});
}

} // namespace kalvio::bench
