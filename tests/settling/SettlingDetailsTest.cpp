#include "settling/SettlingDetails.h"

#include "support/TestHost.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace kalvio::test {
namespace {

class SettlingDetailsTest : public ::testing::Test {
protected:
    TestHost host;
    CSettlingDetails details;
};

TEST_F(SettlingDetailsTest, EveryResultUsesItsOwnGroup) {
    for (int group = 0; group < kSettlingGroups; ++group) {
        const auto set = [&](SettlingField field, int value) {
            EXPECT_TRUE(details.SetField(static_cast<SettlingGroup>(group), field, value));
        };
        set(SettlingField::SettlingTime, 100 + group);
        set(SettlingField::NumResults, 1 + group);
        set(SettlingField::Tolerance, 50 + group);
        set(SettlingField::ToleranceType, group % 2);
    }
    const struct {
        int resultID;
        unsigned long time;
    } table[] = {{3208, 100}, {3210, 100}, {3209, 101}, {3211, 101}, {3216, 102},  {9991, 102}, {3251, 103},
                 {3253, 103}, {3351, 104}, {3352, 104}, {3051, 105}, {3054, 106},  {3057, 107}, {3008, 108},
                 {3009, 108}, {4008, 109}, {4009, 109}, {0, 100},    {65535, 100}, {-1, 100},   {3055, 100}};
    for (const auto& row : table) {
        const int group = static_cast<int>(row.time) - 100;
        EXPECT_EQ(details.GetSettlingTime(row.resultID), row.time) << row.resultID;
        EXPECT_EQ(details.GetNumResults(row.resultID), 1 + group);
        EXPECT_DOUBLE_EQ(details.GetTolerance(row.resultID), (50 + group) / 100.0);
        EXPECT_EQ(details.GetToleranceType(row.resultID), group % 2);
    }
}

TEST_F(SettlingDetailsTest, ToleranceTest) {
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kHuge = std::numeric_limits<double>::infinity();
    const struct {
        std::int16_t type;
        double value;
        double reference;
        int distance;
        int within;
    } table[] = {
        {2, 102.6, 100.0, 1, 0},  {2, 102.6, 100.0, 2, 1}, {2, 105.0, 100.0, 2, 1}, {2, 105.01, 100.0, 2, 0},
        {2, 110.0, 100.0, 3, 1},  {1, 102.5, 100.0, 1, 1}, {1, 102.5, 100.0, 2, 1}, {1, 102.6, 100.0, 9, 0},
        {1, -97.5, -100.0, 1, 1}, {1, 0.0, 0.0, 1, 1},     {1, 1e-9, 0.0, 1, 0},    {1, 500.0, 1.0, 0, 1},
        {2, 500.0, 1.0, 0, 1},    {0, 500.0, 1.0, 5, 1},   {3, 500.0, 1.0, 5, 1},   {1, kNaN, 100.0, 1, 0},
        {1, 100.0, kNaN, 1, 0},   {2, kNaN, kNaN, 2, 0},   {0, kNaN, 1.0, 1, 1},    {1, kHuge, 1.0, 1, 0},
    };
    for (const auto& row : table) {
        details.SetSignalAnalyserAmplitudeToleranceType(row.type);
        EXPECT_EQ(details.IsWithinTolerance(3208, row.value, row.reference, row.distance), row.within)
            << row.type << " " << row.value << " " << row.reference << " " << row.distance;
    }
}

TEST_F(SettlingDetailsTest, AveragingIsOffUnderTheExponentialTest) {
    details.SetCTDetectorAverage(true);
    EXPECT_EQ(details.GetAveraging(3251), 0);
    details.SetCTDetectorToleranceType(1);
    EXPECT_EQ(details.GetAveraging(3251), 1);
}

TEST_F(SettlingDetailsTest, SaveTable) {
    CConfigTreeCtrl tree;
    details.PopulateConfigTreeCtrl(&tree, tree.GetRootItem());
    HTREEITEM item = tree.GetChildItem(tree.GetRootItem());
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->id, 301);
    EXPECT_EQ(item->text, "Signal Analyzer RMS amplitude");
    EXPECT_TRUE(item->ticked);
    for (; item != nullptr; item = tree.GetNextSiblingItem(item)) {
        tree.SetTicked(item, item->id == 341);
    }
    tree.AddCheckItem(tree.GetRootItem(), "not a group", 302, true);
    details.PopulateSaveTable(&tree, tree.GetRootItem());
    for (int group = 0; group < kSettlingGroups; ++group) {
        EXPECT_EQ(details.SaveFlag(static_cast<SettlingGroup>(group)), group == 4 ? 1 : 0);
    }
    details.PopulateSaveTable(nullptr, nullptr);
    EXPECT_EQ(details.SaveFlag(SettlingGroup::SyncSource), 1);
}

TEST_F(SettlingDetailsTest, WindowThatTheHostCannotMakeIsReported) {
    details.SetViewFactory(nullptr);
    EXPECT_EQ(details.OpenSettlingDetails(1, nullptr), nullptr);
    ASSERT_EQ(host.user.Boxes().size(), 1U);
    EXPECT_EQ(host.user.Boxes()[0].text, LoadText(11307));
    EXPECT_EQ(host.user.Boxes()[0].icon, BoxIcon::Exclamation);
    ASSERT_FALSE(host.mainWindow.messages.empty());
    EXPECT_EQ(host.mainWindow.messages[0].id, 32883U);
    EXPECT_EQ(host.mainWindow.messages[0].lParam, -65510);
}

TEST_F(SettlingDetailsTest, WindowIsMovedWhenOpenedAgainAndGoesWithTheDocument) {
    struct Finder : CWnd {
        CTypedFrameWnd* open = nullptr;
        LRESULT OnMessage(unsigned, WPARAM, LPARAM) override { return reinterpret_cast<LRESULT>(open); }
    } finder;
    host.application.mainWindow = &finder;
    {
        CSettlingDetails document;
        document.SetViewFactory([] { return std::make_unique<CView>(); });
        finder.open = document.OpenSettlingDetails(1, nullptr);
        ASSERT_NE(finder.open, nullptr);
        EXPECT_EQ(finder.open->GetText(), "Sweep Settling");
        finder.open->MoveWindow({0, 0, 200, 100});
        const CPoint where{30, 40};
        EXPECT_EQ(document.OpenSettlingDetails(1, &where), finder.open);
        EXPECT_EQ(finder.open->GetWindowRect().right, 230);
        EXPECT_EQ(finder.open->GetWindowRect().top, 40);
        EXPECT_EQ(host.application.FindSettingsWindow(0), finder.open);
    }
    EXPECT_EQ(host.application.FindSettingsWindow(0), nullptr);
}

} // namespace
} // namespace kalvio::test
