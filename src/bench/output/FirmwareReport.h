#pragma once

// What a firmware file holds, as lines and as JSON.

#include "peripheral_network/FirmwareFile.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace kalvio::bench {

// A firmware file and what was found in it, up to its first fault.
struct FirmwareCheck {
    std::string path;
    FirmwareFile file;
    FirmwareContent content;

    // Reads the file and walks through it.
    explicit FirmwareCheck(std::string pathOfFile);
    [[nodiscard]] const FirmwareFault& Fault() const { return content.fault; }
};

std::string FirmwareTable(const FirmwareCheck& check);
nlohmann::ordered_json FirmwareJson(const FirmwareCheck& check);
// "FILE: at offset 162: Invalid block counter (2) ...", of a file with a fault.
std::string FirmwareFaultText(const FirmwareCheck& check);

} // namespace kalvio::bench
