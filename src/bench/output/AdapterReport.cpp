#include "bench/output/AdapterReport.h"

#include "platform/Text.h"

#include <nlohmann/json.hpp>

#include <array>
#include <vector>

namespace kalvio::bench {

using Json = nlohmann::ordered_json;

namespace {

constexpr const char* kDirections[] = {"generator", "analyser"};
constexpr const char* kVoltages[] = {"1.8 V", "2.5 V", "3.3 V", "5.0 V CMOS", "5.0 V TTL", "code 5"};

// A setting; `which` is the direction, 0 for what belongs to neither.
struct Row {
    const char* key;
    const char* label;
    Json (*value)(CKEDAAdapter& adapter, int which);
};

Json DirectionWord(int direction) {
    constexpr const char* kWords[] = {"none", "in", "out"};
    return kWords[direction];
}

template<auto Read>
Json Number(CKEDAAdapter& adapter, int which) {
    return (adapter.*Read)(which);
}

template<auto Read>
Json Flag(CKEDAAdapter& adapter, int which) {
    return (adapter.*Read)(which) != 0;
}

template<auto Read>
Json OwnFlag(CKEDAAdapter& adapter, int) {
    return (adapter.*Read)() != 0;
}

template<auto Read>
Json ClockDirection(CKEDAAdapter& adapter, int which) {
    return DirectionWord((adapter.*Read)(which));
}

template<auto Read>
Json Voltage(CKEDAAdapter& adapter, int) {
    const auto code = static_cast<std::size_t>((adapter.*Read)());
    return code < std::size(kVoltages) ? Json(kVoltages[code]) : Json(Format("code %zu", code));
}

Json ThroughAdapter(CKEDAAdapter& adapter, int which) {
    return (which == 0 ? adapter.GetGenBypass() : adapter.GetAnaBypass()) == 0;
}

Json SyncWord(CKEDAAdapter& adapter, int which) {
    constexpr const char* kWords[] = {"device's serial clocks", "device's master clock", "digital output"};
    return kWords[static_cast<std::size_t>(adapter.GetSyncSource(which)) - 1];
}

// What each slot carries or feeds, a text of one word a slot for each wire.
Json Grid(CKEDAAdapter& adapter, int which) {
    Json wires = Json::array();
    std::array<std::array<int, 2>, 2> heard{};
    for (std::size_t channel = 0; channel < heard.size(); ++channel) {
        adapter.GetAnaRouting(static_cast<int>(channel), heard[channel][0], heard[channel][1]);
    }
    const auto hears = [&heard](std::size_t channel, int wire, int slot) {
        return heard[channel][0] == wire && heard[channel][1] == slot;
    };
    for (int wire = 1; wire <= adapter.GetNumWires(which); ++wire) {
        std::string line;
        for (int slot = 1; slot <= adapter.GetSubChannelsPerWire(which); ++slot) {
            constexpr const char* kWords[] = {".", "A", "B", "AB"};
            const int word = which == 0 ? adapter.GetGenRouting(wire, slot)
                                        : (hears(0, wire, slot) ? 1 : 0) + (hears(1, wire, slot) ? 2 : 0);
            line += (line.empty() ? "" : " ") + std::string(kWords[word]);
        }
        wires.push_back(line);
    }
    return wires;
}

constexpr Row kDirectionRows[] = {
    {"through-adapter", "through the adapter", ThroughAdapter},
    {"slot-length", "slot length (bits)", Number<&CKEDAAdapter::GetSlotLength>},
    {"lead-pad", "lead pad (bits)", Number<&CKEDAAdapter::GetLeadPadLength>},
    {"data-length", "data (bits)", Number<&CKEDAAdapter::GetDataLength>},
    {"trail-pad", "trail pad (bits)", Number<&CKEDAAdapter::GetTrailPadLength>},
    {"slots-per-wire", "slots per wire", Number<&CKEDAAdapter::GetSubChannelsPerWire>},
    {"wires", "wires", Number<&CKEDAAdapter::GetNumWires>},
    {"lsb-first", "LSB first", Flag<&CKEDAAdapter::GetLSBFirst>},
    {"sign-extend", "sign extend", Flag<&CKEDAAdapter::GetSignExtend>},
    {"sync-source", "clocked by", SyncWord},
    {"serial-clocks", "bit and frame clock", ClockDirection<&CKEDAAdapter::GetSerialClockDir>},
    {"frame-clock", "frame clock (Hz)", Number<&CKEDAAdapter::GetFrameClockFreq>},
    {"frame-clock-invert", "  inverted", Flag<&CKEDAAdapter::GetFrameClockInvert>},
    {"frame-clock-1-bit", "  one bit wide", Flag<&CKEDAAdapter::GetFrameClock1Bit>},
    {"frame-clock-early", "  early", Flag<&CKEDAAdapter::GetFrameClockEarly>},
    {"bit-clock", "bit clock (Hz)", Number<&CKEDAAdapter::GetBitClockFreq>},
    {"bit-clock-valid", "  valid", Flag<&CKEDAAdapter::BitClockValid>},
    {"bit-clock-invert", "  inverted", Flag<&CKEDAAdapter::GetBitClockInvert>},
    {"master-clock-direction", "master clock", ClockDirection<&CKEDAAdapter::GetMasterClockDir>},
    {"multiplier", "  multiplier", Number<&CKEDAAdapter::GetMasterClockMultiplier>},
    {"master-clock", "  frequency (Hz)", Number<&CKEDAAdapter::GetMasterClockFreq>},
    {"master-clock-valid", "  valid", Flag<&CKEDAAdapter::MasterClockValid>},
    {"delay", "delay (ns)", Number<&CKEDAAdapter::GetDelay>},
    {"routing", "routing", Grid},
};

constexpr Row kOwnRows[] = {
    {"reference-bypass", "reference bypassed", OwnFlag<&CKEDAAdapter::GetRefBypass>},
    {"audio-on", "audio outputs on", OwnFlag<&CKEDAAdapter::GetAudioOn>},
    {"audio-voltage", "audio voltage", Voltage<&CKEDAAdapter::GetAudioVoltageSelect>},
    {"control-on", "control outputs on", OwnFlag<&CKEDAAdapter::GetCtrlOn>},
    {"control-voltage", "control voltage", Voltage<&CKEDAAdapter::GetCtrlVoltageSelect>},
    {"control-mode", "control port",
     [](CKEDAAdapter& adapter, int) -> Json { return adapter.GetControlMode() == 0 ? "SPI" : "I2C"; }},
    {"spi-phase", "  SPI clock phase", OwnFlag<&CKEDAAdapter::GetSPIClockPhase>},
    {"spi-polarity", "  SPI clock polarity", OwnFlag<&CKEDAAdapter::GetSPIClockPolarity>},
    {"slave-address", "  I2C address",
     [](CKEDAAdapter& adapter, int) -> Json { return adapter.GetSlaveAddress(); }},
};

void PutJson(Json& json, const Row& row, int which, CKEDAAdapter& shown, CKEDAAdapter* image) {
    json[row.key] = row.value(shown, which);
    if (image != nullptr) {
        if (const Json wish = row.value(*image, which); wish != json[row.key]) {
            json["image"][row.key] = wish;
        }
    }
}

std::string TextOf(const Json& value) {
    if (value.is_boolean()) {
        return value.get<bool>() ? "yes" : "no";
    }
    return value.is_string() ? value.get<std::string>() : value.dump();
}

// A value with what the image has instead.
std::string Cell(const Row& row, int which, CKEDAAdapter& shown, CKEDAAdapter* image) {
    const Json value = row.value(shown, which);
    const Json wish = image == nullptr ? value : row.value(*image, which);
    return TextOf(value) + (wish == value ? "" : " * image: " + TextOf(wish));
}

std::string GridText(int which, CKEDAAdapter& adapter) {
    std::string text = Format("\n  %s routing, slot 1 first\n", kDirections[which]);
    int wire = 1;
    for (const Json& line : Grid(adapter, which)) {
        text += Format("    wire %d  %s\n", wire++, line.get<std::string>().c_str());
    }
    return text;
}

} // namespace

Json AdapterJson(CKEDAAdapter& shown, CKEDAAdapter* image) {
    Json json{{"address", shown.GetAddress()}};
    for (const Row& row : kOwnRows) {
        PutJson(json, row, 0, shown, image);
    }
    for (const int which : {0, 1}) {
        for (const Row& row : kDirectionRows) {
            PutJson(json[kDirections[which]], row, which, shown, image);
        }
    }
    return json;
}

std::string AdapterTable(CKEDAAdapter& shown, CKEDAAdapter* image) {
    std::string text =
        Format("KEDA adapter at %d\n  %-22s %-34s %s\n", shown.GetAddress(), "", "generator", "analyser");
    const auto* const routing = std::end(kDirectionRows) - 1; // drawn below
    for (const Row* row = std::begin(kDirectionRows); row != routing; ++row) {
        text += Format("  %-22s %-34s %s\n", row->label, Cell(*row, 0, shown, image).c_str(),
                       Cell(*row, 1, shown, image).c_str());
    }
    for (const int which : {0, 1}) {
        text += GridText(which, shown);
        if (image != nullptr && Grid(*image, which) != Grid(shown, which)) {
            text += "  * image:" + GridText(which, *image);
        }
    }
    text += "\n";
    for (const Row& row : kOwnRows) {
        text += Format("  %-22s %s\n", row.label, Cell(row, 0, shown, image).c_str());
    }
    return text;
}

} // namespace kalvio::bench
