#pragma once

// A regulation run as a table, as JSON and as a plot.

#include "bench/ReferenceHostNames.h"
#include "bench/plots/Plot.h"
#include "reference_host/regulation/RegulationRun.h"
#include "reference_host/results/ResultCatalogue.h"

#include <nlohmann/json_fwd.hpp>

namespace kalvio::bench {

// Holds the document's units at the time it is made.
class RegulationReport {
public:
    explicit RegulationReport(CRegulationSettings& document);

    [[nodiscard]] static std::string Header();
    [[nodiscard]] std::string Row(const NPreProcessor::RegulationStep& step) const;
    // "Regulation successful! 1.0003 V at 2.1034 V after 6 steps"
    [[nodiscard]] std::string Outcome(const RegulationRun& run, NPreProcessor::EResult outcome) const;
    [[nodiscard]] nlohmann::ordered_json StepJson(const NPreProcessor::RegulationStep& step) const;
    [[nodiscard]] nlohmann::ordered_json ToJson(const RegulationRun& run,
                                                NPreProcessor::EResult outcome) const;
    // The result over the source, in the order of the steps, with the window that is aimed at.
    [[nodiscard]] Plot MakePlot(const RegulationRun& run, const std::string& title) const;

private:
    struct Side {
        int unit;
        SReferences references;
        [[nodiscard]] double Shown(double storage) const {
            return CPhysicalValue::StorageToUnit(storage, unit, references);
        }
        [[nodiscard]] std::string Text(double storage) const {
            return FormatValue(storage, unit, references);
        }
    };

    Side m_result;
    Side m_source;
    bool m_absolute;
    double m_lower = 0.0; // storage units
    double m_upper = 0.0;
};

} // namespace kalvio::bench
