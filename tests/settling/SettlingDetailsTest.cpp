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
        details.SetField(static_cast<SettlingGroup>(group), SettlingField::SettlingTime, 100 + group);
    }
    const struct {
        int resultID;
        unsigned long time;
    } table[] = {{3208, 100}, {3210, 100}, {3209, 101}, {3211, 101}, {3216, 102},  {9991, 102}, {3251, 103},
                 {3253, 103}, {3351, 104}, {3352, 104}, {3051, 105}, {3054, 106},  {3057, 107}, {3008, 108},
                 {3009, 108}, {4008, 109}, {4009, 109}, {0, 100},    {65535, 100}, {-1, 100},   {3055, 100}};
    for (const auto& row : table) {
        EXPECT_EQ(details.GetSettlingTime(row.resultID), row.time) << row.resultID;
    }
}

TEST_F(SettlingDetailsTest, DefaultsOfEveryGroup) {
    const struct {
        int resultID;
        int type;
        double tolerance;
    } table[] = {{3208, 2, 0.025}, {3209, 2, 0.025}, {3216, 2, 0.05}, {3251, 2, 0.025}, {3351, 2, 0.025},
                 {3051, 2, 0.05},  {3054, 2, 0.05},  {3057, 2, 0.05}, {3008, 1, 1e-5},  {4008, 1, 1e-5}};
    for (const auto& row : table) {
        EXPECT_EQ(details.GetToleranceType(row.resultID), row.type) << row.resultID;
        EXPECT_DOUBLE_EQ(details.GetTolerance(row.resultID), row.tolerance) << row.resultID;
        EXPECT_EQ(details.GetSettlingTime(row.resultID), 30U);
        EXPECT_EQ(details.GetNumResults(row.resultID), 3);
        EXPECT_EQ(details.GetAveraging(row.resultID), 0);
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

TEST_F(SettlingDetailsTest, AutomationTableInOrder) {
    const char* const stems[] = {"SAAmpl",  "SAFreq",    "SAPhase",  "CTD",         "FFTD",
                                 "DICAmpl", "DICJitter", "DICPhase", "DIFrameRate", "RefSyncSource"};
    const char* const words[] = {"Convergence", "Tolerance", "SettlingTime", "NumResults", "Average"};
    const AutomationType types[] = {AutomationType::Short, AutomationType::Double, AutomationType::Long,
                                    AutomationType::Short, AutomationType::Bool};
    std::vector<CString> names;
    for (const char* stem : stems) {
        for (const char* word : words) {
            names.push_back(CString("SETT_") + stem + word);
        }
    }
    names.insert(names.end(), {"SW_CONVERGENCE_NONE", "SW_CONVERGENCE_NORMAL", "SW_CONVERGENCE_EXPONENTIAL"});
    const auto& table = details.GetDispatchMap();
    ASSERT_EQ(table.size(), names.size());
    for (std::size_t index = 0; index < names.size(); ++index) {
        EXPECT_EQ(table[index].name, names[index]);
        EXPECT_EQ(table[index].result, index < 50 ? types[index % 5] : AutomationType::Short) << names[index];
    }
    EXPECT_EQ(details.GetTOLERANCETYPE_NONE(), 0);
    EXPECT_EQ(details.GetTOLERANCETYPE_NORMAL(), 1);
    EXPECT_EQ(details.GetTOLERANCETYPE_EXPONENTIAL(), 2);
}

TEST_F(SettlingDetailsTest, AutomationSetsChecksAndHintsWithoutTheLimitsBreaking) {
    const struct {
        const char* name;
        VARIANT value;
        const char* after;
        int hint;
    } table[] = {
        {"SETT_DICJitterTolerance", VARIANT::Double(100.0), "100", 2816},
        {"SETT_DICJitterTolerance", VARIANT::Double(100.5), "100", 0},
        {"SETT_RefSyncSourceSettlingTime", VARIANT::Long(5000), "5000", 2829},
        {"SETT_RefSyncSourceSettlingTime", VARIANT::Long(5001), "5000", 0},
        {"SETT_SAPhaseNumResults", VARIANT::Short(10), "10", 2832},
        {"SETT_SAPhaseNumResults", VARIANT::Short(0), "10", 0},
        {"SETT_FFTDConvergence", VARIANT::Short(3), "3", 2804},
        {"SETT_FFTDConvergence", VARIANT::Short(4), "3", 0},
    };
    for (const auto& row : table) {
        host.hints.clear();
        const AutomationResult result = details.SetProperty(row.name, row.value);
        EXPECT_EQ(result.fault, row.hint != 0 ? AutomationFault::None : AutomationFault::Refused) << row.name;
        EXPECT_EQ(details.GetProperty(row.name).value.ToText(), row.after) << row.name;
        ASSERT_EQ(host.hints.size(), row.hint != 0 ? 1U : 0U) << row.name;
        if (row.hint != 0) {
            EXPECT_EQ(host.hints[0].hint, row.hint);
        }
    }
    EXPECT_TRUE(details.IsModified());
    EXPECT_EQ(details.SetProperty("SW_CONVERGENCE_NORMAL", VARIANT::Short(2)).fault,
              AutomationFault::ReadOnly);
    EXPECT_EQ(details.GetProperty("SW_CONVERGENCE_EXPONENTIAL").value.ToText(), "2");
}

TEST_F(SettlingDetailsTest, ARefusalNamesTheRangeInAnswerAndBox) {
    const CString box =
        "Digital Input Carrier (jitter) tolerance is out of range.\nThe valid range is 0 to 100.";
    for (const double value : {-0.5, 101.0, std::numeric_limits<double>::quiet_NaN()}) {
        host.user.Clear();
        const AutomationResult result =
            details.SetProperty("SETT_DICJitterTolerance", VARIANT::Double(value));
        EXPECT_EQ(result.fault, AutomationFault::Refused);
        EXPECT_EQ(result.text, "SETT_DICJitterTolerance refused the value: " + box);
        EXPECT_EQ(host.user.Texts(), std::vector<CString>{box}) << value;
    }
}

TEST_F(SettlingDetailsTest, PrintsEveryGroup) {
    CPrintView view;
    details.SetSignalAnalyserFrequencyToleranceType(3);
    details.PrintDetails(&view);
    const auto& lines = view.Lines();
    ASSERT_EQ(lines.size(), 52U);
    EXPECT_EQ(lines[0].label, "Sweep Settling");
    EXPECT_EQ(lines[2].label, "Signal Analyzer RMS amplitude convergence");
    EXPECT_EQ(lines[2].value, "Exponential");
    EXPECT_EQ(lines[3].value, "2.50000");
    EXPECT_EQ(lines[3].unit, "%");
    EXPECT_EQ(lines[4].value, "30");
    EXPECT_EQ(lines[4].unit, "ms");
    EXPECT_EQ(lines[5].label, "Signal Analyzer RMS amplitude no. of Results");
    EXPECT_EQ(lines[6].value, "No");
    EXPECT_EQ(lines[7].value, LoadText(11001));
    EXPECT_EQ(lines[22].label, "FFT Detector convergence");
}

TEST_F(SettlingDetailsTest, SaveTableAndAutomationBrowser) {
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

    COLETreeCtrl browser;
    details.PopulateOLETreeCtrl(&browser, browser.GetRootItem());
    int count = 0;
    int lastId = 0;
    for (HTREEITEM entry = browser.GetChildItem(browser.GetRootItem()); entry != nullptr;
         entry = browser.GetNextSiblingItem(entry)) {
        ++count;
        lastId = entry->id;
        EXPECT_EQ(entry->flags[0], 1);
        EXPECT_EQ(entry->flags[1], 1);
    }
    EXPECT_EQ(count, 50);
    EXPECT_EQ(lastId, 396);
}

TEST_F(SettlingDetailsTest, WindowThatTheHostCannotMakeIsReported) {
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
