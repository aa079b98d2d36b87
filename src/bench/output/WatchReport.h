#pragma once

// A settling run as lines, as JSON, as a table of samples and as a plot.

#include "bench/ReferenceHostNames.h"
#include "bench/plots/Plot.h"
#include "reference_host/measurement/SettlingRun.h"

#include <nlohmann/json_fwd.hpp>

#include <ostream>

namespace kalvio::bench {

class WatchReport {
public:
    // The unit of each result's values, in the order of the run's results.
    WatchReport(const SettlingRun& run, std::vector<int> units, SReferences references)
        : m_run(run), m_units(std::move(units)), m_references(references) {}

    // "  120 ms  rms 0.9981 V  freq 1000.00 Hz"
    [[nodiscard]] std::string SampleLine(const SettlingSample& sample) const;
    // One line for each result: outcome, value, and the rule that decided.
    [[nodiscard]] std::vector<std::string> JudgementLines() const;
    [[nodiscard]] nlohmann::ordered_json SampleJson(const SettlingSample& sample) const;
    [[nodiscard]] nlohmann::ordered_json ToJson(NPreProcessor::EResult outcome) const;
    // A table of time in milliseconds and the values in their units, comma-separated: the line of names and
    // one line for a sample, each flushed, so that what was measured survives whatever ends the program.
    void WriteCsvHeader(std::ostream& stream) const;
    void WriteCsvRow(std::ostream& stream, const SettlingSample& sample) const;
    // The results in panels of one unit each, with the tolerance around each settled value.
    [[nodiscard]] Plot MakePlot(NPreProcessor::EResult outcome) const;

private:
    [[nodiscard]] std::optional<double> Shown(std::size_t index, double storageValue) const {
        return ShownValue(storageValue, m_units[index], m_references);
    }
    [[nodiscard]] std::string Formatted(std::size_t index, double storageValue) const {
        return FormatValue(storageValue, m_units[index], m_references);
    }
    [[nodiscard]] const std::string& NameOf(std::size_t index) const { return m_run.Choices()[index].name; }
    [[nodiscard]] nlohmann::ordered_json JudgementJson(std::size_t index) const;
    void AddToPlot(std::size_t index, Plot& plot) const;
    static Plot& PanelOf(int unit, Plot& plot);

    const SettlingRun& m_run;
    std::vector<int> m_units;
    SReferences m_references;
};

} // namespace kalvio::bench
