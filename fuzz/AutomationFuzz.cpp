// Automation: values, their conversions and texts, and requests to the objects that scripts reach.

#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "hardware/Hardware.h"
#include "platform/Json.h"
#include "preprocessor/PreProcessor.h"
#include "regulation/RegulationSettings.h"
#include "settling/SettlingDetails.h"
#include "simulator/VirtualUnit.h"
#include "support/TestHost.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace {

using namespace kalvio;
using fuzz::Require;

constexpr int kDeepest = 4;
constexpr std::size_t kMostArguments = 8;

VARIANT AnyValue(fuzz::FuzzInput& input, VARIANT* target, int depth = 0) {
    switch (input.Byte() % 9) {
    case 0:
        return {};
    case 1:
        return VARIANT::Short(static_cast<std::int16_t>(input.Word()));
    case 2:
        return VARIANT::Long(static_cast<std::int32_t>(input.Long()));
    case 3:
        return VARIANT::Double(input.Real());
    case 4:
        return VARIANT::Bool((input.Byte() & 1) != 0);
    case 5:
        return VARIANT::String(input.Text());
    case 6:
        return VARIANT::Byte(input.Byte());
    case 7:
        return VARIANT::Reference(target);
    default: {
        VARIANT::Array elements;
        for (int count = depth < kDeepest ? input.Byte() % 8 : 0; count > 0; --count) {
            elements.push_back(AnyValue(input, target, depth + 1));
        }
        return VARIANT::FromArray(std::move(elements));
    }
    }
}

void CheckValue(const VARIANT& value) {
    Require(nlohmann::json::accept(value.ToJson()), "a value's JSON is JSON");
    static_cast<void>(value.ToText());
    std::int16_t asShort = 0;
    std::int32_t asLong = 0;
    std::uint8_t asByte = 0;
    bool asBool = false;
    double asReal = 0.0;
    CString asText;
    const bool isReal = value.Get(asReal);
    value.Get(asBool);
    Require(!value.Get(asShort) || (isReal && std::fabs(asReal - asShort) <= 0.5),
            "a short is the rounded number");
    Require(!value.Get(asLong) || (isReal && std::fabs(asReal - asLong) <= 0.5),
            "a long is the rounded number");
    Require(!value.Get(asByte) || (isReal && std::fabs(asReal - asByte) <= 0.5),
            "a byte is the rounded number");
    if (value.Type() == AutomationType::Double && std::isfinite(asReal) && value.Get(asText)) {
        double again = 0.0;
        Require(VARIANT::String(asText).Get(again) && again == asReal,
                "a number's text reads back as the number");
    }
}

void CheckText(const std::string& text) {
    const std::string json = JsonText(text);
    Require(nlohmann::json::accept(json), "a text's JSON is JSON");
}

// A name of the object's table, or any name; any arguments.
void Ask(CCmdTarget& object, fuzz::FuzzInput& input, VARIANT* target) {
    const DispatchTable& table = object.GetDispatchMap();
    const std::uint16_t choice = input.Word();
    const std::string name = choice % 16 == 0 ? input.Text() : table[choice % table.size()].name;
    std::vector<VARIANT> arguments;
    for (std::size_t count = input.Byte() % kMostArguments; count > 0; --count) {
        arguments.push_back(AnyValue(input, target));
    }
    AutomationResult result;
    switch (input.Byte() % 3) {
    case 0:
        result = object.Invoke(name, arguments);
        break;
    case 1:
        result = object.GetProperty(name);
        break;
    default:
        result = object.SetProperty(name, arguments.empty() ? VARIANT() : arguments[0]);
        break;
    }
    Require(result.Ok() == result.text.empty(), "a refused request says why");
    CheckValue(result.value);
}

// One set of everything that scripts reach, without a unit.
struct Objects {
    Objects() {
        preprocessor::SetThreaded(false);
        host.application.hardware = &hardware;
        host.application.settling = &settling;
        host.application.settlingDetails = &settling;
    }
    ~Objects() { host.application.hardware = nullptr; }
    Objects(const Objects&) = delete;
    Objects& operator=(const Objects&) = delete;

    test::TestHost host;
    simulator::VirtualUnit unit{{[] { return GetTickCount(); }, [](std::uint32_t) {}}};
    CHardware hardware{unit};
    CSettlingDetails settling;
    CRegulationSettings regulation;
};

} // namespace

std::vector<kalvio::fuzz::Bytes> kalvio::fuzz::Seeds() {
    return {Bytes(256, 0x03), Bytes(256, 0x25), Bytes(300, 0x47)};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CheckText({data, data + size});
    Objects objects;
    objects.host.application.regulation = &objects.regulation;
    objects.host.application.regulationDetails = &objects.regulation;
    CCmdTarget* const targets[] = {&objects.hardware, &objects.settling, &objects.regulation};
    fuzz::FuzzInput input(data, size);
    VARIANT target;
    while (!input.IsAtEnd()) {
        const std::uint8_t choice = input.Byte();
        if (choice % 4 == 3) {
            CheckValue(AnyValue(input, &target));
        } else {
            Ask(*targets[choice % 4], input, &target);
        }
    }
    return 0;
}
