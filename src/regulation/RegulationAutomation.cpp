// The names that scripts use, in the order of their numbers.

#include "platform/AutomationTable.h"
#include "regulation/RegulationSettings.h"

using namespace kalvio::regulation;
using kalvio::automation::Constant;
using kalvio::automation::Method;
using kalvio::automation::Property;

const kalvio::DispatchTable& CRegulationSettings::GetDispatchMap() const {
    using Self = CRegulationSettings;
    static const kalvio::DispatchTable kTable{
        Property("REG_Result", &Self::GetResult, &Self::SetResult),
        Constant("REG_RESULT_RMSAMPLITUDE", kalvio::kResultRmsA),
        Constant("REG_RESULT_FREQUENCY", kalvio::kResultFrequencyA),
        Constant("REG_RESULT_PHASE", kalvio::kResultPhase),
        Constant("REG_RESULT_CTDETECTOR", kalvio::kResultCtDetectorA),
        Constant("REG_RESULT_FFTDETECTOR", kalvio::kResultFftDetectorA),
        Property("REG_ResultFFTDetector", &Self::GetResultFFTDetector, &Self::SetResultFFTDetector),
        Property("REG_Channel", &Self::GetChannel, &Self::SetChannel),
        Constant("REG_CHANNEL_A", kChannelA),
        Constant("REG_CHANNEL_B", kChannelB),
        Constant("REG_CHANNEL_SEL", kSelectedChannel),
        Constant("REG_CHANNEL_NONSEL", kNonSelectedChannel),
        Constant("REG_CHANNEL_BOTH", kBothSeparately),
        Constant("REG_CHANNEL_BOTHTIED", kBothTied),
        Constant("REG_CHANNEL_EITHER", kEither),
        Property("REG_RegulationType", &Self::GetRegulationType, &Self::SetRegulationType),
        Constant("REG_REGULATIONTYPE_ABSOLUTE", kAbsolute),
        Constant("REG_REGULATIONTYPE_MAXIMUM", kMaximum),
        Constant("REG_REGULATIONTYPE_MINIMUM", kMinimum),
        Property("REG_RegulateTo", &Self::GetRegulateTo, &Self::SetRegulateTo),
        Property("REG_ResultUnit", &Self::GetResultUnit, &Self::SetResultUnit),
        Property("REG_ToleranceType", &Self::GetToleranceType, &Self::SetToleranceType),
        Constant("REG_TOLERANCETYPE_OFFSET", kOffset),
        Constant("REG_TOLERANCETYPE_RATIO", kRatio),
        Property("REG_Tolerance", &Self::GetTolerance, &Self::SetTolerance),
        Property("REG_ToleranceUnit", &Self::GetToleranceUnit, &Self::SetToleranceUnit),
        Property("REG_Sensitivity", &Self::GetSensitivity, &Self::SetSensitivity),
        Property("REG_UseSettling", &Self::Flag<kUseSettling>, &Self::SetFlag<kCtrlUseSettling>),
        Property("REG_Continuous", &Self::Flag<kContinuous>, &Self::SetFlag<kCtrlContinuous>),
        Property("REG_Timeout", &Self::GetTimeout, &Self::SetTimeout),
        Property("REG_Source", &Self::GetSource, &Self::SetSource),
        Constant("REG_SOURCE_GENFREQ", kSourceGeneratorFrequency),
        Constant("REG_SOURCE_GENAMPL", kSourceGeneratorAmplitude),
        Constant("REG_SOURCE_DCOFFSET", kSourceDcOffset),
        Constant("REG_SOURCE_JITTERFREQ", kSourceJitterFrequency),
        Constant("REG_SOURCE_JITTERAMPL", kSourceJitterAmplitude),
        Property("REG_SourceOppChannel", &Self::Flag<kOppositeChannel>, &Self::SetFlag<kCtrlOppositeChannel>),
        Property("REG_SourceMinLimit", &Self::GetSourceMinLimit, &Self::SetSourceMinLimit),
        Property("REG_SourceMaxLimit", &Self::GetSourceMaxLimit, &Self::SetSourceMaxLimit),
        Property("REG_SourceUnit", &Self::GetSourceUnit, &Self::SetSourceUnit),
        Property("REG_Trend", &Self::GetTrend, &Self::SetTrend),
        Constant("REG_TREND_INCREASING", NPreProcessor::kTrendIncreasing),
        Constant("REG_TREND_DECREASING", NPreProcessor::kTrendDecreasing),
        Constant("REG_TREND_UNKNOWN", NPreProcessor::kTrendUnknown),
        Constant("REG_TREND_NONMONOTONIC", NPreProcessor::kTrendNonMonotonic),
        Property("REG_StepSize", &Self::GetStepSize, &Self::SetStepSize),
        Property("REG_StepSizeAuto", &Self::Flag<kStepSizeAuto>, &Self::SetFlag<kCtrlStepSizeAuto>),
        Property("REG_Direction", &Self::GetDirection, &Self::SetDirection),
        Constant("REG_DIRECTION_UP", NPreProcessor::kUp),
        Constant("REG_DIRECTION_DOWN", NPreProcessor::kDown),
        Constant("REG_DIRECTION_UNKNOWN", NPreProcessor::kDirectionUnknown),
        Constant("REG_DIRECTION_USEHISTORY", NPreProcessor::kUseHistory),
        Constant("REG_STATUS_NONE", kStatusNone),
        Constant("REG_STATUS_INPROGRESS", kStatusInProgress),
        Constant("REG_STATUS_OK", kStatusOk),
        Constant("REG_STATUS_FAILED", kStatusFailed),
        Method("REG_Start", &Self::StartByScript),
        Method("REG_Stop", &Self::OLEStop),
        Method("REG_GetStatus", &Self::OLEGetStatus),
    };
    return kTable;
}
