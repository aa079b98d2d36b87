#include "bench/commands/Commands.h"

#include "bench/commands/WithUnit.h"
#include "bench/output/JsonOutput.h"
#include "bench/output/OutputFile.h"
#include "bench/output/WatchReport.h"
#include "bench/plots/SvgPlot.h"
#include "platform/Clock.h"
#include "reference_host/results/OutcomeTexts.h"

#include <algorithm>

namespace kalvio::bench {

namespace {

constexpr const char* kTypeWords[] = {"none", "normal", "exponential"};

// The units to show the results in; empty text of a failure.
std::string ChooseUnits(const WatchOptions& watch, std::vector<int>& units) {
    const int unit = watch.unit.empty() ? kUnitNone : GetUnitForString(watch.unit);
    if (!watch.unit.empty() && unit == kUnitNone) {
        return Format("\"%s\" is no unit", watch.unit.c_str());
    }
    for (const ResultChoice& choice : watch.results) {
        const bool fits = unit != kUnitNone &&
                          (unit == choice.unit || (IsAmplitudeUnit(unit) && IsAmplitudeUnit(choice.unit)));
        if (unit != kUnitNone && !fits) {
            return Format("%s cannot be shown in %s", choice.name.c_str(), watch.unit.c_str());
        }
        units.push_back(fits ? unit : choice.unit);
    }
    return {};
}

// Sets the parameters of the results' groups through the settling document's automation names.
class SettlingSetter {
public:
    explicit SettlingSetter(CSettlingDetails& document) : m_document(document) {}

    void Set(std::string_view stem, const char* suffix, const VARIANT& value) {
        const CString name = CString(stem) + suffix;
        const AutomationResult result = m_document.SetProperty(name, value);
        if (m_error.empty() && !result.Ok()) {
            m_error = result.text;
        }
    }

    void SetAll(std::string_view stem, const SettlingOptions& options) {
        const auto* type = std::find(std::begin(kTypeWords), std::end(kTypeWords), options.type);
        if (type != std::end(kTypeWords)) {
            Set(stem, "Convergence", VARIANT::Long(static_cast<std::int32_t>(type - kTypeWords)));
        }
        if (options.tolerance) {
            Set(stem, "Tolerance", VARIANT::Double(*options.tolerance));
        }
        if (options.count) {
            Set(stem, "NumResults", VARIANT::Long(*options.count));
        }
        if (options.time) {
            Set(stem, "SettlingTime", VARIANT::Long(*options.time));
        }
        if (options.average) {
            Set(stem, "Average", VARIANT::Bool(true));
        }
    }

    [[nodiscard]] const std::string& Error() const { return m_error; }

private:
    CSettlingDetails& m_document;
    std::string m_error;
};

// Before the unit is touched: empty, or what was refused.
std::string Prepare(ReferenceHost& host, const WatchOptions& watch) {
    SettlingSetter setter(host.Settling());
    for (const ResultChoice& choice : watch.results) {
        setter.SetAll(choice.settlingStem, watch.settling);
    }
    return setter.Error().empty() ? host.RefuseGenerator(watch.generator.volts, watch.generator.hertz)
                                  : setter.Error();
}

// "rms: 3 values within 2.5 %, exponential": what settling asks of a result.
std::string SettlingLine(CSettlingDetails& document, const ResultChoice& choice) {
    const auto number = [&](const char* suffix) {
        double value = 0.0;
        document.GetProperty(CString(choice.settlingStem) + suffix).value.Get(value);
        return value;
    };
    const auto type = static_cast<std::size_t>(number("Convergence"));
    std::string text =
        Format("%s: %g values within %g %%, %s", choice.name.c_str(), number("NumResults"),
               number("Tolerance"), type < std::size(kTypeWords) ? kTypeWords[type] : "of an unknown type");
    if (const double dead = number("SettlingTime"); dead != 0.0) {
        text += Format(", %g ms after the start at the earliest", dead);
    }
    return number("Average") != 0.0 ? text + ", averaged" : text;
}

class WatchCommand {
public:
    WatchCommand(ReferenceHost& host, const BenchOptions& options, const WatchOptions& watch,
                 std::vector<int> units, Terminal& terminal)
        : m_run(host, watch.results),
          m_report(m_run, std::move(units), host.analyser->references),
          m_host(host),
          m_options(options),
          m_watch(watch),
          m_terminal(terminal),
          m_csv(watch.csvFile),
          m_plot(watch.plotFile) {
        m_run.onSample = [this](const SettlingSample& sample) { TakeSample(sample); };
    }

