#include "regulation/RegulationStatusText.h"

#include "regulation/RegulationTexts.h"

using namespace NPreProcessor;

namespace kalvio::regulation {
namespace {

unsigned ReasonOf(EResult status) {
    switch (status) {
    case SourceLimit:
        return kTextReasonSourceLimit;
    case StepTooSmall:
        return kTextReasonStepTooSmall;
    case MonotonicFailed:
        return kTextReasonMonotonicFailed;
    case NotConverged:
        return kTextReasonNotConverged;
    case NotSettled:
        return kTextReasonNotSettled;
    case NoData:
        return kTextReasonNoData;
    case TimedOut:
        return kTextReasonTimedOut;
    case Aborted:
        return kTextReasonAborted;
    default:
        return kTextReasonGeneral;
    }
}

} // namespace

StatusText DescribeStatus(EResult status) {
    switch (status) {
    case None:
        return {};
    case Working:
        return {LoadText(kTextStatusInProgress), kStatusBlack};
    case Succeeded:
        return {LoadText(kTextStatusSuccessful), kStatusGreen};
    default:
        return {LoadText(kTextStatusFailed) + LoadText(ReasonOf(status)), kStatusRed};
    }
}

} // namespace kalvio::regulation
