#include "host/FieldDetails.h"

#include "host/HostTexts.h"
#include "platform/UserInterface.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kConversionRounding = 1e-9;

CString NumberText(int numberType, double value, const CString& unitText) {
    const CString number =
        IsIntegerType(numberType) ? kalvio::Format("%.0f", value) : kalvio::Format("%.10g", value);
    return unitText.empty() ? number : number + " " + unitText;
}

CString RangeText(int numberType, double minimum, double maximum, const CString& unitText) {
    return kalvio::FormatText(kalvio::LoadText(kalvio::kTextRange), NumberText(numberType, minimum, unitText),
                              NumberText(numberType, maximum, unitText));
}

} // namespace

bool IsIntegerType(int numberType) {
    return numberType >= 0 && numberType <= 2;
}

CString FieldDetails::GetFormat() const {
    return IsIntegerType(numberType) ? CString("%d") : kalvio::Format("%%.%df", decimals);
}

bool CheckMinMax(const CString& description, int numberType, double minimum, double maximum, int code,
                 double value) {
    if (value >= minimum && value <= maximum) {
        return true;
    }
    kalvio::TellOutOfRange(description, numberType, minimum, maximum,
                           kalvio::LoadText(static_cast<unsigned>(code)));
    return false;
}

void ShowRange(int numberType, double minimum, double maximum, const CString& unitText) {
    const CString range = RangeText(numberType, minimum, maximum, unitText);
    kalvio::ShowMessage(kalvio::FormatText(kalvio::LoadText(kalvio::kTextValidRange), range),
                        kalvio::BoxIcon::Information);
}

CString kalvio::OutOfRangeText(const CString& description, int numberType, double minimum, double maximum,
                               const CString& unitText) {
    const CString range = RangeText(numberType, minimum, maximum, unitText);
    return FormatText(LoadText(kTextOutOfRange), description, range);
}

void kalvio::TellOutOfRange(const CString& description, int numberType, double minimum, double maximum,
                            const CString& unitText) {
    ShowMessage(OutOfRangeText(description, numberType, minimum, maximum, unitText), BoxIcon::Exclamation);
}

bool kalvio::IsWithinLimits(double value, double minimum, double maximum) {
    const double slack = kConversionRounding * std::max(std::fabs(minimum), std::fabs(maximum));
    return value >= minimum - slack && value <= maximum + slack;
}
