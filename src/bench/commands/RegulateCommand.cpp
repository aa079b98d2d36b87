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

int Regulate(ReferenceHost& host, const BenchOptions& options, const RegulateOptions& regulate,
             OutputFile& plotFile, Terminal& terminal) {
    CRegulationSettings& document = host.Regulation();
    if (const std::string error = ApplySetup(regulate.setup, document); !error.empty()) {
        terminal.err << "kalvio-bench: " << error << std::endl;
        return kExitUsage;
    }
    host.SetGenerator(regulate.generator.volts, regulate.generator.hertz);
    const RegulationReport report(document);
    RegulationRun run(host);
    if (!run.Start())
        return kExitUsage;
    if (!options.json) {
        terminal.out << RegulationReport::Header() << std::endl;
        run.onStep = [&](const NPreProcessor::RegulationStep& step) {
            terminal.out << report.Row(step) << std::endl;
        };
    }
    const NPreProcessor::EResult outcome = run.Wait();
    const Plot plot = report.MakePlot(run, kTitle);
    if (options.json)
        terminal.out << DumpJson(report.ToJson(run, outcome)) << std::endl;
    else
        terminal.out << "\n" << DrawTerminal(plot) << "\n" << report.Outcome(run, outcome) << std::endl;
    if (plotFile.IsWanted())
        plotFile.Stream() << DrawSvg(plot);
    const bool fine = plotFile.Close(terminal.err) && outcome == NPreProcessor::Succeeded;
    return fine ? kExitOk : kExitRunFailed;
}

} // namespace

int RunRegulate(const BenchOptions& options, const RegulateOptions& regulate, Terminal& terminal) {
    OutputFile plotFile(regulate.plotFile);
    if (!plotFile.Open(terminal.err))
        return kExitRunFailed;
    return WithUnit(options, terminal, [&](BenchApplication& application) {
        return Regulate(application.Host(), options, regulate, plotFile, terminal);
    });
}

} // namespace kalvio::bench
