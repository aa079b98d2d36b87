#include "bench/output/FirmwareReport.h"

#include "peripheral_network/bus/KvNetStatus.h"

#include <nlohmann/json.hpp>

namespace kalvio::bench {

using Json = nlohmann::ordered_json;

namespace {

std::size_t BytesOf(const FirmwareContent::Sector& sector) {
    return static_cast<std::size_t>(sector.blocks) * kFirmwareDataBytes;
}

} // namespace

FirmwareCheck::FirmwareCheck(std::string pathOfFile) : path(std::move(pathOfFile)) {
    const FirmwareFault fault = file.Open(path);
    if (fault) {
        content.fault = fault;
    } else {
        content = InspectFirmware(file);
    }
}

std::string FirmwareTable(const FirmwareCheck& check) {
    const CKvNetStatus device(0, std::uint32_t{check.file.ClassType()});
    std::string text = Format("%s: %llu bytes, for class type 0x%02X (%s, %s)\n", check.path.c_str(),
                              static_cast<unsigned long long>(check.file.Length()), check.file.ClassType(),
                              device.ClassName().c_str(), device.TypeName().c_str());
    for (const FirmwareContent::Sector& sector : check.content.sectors) {
        text +=
            Format("  sector %2d: %3d blocks, %5zu bytes\n", sector.number, sector.blocks, BytesOf(sector));
    }
    return text + (check.Fault() ? "" : "no fault\n");
}

Json FirmwareJson(const FirmwareCheck& check) {
    Json sectors = Json::array();
    for (const FirmwareContent::Sector& sector : check.content.sectors) {
        sectors.push_back({{"sector", sector.number}, {"blocks", sector.blocks}, {"bytes", BytesOf(sector)}});
    }
    Json json{{"file", check.path}};
    const bool read = check.Fault().kind != FirmwareFault::Kind::NotOpened;
    json["length"] = read ? Json(check.file.Length()) : Json(nullptr);
    json["class-type"] = read ? Json(check.file.ClassType()) : Json(nullptr);
    json["sectors"] = read ? sectors : Json(nullptr);
    json["fault"] = nullptr;
    if (check.Fault()) {
        json["fault"] = {{"text", check.Fault().Text()},
                         {"offset", read ? Json(check.Fault().offset) : Json(nullptr)}};
    }
    return json;
}

std::string FirmwareFaultText(const FirmwareCheck& check) {
    const bool unread = check.Fault().kind == FirmwareFault::Kind::NotOpened;
    const std::string place = unread ? "" : Format("at offset %zu: ", check.Fault().offset);
    return check.path + ": " + place + check.Fault().Text();
}

} // namespace kalvio::bench
