#include "bench/output/RegulationReport.h"

#include "platform/Json.h"
#include "reference_host/results/OutcomeTexts.h"

#include <nlohmann/json.hpp>

#include <iterator>

namespace kalvio::bench {

using Json = nlohmann::ordered_json;

namespace {

constexpr int kAbsolute = 0;
constexpr const char* kTypes[] = {"absolute", "max", "min"};
constexpr double kMillisecondsPerSecond = 1000.0;

} // namespace

RegulationReport::RegulationReport(CRegulationSettings& document)
    : m_result{document.GetResultUnit(), document.ResultReferences()},
      m_source{document.GetSourceUnit(), document.SourceReferences()},
      m_type(document.GetRegulationType()),
      m_tolerance(ReadSetting(document, "REG_Tolerance")),
      m_sensitivity(ReadSetting(document, "REG_Sensitivity")),
      m_timeout(ReadSetting(document, "REG_Timeout")) {
    int references = 0;
    double step = 0.0;
    document.GetResultRange(m_lower, m_target, m_upper, references);
    document.GetSourceRange(m_sourceMinimum, step, m_sourceMaximum, references);
}

RegulationReport::Setting RegulationReport::ReadSetting(CRegulationSettings& document, const char* property) {
    Setting setting;
    document.GetProperty(property).value.Get(setting.value);
    setting.unit = document.DescribeProperty(*document.FindName(property)).unit;
    return setting;
}

std::string RegulationReport::Setting::Text() const {
    return ShortestText(value) + (unit.empty() ? "" : " " + unit);
}

std::string RegulationReport::Conditions() const {
    const std::string goal =
        m_type == kAbsolute
            ? Format("to %s, window %s to %s", m_result.Text(m_target).c_str(),
                     m_result.Text(m_lower).c_str(), m_result.Text(m_upper).c_str())
            : Format("to the %s value, tolerance %s, sensitivity %s", m_type == 1 ? "largest" : "smallest",
                     m_tolerance.Text().c_str(), m_sensitivity.Text().c_str());
    return Format("%s; source %s to %s, time-out %g s", goal.c_str(), m_source.Text(m_sourceMinimum).c_str(),
                  m_source.Text(m_sourceMaximum).c_str(), m_timeout.value);
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
    if (run.Steps().empty()) {
        return text;
    }
    const NPreProcessor::RegulationStep& last = run.Steps().back();
    return text + Format(" %s at %s after %zu step%s", m_result.Text(last.result).c_str(),
                         m_source.Text(last.source).c_str(), run.Steps().size(),
                         run.Steps().size() == 1 ? "" : "s");
}

Json RegulationReport::StepJson(const NPreProcessor::RegulationStep& step, std::uint32_t milliseconds) const {
    const auto result = ShownValue(step.result, m_result.unit, m_result.references);
    const bool goesOn = step.outcome == NPreProcessor::Working;
    return {{"step", step.iteration},
            {"time", milliseconds},
            {"phase", step.phase},
            {"source", m_source.Shown(step.source)},
            {"result", result ? Json(*result) : Json(nullptr)},
            {"settling", WordOf(step.settling)},
            {"rule", NameOf(step.rule)},
            {"next-source", goesOn ? Json(m_source.Shown(step.nextSource)) : Json(nullptr)},
            {"outcome", WordOf(step.outcome)}};
}

Json RegulationReport::ToJson(const RegulationRun& run, NPreProcessor::EResult outcome) const {
    Json steps = Json::array();
    for (std::size_t i = 0; i < run.Steps().size(); ++i) {
        steps.push_back(StepJson(run.Steps()[i], run.StepTimes()[i]));
    }
    const auto type = static_cast<std::size_t>(m_type);
    Json json{{"outcome", WordOf(outcome)},
              {"text", RegulationText(outcome)},
              {"type", type < std::size(kTypes) ? kTypes[type] : "unknown"},
              {"result-unit", GetStringForUnit(m_result.unit)},
              {"source-unit", GetStringForUnit(m_source.unit)}};
    json["target"] = nullptr;
    json["window"] = nullptr;
    json["sensitivity"] = nullptr;
    if (m_type == kAbsolute) {
        json["target"] = m_result.Shown(m_target);
        json["window"] = {{"lower", m_result.Shown(m_lower)}, {"upper", m_result.Shown(m_upper)}};
    } else {
        json["sensitivity"] = {{"value", m_sensitivity.value}, {"unit", m_sensitivity.unit}};
    }
    json["tolerance"] = {{"value", m_tolerance.value}, {"unit", m_tolerance.unit}};
    json["source-limits"] = {{"lower", m_source.Shown(m_sourceMinimum)},
                             {"upper", m_source.Shown(m_sourceMaximum)}};
    json["timeout"] = m_timeout.value * kMillisecondsPerSecond;
    json["time"] = run.EndedAt();
    json["source"] = steps.empty() ? Json(nullptr) : steps.back()["source"];
    json["result"] = steps.empty() ? Json(nullptr) : steps.back()["result"];
    json["steps"] = steps;
    return json;
}

Plot RegulationReport::MakePlot(const RegulationRun& run, const std::string& title) const {
    Plot plot;
    plot.title = title;
    plot.xLabel = "source (" + GetStringForUnit(m_source.unit) + ")";
    plot.yLabel = "result (" + GetStringForUnit(m_result.unit) + ")";
    plot.xMayBeLogarithmic = m_source.unit == kUnitHertz || m_source.unit == kUnitKilohertz;
    PlotSeries series{"steps", {}, true};
    for (const NPreProcessor::RegulationStep& step : run.Steps()) {
        series.points.push_back({m_source.Shown(step.source), m_result.Shown(step.result), step.phase - 1});
    }
    if (m_type == kAbsolute) {
        plot.bands.push_back({"target", m_result.Shown(m_lower), m_result.Shown(m_upper)});
    }
    if (!series.points.empty()) {
        plot.marks.push_back({"end", series.points.back().x});
    }
    plot.series.push_back(std::move(series));
    return plot;
}

} // namespace kalvio::bench
