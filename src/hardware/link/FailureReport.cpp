#include "hardware/link/FailureReport.h"

#include "hardware/HardwareTexts.h"
#include "hardware/link/QuietLock.h"
#include "platform/Registry.h"

namespace kalvio {

namespace {

bool IsAddressCheck(const ExchangeOutcome& outcome) {
    const auto refusal = outcome.Refusal();
    return refusal.has_value() && refusal->error == kUnitAddressCheckFailed;
}

bool ShowsErrors() {
    return CRegistry::GetRegistryValue(RegistryKeyType::User, "Debug", "ShowUSBErrors", 0) != 0;
}

} // namespace

std::int16_t ReportFailure(const ExchangeOutcome& outcome, const char* functionName, const CString& detail) {
    const auto status = static_cast<std::int16_t>(outcome.Code());
    if (IsAddressCheck(outcome)) {
        ShowMessageWhenQuiet(FormatText(LoadText(kTextAddressCheck), functionName, detail));
    } else if (ShowsErrors()) {
        ShowMessageWhenQuiet(Format("USB Error in function %s\nReturn code was 0x%X\n%s", functionName,
                                    static_cast<unsigned>(int{status}), detail.c_str()));
    }
    return status;
}

} // namespace kalvio
