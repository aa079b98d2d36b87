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
    // What the run goes for and within which limits, on one line.
    [[nodiscard]] std::string Conditions() const;
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

    // A value of the document in the unit that it shows, with the unit's text.
    struct Setting {
        double value = 0.0;
        CString unit;
        [[nodiscard]] std::string Text() const;
    };
    static Setting ReadSetting(CRegulationSettings& document, const char* property);
    [[nodiscard]] nlohmann::ordered_json StepJson(const NPreProcessor::RegulationStep& step,
                                                  std::uint32_t milliseconds) const;

    Side m_result;
    Side m_source;
    int m_type;           // as the document numbers it
    double m_lower = 0.0; // storage units, as all that follow
    double m_target = 0.0;
    double m_upper = 0.0;
    double m_sourceMinimum = 0.0;
    double m_sourceMaximum = 0.0;
    Setting m_tolerance;
    Setting m_sensitivity;
    Setting m_timeout; // seconds
};

} // namespace kalvio::bench
