#include "bench/Commands.h"

#include "bench/JsonOutput.h"
#include "bench/OutputFile.h"
#include "bench/RegulationReport.h"
#include "bench/SvgPlot.h"
#include "bench/TerminalPlot.h"
#include "bench/WithUnit.h"

namespace kalvio::bench {

namespace {

constexpr const char* kTitle = "Regulation";

int Regulate(BenchApplication& application, const BenchOptions& options, const RegulateOptions& regulate,
             OutputFile& plotFile, Terminal& terminal) {
    CRegulationSettings& document = application.Regulation();
    if (const std::string error = ApplySetup(regulate.setup, document); !error.empty()) {
        terminal.err << "kalvio-bench: " << error << std::endl;
        return kExitUsage;
    }
    application.SetGenerator(regulate.generator.volts, regulate.generator.hertz);
    const RegulationReport report(document);
    RegulationRun run(application);
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
        return Regulate(application, options, regulate, plotFile, terminal);
    });
}

} // namespace kalvio::bench
