// The windows of the documents, worked as a user does, in a whole host with its unit.

#include "preprocessor/PPDebugView.h"
#include "reference_host/application/ReferenceHost.h"
#include "support/LayoutChecks.h"
#include "support/WindowActs.h"
#include "testing/ManualClock.h"
#include "testing/ScriptedUserInterface.h"

#include <gtest/gtest.h>

namespace kalvio::reference_host {
namespace {

class WindowsTest : public testing::Test, protected test::WindowActs {
protected:
    // The RMS amplitude to 1.1 V by the generator's amplitude, up to 5 V.
    void OpenRegulation() {
        frame = m_host.Regulation().OpenSettingsWindow(-1, 1, 0, nullptr);
        EXPECT_EQ(Choose(2640, "Signal Analyzer RMS amplitude"), ActFault::None);
        EXPECT_EQ(Choose(2650, "Generator amplitude"), ActFault::None);
        for (const auto& [id, text] : {std::pair{2643, "1.1"}, {2646, "0.01"}, {2652, "5"}}) {
            EXPECT_EQ(Enter(id, text), ActFault::None) << id;
        }
    }
    // What the window says at the end of a run.
    CString RunToItsEnd(const std::function<void()>& meanwhile = {}) {
        EXPECT_EQ(Act(ActKind::Click, 2656), ActFault::None);
        EXPECT_EQ(Act(ActKind::Click, 2658), ActFault::Disabled);
        m_host.TurnUntil([] { return false; }, 100);
        if (meanwhile) {
            meanwhile();
        }
        m_host.TurnUntil([&] { return m_host.Regulation().IsRegulationRunning() == 0; }, 60000);
        EXPECT_TRUE(FindControl(*frame, 2656)->IsWindowEnabled());
        return TextOf(2659);
    }

    test::ManualClock m_clock;
    test::ScriptedUserInterface m_user;
    ReferenceHost m_host{{.threaded = false}};
};

TEST_F(WindowsTest, ARunEndsInWordsAlsoWhenTheUnitGoesAway) {
    constexpr char kTimedOut[] = "Regulation failed:\nRegulation timed out";
    OpenRegulation();
    EXPECT_EQ(RunToItsEnd(), kTimedOut) << "no unit";
    ASSERT_TRUE(m_host.BringUp().Ok());
    EXPECT_EQ(Enter(2643, "1.4"), ActFault::None);
    EXPECT_EQ(RunToItsEnd(), "Regulation successful!");
    EXPECT_TRUE(m_host.Unit().ProtocolErrors().empty());
    EXPECT_EQ(Enter(2643, "1.1"), ActFault::None);
    EXPECT_EQ(RunToItsEnd([this] { m_host.Hardware().SuspendDevice(); }), kTimedOut);
    EXPECT_EQ(RunToItsEnd(), kTimedOut) << "suspended";
    m_host.Hardware().GoIntoDemoMode();
    EXPECT_EQ(RunToItsEnd(), kTimedOut) << "demo";
    EXPECT_TRUE(m_user.Boxes().empty());
}

TEST_F(WindowsTest, TheUnitIsPulledOutDuringARun) {
    ASSERT_TRUE(m_host.BringUp().Ok());
    OpenRegulation();
    EXPECT_EQ(RunToItsEnd([this] { m_host.Unit().AddFault({.kind = simulator::FaultKind::Disconnect}); }),
              "Regulation failed:\nRegulation timed out");
}

TEST_F(WindowsTest, WindowsOfOneTypeAreToldApartByTheirPanel) {
    CreatePPDebugWindow();
    const auto open = [this](int panel) {
        return m_host.Regulation().OpenSettingsWindow(panel, 1, 0, nullptr);
    };
    CTypedFrameWnd* const whole = open(-1);
    CTypedFrameWnd* const operation = open(264);
    EXPECT_NE(operation, whole);
    EXPECT_EQ(open(-1), whole);
    EXPECT_EQ(open(264), operation);
    CTypedFrameWnd* const settling = m_host.Settling().OpenSettlingDetails(1, nullptr);
    EXPECT_EQ(m_host.Settling().OpenSettlingDetails(1, nullptr), settling);
    EXPECT_EQ(OpenFrames().size(), 4U);
    operation->Close();
    EXPECT_NE(open(264), operation);
    for (const CTypedFrameWnd* each : OpenFrames()) {
        test::ExpectSoundLayout(DescribeWindow(*each));
    }
}

} // namespace
} // namespace kalvio::reference_host
