#include "hardware/bringup/FirmwareVersions.h"

#include <algorithm>
#include <array>

namespace kalvio {

namespace {

struct FirmwareVersion {
    int majorVersion;
    int minorVersion;
    std::uint16_t release;
};

constexpr std::array<FirmwareVersion, 22> kVersions{{
    {0, 10, 1},   {0, 20, 1},   {0, 30, 1},   {0, 40, 1},   {0, 50, 1},   {0, 60, 1},
    {0, 70, 1},   {0, 80, 1},   {0, 90, 1},   {0, 91, 1},   {0, 92, 146}, {0, 93, 147},
    {0, 94, 148}, {0, 95, 149}, {0, 96, 150}, {0, 97, 151}, {0, 98, 152}, {0, 99, 153},
    {1, 0, 256},  {1, 1, 257},  {1, 10, 266}, {1, 11, 267},
}};

} // namespace

std::optional<std::uint16_t> FirmwareReleaseFor(int majorVersion, int minorVersion) {
    const auto found = std::find_if(kVersions.rbegin(), kVersions.rend(), [=](const FirmwareVersion& row) {
        return row.majorVersion == majorVersion && row.minorVersion == minorVersion;
    });
    return found != kVersions.rend() ? std::optional(found->release) : std::nullopt;
}

} // namespace kalvio
