// Every transcript, played.

#include "simulator/WireRequests.h"
#include "support/Replay.h"

#include <gtest/gtest.h>

namespace kalvio::simulator {
namespace {

class WireTranscript : public testing::TestWithParam<std::string> {};

TEST_P(WireTranscript, ComesOutAsItStands) {
    Bench bench;
    test::ExpectReplay(__FILE__, "transcripts/" + GetParam() + ".txt",
                       [&bench](std::string_view request) { return PlayRequest(bench, request); });
}

INSTANTIATE_TEST_SUITE_P(Simulator, WireTranscript,
                         testing::Values("bus", "calibration", "driver", "faults", "firmware", "frames",
                                         "i2c", "keda", "measurement", "memories", "misbehaving",
                                         "peripherals", "relays", "routes", "switcher"),
                         [](const auto& name) { return name.param; });

} // namespace
} // namespace kalvio::simulator
