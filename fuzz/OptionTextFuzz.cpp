// Texts that a user types: the options of programs, line settings, units, and numbers in edits.

#include "FuzzTarget.h"
#include "host/Units.h"
#include "platform/Controls.h"
#include "reference_host/ports/LineSettings.h"
#include "reference_host/ports/PortOptions.h"
#include "reference_host/unit/DeviceOption.h"
#include "simulator/peripherals/PeripheralList.h"

#include <cmath>
#include <string_view>

namespace {

using namespace kalvio;
using namespace kalvio::reference_host;
using fuzz::Require;

std::vector<double> Figures(const simulator::DeviceUnderTest& device) {
    return {device.gain,           device.offsetVolts,     device.resonanceHz,
            device.resonanceQ,     device.saturationVolts, device.noiseVolts,
            device.timeConstantMs, device.overloadVolts,   device.channelBGain};
}

void CheckDevice(std::string_view text) {
    simulator::DeviceUnderTest device;
    const std::vector<double> before = Figures(device);
    const bool taken = ParseDeviceOption(text, device).empty();
    for (const double figure : Figures(device)) {
        Require(std::isfinite(figure), "a device's figures are numbers");
    }
    Require(taken || (Figures(device) == before && !device.silent), "a refused device changes nothing");
}

void CheckPeripherals(std::string_view text) {
    const simulator::PeripheralList list = simulator::ParsePeripherals(text);
    Require(list.error.empty() || list.peripherals.empty(), "a refused list is empty");
    for (const auto& peripheral : list.peripherals) {
        Require(peripheral != nullptr, "every peripheral is there");
    }
}

void CheckPorts(std::string_view text) {
    PortOptions options;
    if (!ParseSerialOption(text, options).empty()) {
        Require(options.serialPorts.empty(), "a refused port changes nothing");
        return;
    }
    const auto& [number, device] = *options.serialPorts.begin();
    Require(options.serialPorts.size() == 1 && number >= 1 && !device.empty(),
            "a port has a number and a device");
}

void CheckLine(std::string_view text) {
    LineSettings settings;
    const bool taken = ParseLineSettings(text, settings).empty();
    Require(settings.baud >= 1 && settings.baud <= kFastestBaud && settings.dataBits >= 5 &&
                settings.dataBits <= 8,
            "a line's settings lie within their limits");
    Require(taken || settings.baud == LineSettings().baud, "refused settings change nothing");
}

void CheckUnit(const CString& text) {
    const int unit = GetUnitForString(text);
    Require(unit == kUnitNone || GetUnitForString(GetStringForUnit(unit)) == unit,
            "a unit's own text names the same unit");
}

void CheckEdits(const CString& text) {
    CMultiBaseEdit number;
    CHexEdit bytes;
    number.SetText(text);
    number.SetDecimalPlaces(6);
    Require(!std::isinf(number.GetNumericalValue()), "an edit shows a number or none");
    for (const int base : {10, 16}) {
        number.SetBase(base);
        number.SetIntValue(number.GetIntValue());
        const int shown = number.GetIntValue();
        number.SetIntValue(shown);
        Require(number.GetIntValue() == shown, "an integer that is shown reads back");
    }
    bytes.SetText(text);
    const std::vector<std::uint8_t> read = bytes.GetBytes();
    bytes.SetBytes(read);
    Require(bytes.GetBytes() == read, "bytes that are shown read back");
}

} // namespace

std::vector<kalvio::fuzz::Bytes> kalvio::fuzz::Seeds() {
    std::vector<Bytes> seeds;
    for (const std::string_view text :
         {"gain=-2,offset=0.5,saturation=1e1,noise=0.001",
          "time=100,overload=5,bgain=.5,silent,resonance=1000:10",
          "switcher@3:hw=C:fw=B,loader@9:class=31:fault=twin",
          "keda@8:rate=96000:device=48000:spi=3:i2c=4A:fault=slow", "none", "1=/dev/ttyUSB0", "32767=echo",
          "echo", "9600,n,8,1", " 4000000 , E , 5 , 1.5 ", "dBu", "deg", "uV", "+0x7fffFFFF", "-1.25e-3",
          "5A 00 ff 1"}) {
        seeds.emplace_back(text.begin(), text.end());
    }
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    CheckDevice(text);
    CheckPeripherals(text);
    CheckPorts(text);
    CheckLine(text);
    CheckUnit(CString(text));
    CheckEdits(CString(text));
    return 0;
}
