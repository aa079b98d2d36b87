#pragma once

// Level conversions for the host. Any thread; no state.

#include "platform/Export.h"

[[nodiscard]] KALVIO_API double ConvertdBuToV(double dBu);
[[nodiscard]] KALVIO_API double ConvertdBVToV(double dBV);
[[nodiscard]] KALVIO_API double ConvertdBmToV(double dBm, double ohms);
[[nodiscard]] KALVIO_API double ConvertWToV(double watts, double ohms); // negative below 0 watts
