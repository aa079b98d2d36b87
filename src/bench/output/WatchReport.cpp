#include "bench/output/WatchReport.h"

#include "reference_host/results/OutcomeTexts.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace kalvio::bench {

using Json = nlohmann::ordered_json;

namespace {

Json Optional(const std::optional<double>& value) {
    return value ? Json(*value) : Json(nullptr);
}

bool HasValue(const SettlingJudgement& judgement) {
    return judgement.status == NPreProcessor::Settled || judgement.status == NPreProcessor::NotSettled;
}

const char* StatusWord(const SettlingJudgement& judgement) {
    return judgement.status == NPreProcessor::None
               ? "undecided"
               : WordOf(static_cast<NPreProcessor::EResult>(judgement.status));
}

} // namespace

std::string WatchReport::SampleLine(const SettlingSample& sample) const {
    std::string line = Format("%6u ms", sample.time);
    for (std::size_t i = 0; i < sample.values.size(); ++i) {
        line += "  " + NameOf(i) + " " + Formatted(i, sample.values[i]);
    }
    return line;
}

std::vector<std::string> WatchReport::JudgementLines() const {
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < m_run.Judgements().size(); ++i) {
        const SettlingJudgement& judgement = m_run.Judgements()[i];
        const std::string at = HasValue(judgement) ? " at " + Formatted(i, judgement.value) : "";
        const std::string why = VerdictText(judgement.status, judgement.verdict, m_units[i], m_references);
        lines.push_back(
            Format("%s: %s%s: %s", NameOf(i).c_str(), StatusWord(judgement), at.c_str(), why.c_str()));
    }
    return lines;
}

Json WatchReport::SampleJson(const SettlingSample& sample) const {
    Json json{{"time", sample.time}};
    for (std::size_t i = 0; i < sample.values.size(); ++i) {
        json[NameOf(i)] = Optional(Shown(i, sample.values[i]));
    }
    return json;
}

Json WatchReport::JudgementJson(std::size_t index) const {
    const SettlingJudgement& judgement = m_run.Judgements()[index];
    const SettlingVerdict& verdict = judgement.verdict;
    Json values = Json::array();
    for (int i = 0; i < verdict.count; ++i) {
        values.push_back(Optional(Shown(index, verdict.values[static_cast<std::size_t>(i)])));
    }
    return {{"result", NameOf(index)},
            {"unit", GetStringForUnit(m_units[index])},
            {"status", StatusWord(judgement)},
            {"value", HasValue(judgement) ? Optional(Shown(index, judgement.value)) : Json(nullptr)},
            {"values", values},
            {"needed", verdict.needed},
            {"tolerance-percent", verdict.tolerance * 100.0},
            {"tolerance-type", WordOfTolerance(verdict.toleranceType)},
            {"stable", verdict.stable},
            {"disagreeing", verdict.disagreeing != 0 ? Json(verdict.disagreeing) : Json(nullptr)},
            {"why", VerdictText(judgement.status, verdict, m_units[index], m_references)}};
}

Json WatchReport::ToJson(NPreProcessor::EResult outcome) const {
    Json results = Json::array();
    for (std::size_t i = 0; i < m_run.Judgements().size(); ++i) {
        results.push_back(JudgementJson(i));
    }
    Json samples = Json::array();
    for (const SettlingSample& sample : m_run.Samples()) {
        samples.push_back(SampleJson(sample));
    }
    return {{"outcome", WordOf(outcome)},
            {"decided-after-ms", m_run.DecidedAt()},
            {"results", results},
            {"samples", samples}};
}

void WatchReport::WriteCsvHeader(std::ostream& stream) const {
    stream << "time_ms";
    for (std::size_t i = 0; i < m_units.size(); ++i) {
        stream << "," << NameOf(i) << " (" << GetStringForUnit(m_units[i]) << ")";
    }
    stream << std::endl;
}

void WatchReport::WriteCsvRow(std::ostream& stream, const SettlingSample& sample) const {
    stream << sample.time;
    for (std::size_t i = 0; i < sample.values.size(); ++i) {
        const std::optional<double> value = Shown(i, sample.values[i]);
        stream << "," << (value ? Format("%.9g", *value) : "");
    }
    stream << std::endl;
}

void WatchReport::AddToPlot(std::size_t index, Plot& plot) const {
    PlotSeries series{NameOf(index), {}};
    for (const SettlingSample& sample : m_run.Samples()) {
        if (const std::optional<double> value = Shown(index, sample.values[index])) {
            series.points.push_back({static_cast<double>(sample.time), *value});
        }
    }
    plot.series.push_back(std::move(series));
    if (index >= m_run.Judgements().size()) {
        return;
    }
    const SettlingJudgement& judgement = m_run.Judgements()[index];
    if (judgement.status != NPreProcessor::Settled) {
        return;
    }
    const double allowed = std::fabs(judgement.value) * judgement.verdict.tolerance;
    const std::optional<double> low = Shown(index, judgement.value - allowed);
    const std::optional<double> high = Shown(index, judgement.value + allowed);
    plot.bands.push_back({"tolerance of " + NameOf(index), low.value_or(0.0), high.value_or(0.0)});
}

// Each unit has a panel of its own.
Plot& WatchReport::PanelOf(int unit, Plot& plot) {
    const std::string label = GetStringForUnit(unit);
    if (plot.yLabel == label) {
        return plot;
    }
    for (Plot& further : plot.further) {
        if (further.yLabel == label) {
            return further;
        }
    }
    plot.further.emplace_back();
    plot.further.back().yLabel = label;
    return plot.further.back();
}

Plot WatchReport::MakePlot(NPreProcessor::EResult outcome) const {
    Plot plot;
    plot.title = "Settling";
    plot.xLabel = "time (ms)";
    plot.yLabel = GetStringForUnit(m_units.front());
    for (std::size_t i = 0; i < m_units.size(); ++i) {
        AddToPlot(i, PanelOf(m_units[i], plot));
    }
    plot.marks.push_back({Format("%s after %u ms", WordOf(outcome), m_run.DecidedAt()),
                          static_cast<double>(m_run.DecidedAt())});
    return plot;
}

} // namespace kalvio::bench
