#include "reference_host/script/StoredValue.h"

#include "hardware/Hardware.h"

#include <cmath>
#include <string_view>

namespace kalvio::reference_host {

namespace {

constexpr std::string_view kSetter = "HW_Set";
constexpr std::string_view kGetter = "HW_Get";
constexpr std::string_view kWriter = "HW_Write";
constexpr double kFinestStep = 1.0 / 32768.0; // of a gain; what is lost below it is rounding

bool IsSame(const VARIANT& asked, const VARIANT& stored) {
    double wanted = 0.0;
    double held = 0.0;
    if (asked.Type() != AutomationType::String && asked.Get(wanted) && stored.Get(held)) {
        return std::fabs(wanted - held) < kFinestStep;
    }
    return asked.ToText() == stored.ToText();
}

// The getter of the same name takes the setter's arguments but the value.
CString ReadBack(CCmdTarget& object, std::string_view name, std::span<const VARIANT> arguments) {
    const VARIANT& asked = arguments.back();
    const AutomationResult stored = object.Invoke(CString(kGetter).append(name.substr(kSetter.size())),
                                                  arguments.first(arguments.size() - 1));
    if (!stored.Ok() || IsSame(asked, stored.value)) {
        return {};
    }
    return Format("%s stored %s, not %s", CString(name).c_str(), stored.value.ToText().c_str(),
                  asked.ToText().c_str());
}

} // namespace

CString StoredOtherwise(CCmdTarget& object, const DispatchEntry& entry, std::span<const VARIANT> arguments,
                        const VARIANT& answer) {
    const auto* hardware = dynamic_cast<const CHardware*>(&object);
    const std::string_view name = entry.name;
    const bool sets = name.starts_with(kSetter) && !arguments.empty();
    bool done = false;
    if (hardware == nullptr || (!sets && !name.starts_with(kWriter)) || !answer.Get(done) || !done) {
        return {};
    }
    if (hardware->IsHardwarePresent() == 0) {
        return CString(name) + " reached no memory: there is no unit";
    }
    return sets ? ReadBack(object, name, arguments) : CString();
}

} // namespace kalvio::reference_host
