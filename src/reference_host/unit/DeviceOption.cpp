#include "reference_host/unit/DeviceOption.h"

#include "platform/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>

namespace kalvio::reference_host {

namespace {

using simulator::DeviceUnderTest;

struct Figure {
    const char* name;
    double DeviceUnderTest::*member;
    bool mayBeNegative;
    const char* help;
};

constexpr std::array kFigures{
    Figure{"gain", &DeviceUnderTest::gain, true, "RATIO"},
    Figure{"offset", &DeviceUnderTest::offsetVolts, true, "VOLTS"},
    Figure{"saturation", &DeviceUnderTest::saturationVolts, false, "VOLTS"},
    Figure{"noise", &DeviceUnderTest::noiseVolts, false, "VOLTS"},
    Figure{"time", &DeviceUnderTest::timeConstantMs, false, "MS"},
    Figure{"overload", &DeviceUnderTest::overloadVolts, false, "VOLTS"},
    Figure{"bgain", &DeviceUnderTest::channelBGain, true, "RATIO"},
};
constexpr std::string_view kResonance = "resonance";
constexpr std::string_view kSilent = "silent";

std::optional<double> ParseNumber(std::string_view text) {
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

std::string BadNumber(std::string_view name, std::string_view text) {
    return Format("\"%s\" is no number that %s can have", std::string(text).c_str(),
                  std::string(name).c_str());
}

std::string TakeResonance(std::string_view text, DeviceUnderTest& device) {
    const std::size_t colon = text.find(':');
    const std::optional<double> hertz = ParseNumber(text.substr(0, colon));
    const std::optional<double> quality =
        colon == std::string_view::npos ? std::nullopt : ParseNumber(text.substr(colon + 1));
    if (!hertz || !quality || *hertz <= 0.0 || *quality <= 0.0) {
        return "resonance takes a frequency and a quality above 0, as in resonance=1000:10";
    }
    device.resonanceHz = *hertz;
    device.resonanceQ = *quality;
    return {};
}

std::string TakeFigure(std::string_view name, std::string_view text, DeviceUnderTest& device) {
    const auto* figure = std::find_if(kFigures.begin(), kFigures.end(),
                                      [name](const Figure& each) { return each.name == name; });
    if (figure == kFigures.end()) {
        return Format("\"%s\" is nothing that a device has; it has %s", std::string(name).c_str(),
                      DeviceOptionHelp().c_str());
    }
    const std::optional<double> value = ParseNumber(text);
    if (!value || (*value < 0.0 && !figure->mayBeNegative)) {
        return BadNumber(name, text);
    }
    device.*(figure->member) = *value;
    return {};
}

std::string TakeWord(std::string_view word, DeviceUnderTest& device) {
    if (word == kSilent) {
        device.silent = true;
        return {};
    }
    const std::size_t equals = word.find('=');
    if (equals == std::string_view::npos) {
        return Format("\"%s\" lacks its figure; it has %s", std::string(word).c_str(),
                      DeviceOptionHelp().c_str());
    }
    const std::string_view name = word.substr(0, equals);
    const std::string_view text = word.substr(equals + 1);
    return name == kResonance ? TakeResonance(text, device) : TakeFigure(name, text, device);
}

} // namespace

std::string ParseDeviceOption(std::string_view text, DeviceUnderTest& device) {
    DeviceUnderTest changed = device;
    while (!text.empty()) {
        const std::size_t comma = text.find(',');
        if (std::string error = TakeWord(text.substr(0, comma), changed); !error.empty()) {
            return error;
        }
        text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 1);
    }
    device = changed;
    return {};
}

std::string DeviceOptionHelp() {
    std::string help;
    for (const Figure& figure : kFigures) {
        help += Format("%s=%s, ", figure.name, figure.help);
    }
    return help + "resonance=HZ:Q, silent";
}

} // namespace kalvio::reference_host
