#include "bench/terminal/TerminalProgress.h"
#include "testing/ManualClock.h"

#include <gtest/gtest.h>

namespace kalvio::bench {
namespace {

TEST(TerminalProgress, TellsEveryTenthAndTheRateSoFar) {
    test::ManualClock clock;
    std::ostringstream out;
    TerminalProgress progress(out, 64);
    progress.GoModal("Download");
    progress.SetRange(100, 120, 1);
    progress.SetText("Downloading...\nsector 3");
    for (int step = 0; step < 4; ++step) {
        progress.StepIt();
        clock.Advance(8);
    }
    progress.SetPos(101); // a step back: the rate counts what was sent
    progress.SetPos(999);
    EXPECT_EQ(out.str(), "sector 3\n   10 %, 16.0 kB/s\n   20 %, 10.7 kB/s\n  100 %, 8.0 kB/s\n");
}

} // namespace
} // namespace kalvio::bench
