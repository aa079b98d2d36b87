#include "regulation/RegulationTexts.h"

#include "platform/Text.h"
#include "regulation/RegulationFields.h"

namespace kalvio::regulation {
namespace {

constexpr TextResource kDescriptions[] = {
    {kTextResultField, "Result to regulate"},
    {kTextResultFftDetectorField, "FFT Detector for Result to regulate"},
    {kTextChannelField, "Channel(s) to regulate Result on"},
    {kTextRegulationTypeField, "Type of regulation"},
    {kTextRegulateToField, "Value to regulate to"},
    {kTextResultUnitField, "Unit for value to regulate to"},
    {kTextToleranceTypeField, "Type of tolerance to apply"},
    {kTextToleranceField, "Tolerance value"},
    {kTextToleranceUnitField, "Unit for tolerance value"},
    {kTextSensitivityField, "Sensitivity"},
    {kTextTrendField, "How Result varies with Source"},
    {kTextUseSettlingField, "Use Settling"},
    {kTextSourceField, "Source to vary"},
    {kTextSourceFftDetectorField, "FFT Detector for Source to regulate"},
    {kTextOppositeChannelField, "Use opposite channel of Source"},
    {kTextSourceMinLimitField, "Lower limit of Source"},
    {kTextSourceMaxLimitField, "Upper limit of Source"},
    {kTextSourceUnitField, "Unit for Source limits"},
    {kTextStepSizeField, "Initial step size for Source"},
    {kTextDirectionField, "Initial direction to change Source"},
    {kTextTimeoutField, "Timeout for regulation"},
    {kTextContinuousField, "Continuous regulation"},
    {kTextStartOperation, "Start Regulation"},
    {kTextAbortOperation, "Abort Regulation"},
    {kTextStatusOperation, "Get Regulation status"},
    {kTextResultGroup, "Regulation Result"},
    {kTextSourceGroup, "Regulation Source"},
    {kTextOperationGroup, "Regulation Operation"},
    {kTextTitle, "Regulation"},
};

constexpr TextResource kChoices[] = {
    {kTextRmsAmplitude, "Signal Analyzer RMS amplitude"},
    {kTextFrequency, "Signal Analyzer frequency"},
    {kTextPhase, "Signal Analyzer phase"},
    {kTextCtDetector, "CT Detector: %s"},
    {kTextFftDetector, "FFT Detector %d: %s"},
    {kTextBoth, "Both"},
    {kTextBothTied, "Both (source tied)"},
    {kTextTypeAbsolute, "an absolute value of"},
    {kTextTypeMaximum, "a maximum value"},
    {kTextTypeMinimum, "a minimum value"},
    {kTextOffset, "Offset"},
    {kTextRatio, "Ratio"},
    {kTextGeneratorFrequency, "Generator frequency"},
    {kTextGeneratorAmplitude, "Generator amplitude"},
    {kTextTrendIncreasing, "Monotonic, increasing"},
    {kTextTrendDecreasing, "Monotonic, decreasing"},
    {kTextTrendUnknown, "Monotonic, direction unknown"},
    {kTextTrendNonMonotonic, "Non-monotonic"},
    {kTextUp, "Up"},
    {kTextDown, "Down"},
    {kTextUnknownDirection, "Unknown"},
    {kTextAutomatic, "Automatic"},
};

constexpr TextResource kMessages[] = {
    {kTextNoResultDetector, "The Result cannot be set to use an FFT Detector, because the FFT Detector has "
                            "not been specified."},
    {kTextNoSourceDetector, "The Source cannot be set to use an FFT Detector, because the FFT Detector has "
                            "not been specified."},
    {kTextLimitsInvalid, "The Regulation Source parameters are invalid. The minimum value must be less than "
                         "the maximum value."},
    {kTextResultMissing, "The Result cannot be regulated, because the analyser does not provide it."},
    {kTextStepTooLarge, "The Source step size must be less than the range."},
    {kTextStatusInProgress, "Regulation in progress..."},
    {kTextStatusSuccessful, "Regulation successful!"},
    {kTextStatusFailed, "Regulation failed:\n"},
    {kTextReasonSourceLimit, "Reached source limit"},
    {kTextReasonStepTooSmall, "Step size became too small"},
    {kTextReasonMonotonicFailed, "Monotonic algorithm failed"},
    {kTextReasonNotConverged, "Did not converge"},
    {kTextReasonNotSettled, "Result did not settle"},
    {kTextReasonNoData, "Timed out waiting for data"},
    {kTextReasonTimedOut, "Regulation timed out"},
    {kTextReasonAborted, "Aborted by user"},
    {kTextReasonGeneral, "General failure!"},
};

constexpr TextResource kToolTips[] = {
    {kCtrlResult, "Result to regulate"},
    {kCtrlChannel, "Channel to regulate Result on"},
    {kCtrlRegulationType, "Type of regulation to apply"},
    {kCtrlRegulateTo, "Value to regulate to"},
    {kCtrlResultUnit, "Unit of value to regulate to"},
    {kCtrlToleranceType, "Whether tolerance is in Result unit, or a relative unit"},
    {kCtrlTolerance, "Tolerance of absolute value to regulate to"},
    {kCtrlToleranceUnit, "Unit for regulation tolerance"},
    {kCtrlUseSettling, "Whether to use Sweep settling"},
    {kCtrlSource, "Source parameter to vary"},
    {kCtrlSourceMinLimit, "Minimum limit of Source parameter"},
    {kCtrlSourceMaxLimit, "Maximum limit of Source parameter"},
    {kCtrlSourceUnit, "Unit for Source parameter"},
    {kCtrlTrend, "How Result relates to the Source"},
    {kCtrlTimeout, "Timeout for regulation"},
    {kCtrlStart, "Start regulation"},
    {kCtrlAbort, "Stop regulation"},
    {kCtrlContinuous, "Continue regulating after end has been met"},
    {kCtrlStatus, "Status of regulation"},
    {kCtrlStepSize, "Initial step size for Source, if stepping algorithm used"},
    {kCtrlDirection, "Direction to vary Source"},
    {kCtrlStepSizeAuto, "Automatically determine an initial step size"},
    {kCtrlSensitivity, "Sensitivity to local minima/maxima"},
    {kCtrlOppositeChannel, "Vary opposite channel of Source"},
};

const TextTable kRegisterDescriptions{kDescriptions};
const TextTable kRegisterChoices{kChoices};
const TextTable kRegisterMessages{kMessages};
const TextTable kRegisterToolTips{kToolTips};

} // namespace
} // namespace kalvio::regulation
