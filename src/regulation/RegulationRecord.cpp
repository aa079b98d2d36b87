// What the document tells the regulator.

#include "host/HostApplication.h"
#include "regulation/RegulationSettings.h"

#include <algorithm>
#include <cmath>

using namespace kalvio::regulation;

namespace {

constexpr int kNone = -1;
constexpr double kPercent = 100.0;

bool IsFourWayChoice(int value) {
    return value >= 0 && value <= 3;
}

} // namespace

bool CRegulationSettings::IsSplit() {
    int a = kNone;
    int b = kNone;
    int detector = 0;
    ChannelNumber channel = kChannelA;
    return m_channel == kBothSeparately && GetResultIDs(a, b, detector, channel) != 0 &&
           channel == kChannelBoth;
}

bool CRegulationSettings::IsSecondPass() {
    return IsSplit() && IsRegulationRunning() && m_passCounter == 1;
}

int CRegulationSettings::GetRegulationDetails(RegulationDetails& details) {
    RegulationDetails d;
    ChannelNumber channel = kChannelA;
    if (!IsFourWayChoice(m_trend) || !IsFourWayChoice(m_direction) ||
        GetResultIDs(d.resultA, d.resultB, d.detector, channel) == 0) {
        return 0;
    }
    d.channelMode = channel;
    d.resultSettings = GetSettingsForCtrlID(d.resultA, d.detector);
    GetSourceCtrlIDs(d.sourceCtrlID, d.secondSourceCtrlID, d.sourceDetector);
    SplitPasses(d);
    d.sourceSettings = GetSettingsForCtrlID(d.sourceCtrlID, d.sourceDetector);
    ChooseAlgorithm(d);
    d.timeout = m_timeout;
    d.continuous = m_continuous;
    d.direction = m_direction;
    if (d.algorithm != NPreProcessor::kMonotonic && d.direction == NPreProcessor::kDirectionUnknown) {
        WriteSource(d.sourceCtrlID, m_sourceMinLimit);
        d.direction = NPreProcessor::kUp;
    }
    SourceRange(d.sourceCtrlID, d.sourceMinimum, d.initialStep, d.sourceMaximum, d.sourceReferences);
    details = d;
    return 1;
}

void CRegulationSettings::SplitPasses(RegulationDetails& d) {
    if (!IsSplit()) {
        return;
    }
    if (IsSecondPass()) {
        d.resultA = kNone;
        d.channelMode = kChannelB;
        // A source without channels serves both passes.
        d.sourceCtrlID = d.secondSourceCtrlID != kNone ? d.secondSourceCtrlID : d.sourceCtrlID;
    } else {
        d.resultB = kNone;
        d.channelMode = kChannelA;
    }
    d.secondSourceCtrlID = kNone;
}

void CRegulationSettings::ChooseAlgorithm(RegulationDetails& d) {
    if (IsAbsolute()) {
        const bool monotonic = m_trend != NPreProcessor::kTrendNonMonotonic;
        d.algorithm = monotonic ? NPreProcessor::kMonotonic : NPreProcessor::kNonMonotonic;
        d.trend = monotonic ? m_trend.Get() : NPreProcessor::kTrendUnknown;
        GetResultRange(d.lower, d.target, d.upper, d.resultReferences);
        return;
    }
    d.algorithm = m_regulationType == kMaximum ? NPreProcessor::kMaximum : NPreProcessor::kMinimum;
    d.trend = NPreProcessor::kTrendUnknown;
    d.lower = m_toleranceRatio;
    d.sensitivity = m_sensitivity / kPercent;
}

void CRegulationSettings::GetResultRange(double& lower, double& target, double& upper, int& references) {
    if (!IsAbsolute()) {
        lower = target = upper = 0.0;
        references = kUnitNone;
        return;
    }
    references = kUnitStorage;
    target = m_regulateTo;
    if (IsOffset()) {
        const auto toStorage = [this](double value) {
            return CPhysicalValue::UnitToStorage(value, m_resultUnit, m_resultReferences);
        };
        const double shown = CPhysicalValue::StorageToUnit(target, m_resultUnit, m_resultReferences);
        lower = toStorage(shown - m_toleranceOffset);
        target = toStorage(shown);
        upper = toStorage(shown + m_toleranceOffset);
        return;
    }
    // A negative target turns the edges round.
    std::tie(lower, upper) =
        std::minmax({(1.0 - m_toleranceRatio) * target, (1.0 + m_toleranceRatio) * target});
}

void CRegulationSettings::GetSourceRange(double& minimum, double& step, double& maximum, int& references) {
    SourceRange(GetSourceCtrlID(nullptr, nullptr), minimum, step, maximum, references);
}

void CRegulationSettings::SourceRange(int ctrlID, double& minimum, double& step, double& maximum,
                                      int& references) const {
    minimum = m_sourceMinLimit;
    maximum = m_sourceMaxLimit;
    references = kUnitStorage;
    if (m_stepSizeAuto != 0) {
        step = NPreProcessor::kAutomaticStep;
        return;
    }
    const CPhyValueMessenger now = ReadSource(ctrlID, m_sourceUnit);
    const double there =
        m_direction == NPreProcessor::kDown ? now.value - m_stepSize : now.value + m_stepSize;
    step = std::fabs(CPhysicalValue::UnitToStorage(there, m_sourceUnit, now.references) -
                     CPhysicalValue::UnitToStorage(now.value, m_sourceUnit, now.references));
}

CPhyValueMessenger CRegulationSettings::ReadSource(int ctrlID, int unit) const {
    CPhyValueMessenger messenger;
    messenger.ctrlID = ctrlID;
    messenger.get = true;
    messenger.unit = unit;
    if (CSettingsData* document = GetSettingsForCtrlID(ctrlID, m_sourceFftDetector); document != nullptr) {
        document->OnMessenger(&messenger);
    }
    return messenger;
}

void CRegulationSettings::WriteSource(int ctrlID, double storageValue) const {
    CPhyValueMessenger messenger;
    messenger.ctrlID = ctrlID;
    messenger.value = storageValue;
    if (CSettingsData* document = GetSettingsForCtrlID(ctrlID, m_sourceFftDetector); document != nullptr) {
        document->OnMessenger(&messenger);
    }
}
