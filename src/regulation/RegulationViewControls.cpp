#include "regulation/RegulationViewControls.h"

#include "host/MeasurementHelpers.h"
#include "regulation/RegulationSettings.h"

#include <algorithm>
#include <iterator>

namespace kalvio::regulation {
namespace {

constexpr ViewControl kControls[] = {
    {kCtrlResult, ControlContent::Detector, ControlRule::Idle},
    {kCtrlChannel, ControlContent::Choice, ControlRule::BothChannels},
    {kCtrlRegulationType, ControlContent::Choice, ControlRule::Idle},
    {kCtrlRegulateTo, ControlContent::Real, ControlRule::Absolute, true},
    {kCtrlResultUnit, ControlContent::Choice, ControlRule::Absolute},
    {kCtrlToleranceType, ControlContent::Choice, ControlRule::Idle},
    {kCtrlTolerance, ControlContent::Real, ControlRule::Idle},
    {kCtrlToleranceUnit, ControlContent::Choice, ControlRule::Idle},
    {kCtrlTrend, ControlContent::Choice, ControlRule::Absolute},
    {kCtrlSensitivity, ControlContent::Real, ControlRule::Extremum},
    {kCtrlTimeout, ControlContent::Integer, ControlRule::Idle},
    {kCtrlContinuous, ControlContent::Flag, ControlRule::Idle},
    {kCtrlUseSettling, ControlContent::Flag, ControlRule::Idle},
    {kCtrlSource, ControlContent::Detector, ControlRule::Idle},
    {kCtrlOppositeChannel, ControlContent::Flag, ControlRule::GeneratorSource},
    {kCtrlSourceMinLimit, ControlContent::Real, ControlRule::Idle, true},
    {kCtrlSourceMaxLimit, ControlContent::Real, ControlRule::Idle, true},
    {kCtrlSourceUnit, ControlContent::Choice, ControlRule::Idle},
    {kCtrlStepSize, ControlContent::Real, ControlRule::OwnStep},
    {kCtrlStepSizeAuto, ControlContent::Flag, ControlRule::Steps},
    {kCtrlDirection, ControlContent::Choice, ControlRule::Steps},
    {kCtrlStart, ControlContent::Button, ControlRule::Idle},
    {kCtrlAbort, ControlContent::Button, ControlRule::Running},
    {kCtrlStatus, ControlContent::Status, ControlRule::Always},
};

constexpr Consequence kConsequences[] = {
    {kCtrlResult, kCtrlResultUnit, true},
    {kCtrlResult, kCtrlToleranceUnit, true},
    {kCtrlResult, kCtrlRegulateTo},
    {kCtrlResult, kCtrlTolerance},
    {kCtrlResultFftDetector, kCtrlResult},
    {kCtrlResultFftDetector, kCtrlResultUnit, true},
    {kCtrlRegulationType, kCtrlToleranceType, true},
    {kCtrlRegulationType, kCtrlChannel, true},
    {kCtrlRegulationType, kCtrlToleranceUnit, true},
    {kCtrlToleranceType, kCtrlToleranceUnit, true},
    {kCtrlToleranceType, kCtrlTolerance},
    {kCtrlResultUnit, kCtrlToleranceUnit, true},
    {kCtrlResultUnit, kCtrlRegulateTo},
    {kCtrlResultUnit, kCtrlTolerance},
    {kCtrlToleranceUnit, kCtrlTolerance},
    {kCtrlSourceFftDetector, kCtrlSource},
    {kCtrlSource, kCtrlSourceUnit, true},
    {kCtrlSource, kCtrlSourceMinLimit},
    {kCtrlSource, kCtrlSourceMaxLimit},
    {kCtrlSource, kCtrlStepSize},
    {kCtrlSourceUnit, kCtrlSourceMinLimit},
    {kCtrlSourceUnit, kCtrlSourceMaxLimit},
    {kCtrlSourceUnit, kCtrlStepSize},
    {kCtrlStepSizeAuto, kCtrlStepSize},
};

} // namespace

std::span<const ViewControl> ViewControls() {
    return kControls;
}

const ViewControl* FindViewControl(int ctrlID) {
    const auto* const control = std::ranges::find(kControls, ctrlID, &ViewControl::ctrlID);
    return control == std::end(kControls) ? nullptr : control;
}

std::span<const Consequence> Consequences() {
    return kConsequences;
}

bool IsChoice(const ViewControl& control) {
    return control.content == ControlContent::Choice || control.content == ControlContent::Detector;
}

bool Applies(ControlRule rule, CRegulationSettings& document) {
    const bool idle = document.IsRegulationRunning() == 0;
    const bool absolute = document.GetRegulationType() == kAbsolute;
    switch (rule) {
    case ControlRule::Idle:
        return idle;
    case ControlRule::Absolute:
        return idle && absolute;
    case ControlRule::Extremum:
        return idle && !absolute;
    case ControlRule::BothChannels:
        return idle && IsMultiChannelResult(document.GetResult()) != 0;
    case ControlRule::GeneratorSource:
        return idle && (document.GetSource() == kSourceGeneratorFrequency ||
                        document.GetSource() == kSourceGeneratorAmplitude);
    case ControlRule::Steps:
        return idle && document.IsMonotonic() == 0;
    case ControlRule::OwnStep:
        return idle && document.IsMonotonic() == 0 && document.GetStepSizeAuto() == 0;
    case ControlRule::Running:
        return !idle;
    case ControlRule::Always:
        break;
    }
    return true;
}

int ShownFieldIndex(CRegulationSettings& document, int ctrlID) {
    if (ctrlID != kCtrlTolerance) {
        return document.GetFieldIndexForCtrlID(ctrlID, kUnitNone);
    }
    if (document.GetToleranceType() == kRatio) {
        return kToleranceRatio;
    }
    return IsdBUnit(document.GetResultUnit()) ? kToleranceOffsetDb : kToleranceOffset;
}

} // namespace kalvio::regulation
