#pragma once

// Small pictures of one size, for buttons that draw themselves.

#include "platform/ControlState.h"

#include <vector>

namespace kalvio {

struct ImageList {
    int width = 0; // dialog units
    int height = 0;
    std::vector<std::vector<DrawnItem>> images;
};

} // namespace kalvio