    int Run() {
        if (const std::string error = m_run.Prepare(); !error.empty()) {
            m_terminal.err << "kalvio-bench: " << error << std::endl;
            return kExitUsage;
        }
        if (!OpenOutputs()) {
            return kExitRunFailed;
        }
        TellConditions();
        m_host.SetGenerator(m_watch.generator.volts, m_watch.generator.hertz);
        const std::uint32_t start = GetTickCount();
        do {
            m_outcome = m_run.Run(m_watch.timeoutMs - (GetTickCount() - start));
            TellJudgements();
        } while (GoesOn() && GetTickCount() - start < m_watch.timeoutMs);
        // Following has no other end of its own, whatever the last verdict was.
        if (m_watch.follow && m_outcome != NPreProcessor::Aborted) {
            m_outcome = NPreProcessor::TimedOut;
        }
        if (m_options.json) {
            m_terminal.out << DumpJson(m_report.ToJson(m_outcome)) << std::endl;
        }
        return WriteOutputs() && m_outcome == NPreProcessor::Settled ? kExitOk : kExitRunFailed;
    }

private:
    [[nodiscard]] bool GoesOn() const {
        if (m_outcome == NPreProcessor::Aborted) {
            return false;
        }
        return m_watch.follow || (m_watch.keepTrying && m_outcome != NPreProcessor::Settled);
    }

    void TellConditions() {
        if (m_options.json) {
            return;
        }
        for (const ResultChoice& choice : m_watch.results) {
            m_terminal.out << SettlingLine(m_host.Settling(), choice) << std::endl;
        }
        m_terminal.out << Format("time-out %.10g s", m_watch.timeoutMs / 1000.0) << std::endl;
    }

    bool OpenOutputs() {
        if (!m_csv.Open(m_terminal.err) || !m_plot.Open(m_terminal.err) || !m_csv.Publish(m_terminal.err)) {
            return false;
        }
        if (m_csv.IsWanted()) {
            m_report.WriteCsvHeader(m_csv.Stream());
        }
        return true;
    }

    bool WriteOutputs() {
        if (m_plot.IsWanted()) {
            m_plot.Stream() << DrawSvg(m_report.MakePlot(m_outcome));
        }
        const bool plotted = m_plot.Close(m_terminal.err);
        return m_csv.Close(m_terminal.err) && plotted;
    }

    void TakeSample(const SettlingSample& sample) {
        if (m_csv.IsWanted()) {
            m_report.WriteCsvRow(m_csv.Stream(), sample);
        }
        if (!m_options.json) {
            m_terminal.out << m_report.SampleLine(sample) << std::endl;
        }
    }

    void TellJudgements() {
        if (m_options.json) {
            return;
        }
        for (const std::string& line : m_report.JudgementLines()) {
            m_terminal.out << line << std::endl;
        }
        m_terminal.out << WordOf(m_outcome) << " after " << m_run.DecidedAt() << " ms";
        if (m_outcome == NPreProcessor::NotSettled) {
            m_terminal.out << ": a result did not agree within more than three times its number of values"
                           << (m_watch.keepTrying ? "; trying again"
                                                  : "; --keep-trying goes on until --timeout");
        }
        m_terminal.out << std::endl;
    }

    SettlingRun m_run;
    WatchReport m_report;
    ReferenceHost& m_host;
    const BenchOptions& m_options;
    const WatchOptions& m_watch;
    Terminal& m_terminal;
    OutputFile m_csv;
    OutputFile m_plot;
    NPreProcessor::EResult m_outcome = NPreProcessor::None;
};

} // namespace

int RunWatch(const BenchOptions& options, const WatchOptions& watch, Terminal& terminal) {
    std::vector<int> units;
    if (const std::string error = ChooseUnits(watch, units); !error.empty()) {
        terminal.err << "kalvio-bench: " << error << std::endl;
        return kExitUsage;
    }
    return WithUnit(options, terminal,
                    {.prepare = [&](ReferenceHost& host) { return Prepare(host, watch); },
                     .run =
                         [&](BenchApplication& application) {
                             return WatchCommand(application.Host(), options, watch, units, terminal).Run();
                         }});
}

} // namespace kalvio::bench
