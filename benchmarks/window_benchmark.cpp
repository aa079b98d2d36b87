// What the windows cost: opening each, reading it whole, one changed control with ten windows open, and the
// requests of 32 boxes that a user ticks in the array panel. Fails when an aim is missed.

#include "Timing.h"

#include "host/SettingsData.h"
#include "platform/ControlState.h"
#include "platform/Dialog.h"
#include "platform/UserInterface.h"
#include "reference_host/application/ReferenceHost.h"
#include "settling/SettlingDetails.h"

namespace {

using namespace kalvio;
using namespace kalvio::benchmarks;
using reference_host::ReferenceHost;
using reference_host::WindowSession;

constexpr double kMostPerChange = 50000.0; // ns
constexpr int kRuns = 30;
constexpr int kPanels = 10;
constexpr int kRelays = 32;
constexpr int kIndependently = 2594;
constexpr int kArrayList = 2590;
constexpr int kFirstBox = 2701;

class Nobody final : public UserInterface {
public:
    CString BrowseForFile(const CString&, const CString&) override { return {}; }
    void ShowWaitCursor(bool) override {}
    void DialogShown(CDialog&) override {}
    void DialogClosed(CDialog&) override {}
};

void PrintWindow(ReferenceHost& host, const std::string& name) {
    WindowSession& windows = host.WindowsByName();
    const double open = Fastest(
        kRuns,
        [&] {
            windows.Close(name);
            PumpMessages();
        },
        [&] { windows.Open(name); });
    ControlState state;
    const double read = Fastest(
        kRuns, [] {}, [&] { windows.Show(name, state); });
    std::printf("  %-12s %9.1f us %9.1f us\n", name.c_str(), open / 1000.0, read / 1000.0);
    windows.Close(name);
    PumpMessages();
}

// Ten settling windows are more than a document opens; the array panel may be open as often as one likes.
bool OneChange(ReferenceHost& host) {
    for (int panel = 0; panel < kPanels; ++panel) {
        host.Network().OpenChannelArrayControlPanel();
    }
    host.WindowsByName().Open("settling");
    const std::vector<CTypedFrameWnd*> frames = OpenFrames();
    double value = 1.0;
    const double change = Fastest(
        kRuns, [] {},
        [&] {
            value = value == 1.0 ? 2.0 : 1.0;
            host.Settling().SetProperty("SETT_SAAmplTolerance", VARIANT::Double(value));
        });
    const double told = Fastest(
        kRuns, [&] { host.Settling().SetProperty("SETT_SAAmplTolerance", VARIANT::Double(3.0)); },
        [&] {
            const std::uint64_t before = CurrentRevision();
            host.Settling().SetProperty("SETT_SAAmplTolerance", VARIANT::Double(4.0));
            for (const CTypedFrameWnd* frame : frames) {
                static_cast<void>(DescribeChanges(*frame, before));
            }
        });
    std::printf("one changed value with %zu windows open: %.1f us, read from all of them %.1f us\n",
                frames.size(), change / 1000.0, told / 1000.0);
    return Aim("At most 50 us for one changed control with ten windows open:", change <= kMostPerChange);
}

bool Boxes(ReferenceHost& host) {
    host.Network().DefineArray("relays", 0, 0);
    for (int relay = 0; relay < kRelays; ++relay) {
        host.Network().AddChannelToArray(
            "relays", 1, kClassTypeIOSwitcher, static_cast<std::uint8_t>(relay / 16),
            static_cast<std::uint8_t>(relay / 8 % 2), static_cast<std::uint8_t>(relay % 8), 0);
    }
    CTypedFrameWnd* const frame = OpenFrames().front();
    PerformAct(*frame, {ActKind::Choose, kArrayList, {}, 0});
    PerformAct(*frame, {ActKind::Click, kIndependently, {}, 0});
    const std::uint32_t before = host.Unit().PeripheralAttempts(1);
    for (int box = 0; box < kRelays; ++box) {
        PerformAct(*frame, {ActKind::Click, kFirstBox + box, {}, 0});
    }
    const std::uint32_t frames = host.Unit().PeripheralAttempts(1) - before;
    std::printf("%d boxes ticked: %u frames\n", kRelays, frames);
    return Aim("One frame a box:", frames == kRelays);
}

} // namespace

int main() {
    Nobody user;
    InstallUserInterface(&user);
    bool met = true;
    {
        ReferenceHost host{{.threaded = false}};
        if (!host.BringUp().Ok()) {
            std::printf("the simulated unit did not come up\n");
            return 1;
        }
        std::printf("  window            opened     read whole\n");
        for (const std::string& name : WindowSession::Names()) {
            PrintWindow(host, name);
        }
        met = OneChange(host);
        met = Boxes(host) && met;
    }
    InstallUserInterface(nullptr);
    return met ? 0 : 1;
}
