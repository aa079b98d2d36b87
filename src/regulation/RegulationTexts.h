#pragma once

// String ids of the regulation document's texts. Each control's tooltip has the control's own id.

namespace kalvio::regulation {

enum RegulationText : unsigned {
    kTextResultField = 12400,
    kTextResultFftDetectorField,
    kTextChannelField,
    kTextRegulationTypeField,
    kTextRegulateToField,
    kTextResultUnitField,
    kTextToleranceTypeField,
    kTextToleranceField,
    kTextToleranceUnitField,
    kTextSensitivityField,
    kTextTrendField,
    kTextUseSettlingField,
    kTextSourceField,
    kTextSourceFftDetectorField,
    kTextOppositeChannelField,
    kTextSourceMinLimitField,
    kTextSourceMaxLimitField,
    kTextSourceUnitField,
    kTextStepSizeField,
    kTextDirectionField,
    kTextTimeoutField,
    kTextContinuousField,
    kTextStartOperation,
    kTextAbortOperation,
    kTextStatusOperation,

    kTextResultGroup = 12430,
    kTextSourceGroup,
    kTextOperationGroup,
    kTextTitle,

    kTextRmsAmplitude = 12440,
    kTextFrequency,
    kTextPhase,
    kTextCtDetector,  // %s: name
    kTextFftDetector, // %d: number, %s: name
    kTextBoth,
    kTextBothTied,
    kTextTypeAbsolute,
    kTextTypeMaximum,
    kTextTypeMinimum,
    kTextOffset,
    kTextRatio,
    kTextGeneratorFrequency,
    kTextGeneratorAmplitude,
    kTextTrendIncreasing,
    kTextTrendDecreasing,
    kTextTrendUnknown,
    kTextTrendNonMonotonic,
    kTextUp,
    kTextDown,
    kTextUnknownDirection,
    kTextAutomatic,

    kTextNoResultDetector = 12470,
    kTextNoSourceDetector,
    kTextLimitsInvalid,
    kTextStepTooLarge,
    kTextResultMissing,

    kTextStatusInProgress = 12480,
    kTextStatusSuccessful,
    kTextStatusFailed, // stands before one of the reasons below
    kTextReasonSourceLimit,
    kTextReasonStepTooSmall,
    kTextReasonMonotonicFailed,
    kTextReasonNotConverged,
    kTextReasonNotSettled,
    kTextReasonNoData,
    kTextReasonTimedOut,
    kTextReasonAborted,
    kTextReasonGeneral,
};

} // namespace kalvio::regulation
