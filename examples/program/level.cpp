// A program outside the tree: brings the virtual unit up with a device of gain 0.5 behind its generator,
// watches the level settle and regulates it to 1 V.

#include "reference_host/application/ReferenceHost.h"
#include "reference_host/measurement/SettlingRun.h"
#include "reference_host/regulation/RegulationRun.h"
#include "reference_host/regulation/RegulationSetup.h"
#include "reference_host/results/OutcomeTexts.h"

#include <cstdio>

using namespace kalvio::reference_host;

int main() {
    ReferenceHost host({.device = {.gain = 0.5, .noiseVolts = 0.0005}});
    if (const BringUpResult result = host.BringUp(); !result.Ok()) {
        return std::printf("%s\n", result.text.c_str()), 1;
    }

    SettlingRun watch(host, {*FindResult("rms")});
    watch.Prepare();
    const auto settled = watch.Run(5000);
    const double level = watch.Judgements().front().value;
    std::printf("%s at %s\n", WordOf(settled), FormatValue(level, kUnitVolt, {}).c_str());

    const RegulationSetup setup{.to = 1.0, .unit = "V", .minimum = 0.1, .maximum = 5.0, .tolerance = 0.01};
    if (const std::string error = ApplySetup(setup, host.Regulation()); !error.empty()) {
        return std::printf("%s\n", error.c_str()), 1;
    }
    RegulationRun run(host);
    const auto outcome = run.Start() ? run.Wait() : NPreProcessor::Failed;
    std::printf("%s %s\n", RegulationText(outcome).c_str(),
                FormatValue(run.Steps().back().result, kUnitVolt, {}).c_str());
    return settled == NPreProcessor::Settled && outcome == NPreProcessor::Succeeded ? 0 : 1;
}
