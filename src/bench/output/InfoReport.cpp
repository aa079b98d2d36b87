#include "bench/output/InfoReport.h"

#include "platform/Text.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cmath>

namespace kalvio::bench {

using Json = nlohmann::ordered_json;

namespace {

enum class Board { Main, Analogue };

std::string Version(std::uint16_t version, const CString& letter) {
    return Format("%d.%02d%s", version & 0xFF, version >> 8, letter.c_str());
}

Json SoftwareVersion(CHardware& hardware, Board board) {
    return board == Board::Main
               ? Version(hardware.GetMainBoardSoftwareVersion(), hardware.GetMainBoardSoftwareVersionLetter())
               : Version(hardware.GetAnalogueSoftwareVersion(), hardware.GetAnalogueSoftwareVersionLetter());
}

Json CalibrationDate(CHardware& hardware, Board board) {
    std::array<VARIANT, 6> parts;
    VARIANT* at = parts.data();
    board == Board::Main ? hardware.GetMainBoardCalibrationDate(at, at + 1, at + 2, at + 3, at + 4, at + 5)
                         : hardware.GetAnalogueCalibrationDate(at, at + 1, at + 2, at + 3, at + 4, at + 5);
    std::array<std::int32_t, 6> numbers{};
    for (std::size_t i = 0; i < parts.size(); ++i) {
        parts[i].Get(numbers[i]);
    }
    if (numbers[1] == 0) { // the month: it was never calibrated
        return {};
    }
    return Format("%04d-%02d-%02d %02d:%02d:%02d", numbers[0], numbers[1], numbers[2], numbers[3], numbers[4],
                  numbers[5]);
}

// One line of the boards' table.
struct Row {
    const char* key;
    const char* label;
    Json (*value)(CHardware& hardware, Board board);
};

// A row whose value comes from one of two operations of the same type.
template<auto MainBoard, auto AnalogueBoard>
Json Pick(CHardware& hardware, Board board) {
    return board == Board::Main ? Json((hardware.*MainBoard)()) : Json((hardware.*AnalogueBoard)());
}

constexpr Row kRows[] = {
    {"temperature", "temperature (C)",
     Pick<&CHardware::GetMainBoardTemperature, &CHardware::GetAnalogueBoardTemperature>},
    {"serial-number", "serial number",
     Pick<&CHardware::GetMainBoardUnitSerialNum, &CHardware::GetAnalogueUnitSerialNum>},
    {"hardware-version", "hardware version",
     Pick<&CHardware::GetMainBoardHardwareVersion, &CHardware::GetAnalogueHardwareVersion>},
    {"hardware-options", "hardware options",
     Pick<&CHardware::GetMainBoardHardwareOptions, &CHardware::GetAnalogueHardwareOptions>},
    {"calibrated", "calibrated", CalibrationDate},
    {"calibration-version", "calibration version",
     Pick<&CHardware::GetMainBoardCalibrationVersion, &CHardware::GetAnalogueCalibrationVersion>},
    {"calibration-software", "by software", SoftwareVersion},
    {"organisation", "organisation",
     Pick<&CHardware::GetMainBoardCalibrationOrganisation, &CHardware::GetAnalogueCalibrationOrganisation>},
    {"operator", "operator",
     Pick<&CHardware::GetMainBoardCalibrationOperator, &CHardware::GetAnalogueCalibrationOperator>},
};

std::string TextOf(const Json& value) {
    if (value.is_null()) {
        return "unknown";
    }
    return value.is_string() ? value.get<std::string>() : value.dump();
}

Json BoardJson(CHardware& hardware, Board board) {
    Json json;
    for (const Row& row : kRows) {
        const Json value = row.value(hardware, board);
        // Numbers that are not finite have no word in JSON.
        const bool number = value.is_number_float();
        json[row.key] = number && !std::isfinite(value.get<double>()) ? Json(nullptr) : value;
    }
    return json;
}

const char* YesNo(int flag) {
    return flag != 0 ? "yes" : "no";
}

} // namespace

Json InfoJson(CHardware& hardware) {
    if (hardware.IsHardwarePresent() == 0) {
        return {{"present", false},       {"main-board", nullptr}, {"analogue-board", nullptr},
                {"sample-rate", nullptr}, {"150-ohm", nullptr},    {"dc-coupled", nullptr},
                {"192-khz", nullptr},     {"link-errors", nullptr}};
    }
    return {{"present", true},
            {"main-board", BoardJson(hardware, Board::Main)},
            {"analogue-board", BoardJson(hardware, Board::Analogue)},
            {"sample-rate", hardware.GetAnalogueSamplingFreq()},
            {"150-ohm", hardware.Is150RImpedance() != 0},
            {"dc-coupled", hardware.IsAnalogueDCCoupled() != 0},
            {"192-khz", hardware.IsAnalogueHardware192k() != 0},
            {"link-errors", hardware.GetLinkErrorCount()}};
}

std::string InfoTable(CHardware& hardware) {
    constexpr const char* kLine = "  %-20s %-30s %s\n";
    if (hardware.IsHardwarePresent() == 0) {
        return "No unit; demo mode.\n";
    }
    std::string text = "The unit is there.\n";
    text += Format(kLine, "", "main board", "analogue board");
    for (const Row& row : kRows) {
        text += Format(kLine, row.label, TextOf(row.value(hardware, Board::Main)).c_str(),
                       TextOf(row.value(hardware, Board::Analogue)).c_str());
    }
    return text + Format("  sample rate %g Hz, 150 ohm %s, DC coupled %s, 192 kHz %s, link errors %d\n",
                         hardware.GetAnalogueSamplingFreq(), YesNo(hardware.Is150RImpedance()),
                         YesNo(hardware.IsAnalogueDCCoupled()), YesNo(hardware.IsAnalogueHardware192k()),
                         hardware.GetLinkErrorCount());
}

} // namespace kalvio::bench
