#include "switching/RelayFrames.h"

namespace {

constexpr unsigned kRelaysInGroup = 8;
constexpr std::uint8_t kAllOfX = 64;
constexpr std::uint8_t kAllOfY = 128;
constexpr std::uint8_t kAllOfBoth = 192;
constexpr std::uint8_t kEveryRelay = 0xFF;

} // namespace

int AddRemoveResponseMatches(const STRUCT_COMMAND_RELAY_ADDREMOVE_BUS& command,
                             const STRUCT_RESPONSE_RELAY_STATUS_BUS& answer, int remove) {
    const bool allX = answer.groupX == kEveryRelay;
    const bool allY = answer.groupY == kEveryRelay;
    switch (command.channel) {
    case kAllOfX:
        return allX ? 1 : 0;
    case kAllOfY:
        return allY ? 1 : 0;
    case kAllOfBoth:
        return allX && allY ? 1 : 0;
    default:
        break;
    }
    if (command.channel >= 2 * kRelaysInGroup) {
        return 0;
    }
    const unsigned mask = command.channel < kRelaysInGroup ? answer.groupX : answer.groupY;
    const bool closed = (mask >> command.channel % kRelaysInGroup & 1U) != 0;
    return closed != (remove != 0) ? 1 : 0;
}
