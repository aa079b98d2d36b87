#pragma once

// Stands in for the pre-processor in this test program: notes what it is told of new results.

#include <string>
#include <vector>

namespace kalvio::test {

// Every notification since the last call, as "data ID ALL" or "fft ID DETECTOR". Any thread.
[[nodiscard]] std::vector<std::string> TakeNotifications();

} // namespace kalvio::test
