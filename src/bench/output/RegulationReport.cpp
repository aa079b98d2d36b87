#include "bench/output/RegulationReport.h"

#include "reference_host/results/OutcomeTexts.h"

#include <nlohmann/json.hpp>

namespace kalvio::bench {

using Json = nlohmann::ordered_json;

namespace {

constexpr int kAbsolute = 0;

} // namespace

RegulationReport::RegulationReport(CRegulationSettings& document)
    : m_result{document.GetResultUnit(), document.ResultReferences()},
      m_source{document.GetSourceUnit(), document.SourceReferences()},
      m_absolute(document.GetRegulationType() == kAbsolute) {
    double target = 0.0;
    int references = 0;
    document.GetResultRange(m_lower, target, m_upper, references);
}

std::string RegulationReport::Header() {
    return Format("%4s  %14s  %14s  %-12s  %-24s  %14s", "step", "source", "result", "settling", "rule",
                  "next source");
}

std::string RegulationReport::Row(const NPreProcessor::RegulationStep& step) const {
    const bool goesOn = step.outcome == NPreProcessor::Working;
    return Format("%4d  %14s  %14s  %-12s  %-24s  %14s", step.iteration, m_source.Text(step.source).c_str(),
                  m_result.Text(step.result).c_str(), WordOf(step.settling), NameOf(step.rule),
                  goesOn ? m_source.Text(step.nextSource).c_str() : WordOf(step.outcome));
}

std::string RegulationReport::Outcome(const RegulationRun& run, NPreProcessor::EResult outcome) const {
    std::string text = RegulationText(outcome);
    if (run.Steps().empty())
        return text;
    const NPreProcessor::RegulationStep& last = run.Steps().back();
    return text + Format(" %s at %s after %zu steps", m_result.Text(last.result).c_str(),
                         m_source.Text(last.source).c_str(), run.Steps().size());
}

Json RegulationReport::StepJson(const NPreProcessor::RegulationStep& step) const {
    return {{"step", step.iteration},
            {"phase", step.phase},
            {"source", m_source.Shown(step.source)},
            {"result", m_result.Shown(step.result)},
            {"settling", WordOf(step.settling)},
            {"rule", NameOf(step.rule)},
            {"next-source", m_source.Shown(step.nextSource)},
            {"outcome", WordOf(step.outcome)}};
}

Json RegulationReport::ToJson(const RegulationRun& run, NPreProcessor::EResult outcome) const {
    Json steps = Json::array();
    for (const NPreProcessor::RegulationStep& step : run.Steps())
        steps.push_back(StepJson(step));
    return {{"outcome", WordOf(outcome)},
            {"text", RegulationText(outcome)},
            {"result-unit", GetStringForUnit(m_result.unit)},
            {"source-unit", GetStringForUnit(m_source.unit)},
            {"steps", steps}};
}

Plot RegulationReport::MakePlot(const RegulationRun& run, const std::string& title) const {
    Plot plot;
    plot.title = title;
    plot.xLabel = "source (" + GetStringForUnit(m_source.unit) + ")";
    plot.yLabel = "result (" + GetStringForUnit(m_result.unit) + ")";
    PlotSeries series{"steps", {}};
    for (const NPreProcessor::RegulationStep& step : run.Steps())
        series.points.push_back({m_source.Shown(step.source), m_result.Shown(step.result)});
    if (m_absolute)
        plot.bands.push_back({"target", m_result.Shown(m_lower), m_result.Shown(m_upper)});
    if (!series.points.empty())
        plot.marks.push_back({"end", series.points.back().x});
    plot.series.push_back(std::move(series));
    return plot;
}

} // namespace kalvio::bench
