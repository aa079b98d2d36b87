#include "bench/commands/Commands.h"

#include "bench/commands/WithUnit.h"
#include "bench/output/JsonOutput.h"
#include "bench/output/OutputFile.h"
#include "bench/output/RegulationReport.h"
#include "bench/plots/SvgPlot.h"
#include "bench/plots/TerminalPlot.h"

namespace kalvio::bench {

namespace {

constexpr const char* kTitle = "Regulation";

// Before the unit is touched: empty, or what was refused.
std::string Prepare(ReferenceHost& host, const RegulateOptions& regulate) {
    const std::string refusal = ApplySetup(regulate.setup, host.Regulation());
    return refusal.empty() ? host.RefuseGenerator(regulate.generator.volts, regulate.generator.hertz)
                           : refusal;
}

int Regulate(ReferenceHost& host, const BenchOptions& options, const RegulateOptions& regulate,
             Terminal& terminal) {
    OutputFile plotFile(regulate.plotFile);
    if (!plotFile.Open(terminal.err)) {
        return kExitRunFailed;
    }
    CRegulationSettings& document = host.Regulation();
    host.SetGenerator(regulate.generator.volts, regulate.generator.hertz);
    const RegulationReport report(document);
    RegulationRun run(host);
    if (!run.Start()) {
        return kExitUsage;
    }
    if (!options.json) {
        terminal.out << report.Conditions() << "\n" << RegulationReport::Header() << std::endl;
        run.onStep = [&](const NPreProcessor::RegulationStep& step) {
            terminal.out << report.Row(step) << std::endl;
        };
    }
    const NPreProcessor::EResult outcome = run.Wait();
    const Plot plot = report.MakePlot(run, kTitle);
    if (options.json) {
        terminal.out << DumpJson(report.ToJson(run, outcome)) << std::endl;
    } else {
        terminal.out << "\n" << DrawTerminal(plot) << "\n" << report.Outcome(run, outcome) << std::endl;
    }
    if (plotFile.IsWanted()) {
        plotFile.Stream() << DrawSvg(plot);
    }
    const bool fine = plotFile.Close(terminal.err) && outcome == NPreProcessor::Succeeded;
    return fine ? kExitOk : kExitRunFailed;
}

} // namespace

int RunRegulate(const BenchOptions& options, const RegulateOptions& regulate, Terminal& terminal) {
    const bool seeksValue = regulate.setup.type.empty() || regulate.setup.type == "absolute";
    if (seeksValue && !regulate.setup.to) {
        terminal.err
            << "kalvio-bench: regulate needs a value to reach, --to VALUE, or --type max or --type min"
            << std::endl;
        return kExitUsage;
    }
    return WithUnit(options, terminal,
                    {.prepare = [&](ReferenceHost& host) { return Prepare(host, regulate); },
                     .run =
                         [&](BenchApplication& application) {
                             return Regulate(application.Host(), options, regulate, terminal);
                         }});
}

} // namespace kalvio::bench
