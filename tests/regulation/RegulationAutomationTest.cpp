#include "regulation/Document.h"

namespace kalvio::test {
namespace {

using RegulationAutomationTest = DocumentTest;

// name, type, and for constants the value
struct Row {
    const char* name;
    char kind; // p property, c constant, m method
    AutomationType type;
    int value = 0;
};

constexpr auto kShort = AutomationType::Short;
constexpr auto kDouble = AutomationType::Double;
constexpr auto kBool = AutomationType::Bool;

constexpr Row kRows[] = {
    {"REG_Result", 'p', kShort},
    {"REG_RESULT_RMSAMPLITUDE", 'c', kShort, 3208},
    {"REG_RESULT_FREQUENCY", 'c', kShort, 3209},
    {"REG_RESULT_PHASE", 'c', kShort, 3216},
    {"REG_RESULT_CTDETECTOR", 'c', kShort, 3251},
    {"REG_RESULT_FFTDETECTOR", 'c', kShort, 3351},
    {"REG_ResultFFTDetector", 'p', kShort},
    {"REG_Channel", 'p', kShort},
    {"REG_CHANNEL_A", 'c', kShort, 0},
    {"REG_CHANNEL_B", 'c', kShort, 1},
    {"REG_CHANNEL_SEL", 'c', kShort, 2},
    {"REG_CHANNEL_NONSEL", 'c', kShort, 3},
    {"REG_CHANNEL_BOTH", 'c', kShort, 4},
    {"REG_CHANNEL_BOTHTIED", 'c', kShort, 5},
    {"REG_CHANNEL_EITHER", 'c', kShort, 6},
    {"REG_RegulationType", 'p', kShort},
    {"REG_REGULATIONTYPE_ABSOLUTE", 'c', kShort, 0},
    {"REG_REGULATIONTYPE_MAXIMUM", 'c', kShort, 1},
    {"REG_REGULATIONTYPE_MINIMUM", 'c', kShort, 2},
    {"REG_RegulateTo", 'p', kDouble},
    {"REG_ResultUnit", 'p', kShort},
    {"REG_ToleranceType", 'p', kShort},
    {"REG_TOLERANCETYPE_OFFSET", 'c', kShort, 0},
    {"REG_TOLERANCETYPE_RATIO", 'c', kShort, 1},
    {"REG_Tolerance", 'p', kDouble},
    {"REG_ToleranceUnit", 'p', kShort},
    {"REG_Sensitivity", 'p', kDouble},
    {"REG_UseSettling", 'p', kBool},
    {"REG_Continuous", 'p', kBool},
    {"REG_Timeout", 'p', kShort},
    {"REG_Source", 'p', kShort},
    {"REG_SOURCE_GENFREQ", 'c', kShort, 0},
    {"REG_SOURCE_GENAMPL", 'c', kShort, 1},
    {"REG_SOURCE_DCOFFSET", 'c', kShort, 2},
    {"REG_SOURCE_JITTERFREQ", 'c', kShort, 3},
    {"REG_SOURCE_JITTERAMPL", 'c', kShort, 4},
    {"REG_SourceOppChannel", 'p', kBool},
    {"REG_SourceMinLimit", 'p', kDouble},
    {"REG_SourceMaxLimit", 'p', kDouble},
    {"REG_SourceUnit", 'p', kShort},
    {"REG_Trend", 'p', kShort},
    {"REG_TREND_INCREASING", 'c', kShort, 0},
    {"REG_TREND_DECREASING", 'c', kShort, 1},
    {"REG_TREND_UNKNOWN", 'c', kShort, 2},
    {"REG_TREND_NONMONOTONIC", 'c', kShort, 3},
    {"REG_StepSize", 'p', kDouble},
    {"REG_StepSizeAuto", 'p', kBool},
    {"REG_Direction", 'p', kShort},
    {"REG_DIRECTION_UP", 'c', kShort, 0},
    {"REG_DIRECTION_DOWN", 'c', kShort, 1},
    {"REG_DIRECTION_UNKNOWN", 'c', kShort, 2},
    {"REG_DIRECTION_USEHISTORY", 'c', kShort, 3},
    {"REG_STATUS_NONE", 'c', kShort, 0},
    {"REG_STATUS_INPROGRESS", 'c', kShort, 1},
    {"REG_STATUS_OK", 'c', kShort, 3},
    {"REG_STATUS_FAILED", 'c', kShort, 4},
    {"REG_Start", 'm', kBool},
    {"REG_Stop", 'm', AutomationType::Void},
    {"REG_GetStatus", 'm', kShort},
};

} // namespace

TEST_F(RegulationAutomationTest, NamesInTheirOrder) {
    const DispatchTable& table = document.GetDispatchMap();
    ASSERT_EQ(table.size(), std::size(kRows));
    for (std::size_t i = 0; i < std::size(kRows); ++i) {
        const Row& row = kRows[i];
        EXPECT_STREQ(table[i].name, row.name);
        EXPECT_EQ(table[i].result, row.type) << row.name;
        EXPECT_EQ(table[i].kind, row.kind == 'm'   ? DispatchKind::Method
                                 : row.kind == 'c' ? DispatchKind::ReadOnlyProperty
                                                   : DispatchKind::Property)
            << row.name;
        if (row.kind == 'c') {
            EXPECT_EQ(Number(row.name), row.value) << row.name;
            EXPECT_EQ(document.SetProperty(row.name, VARIANT::Short(1)).fault, AutomationFault::ReadOnly);
        }
    }
}

// Every property keeps what it is given and gives it back; in an order in which all are valid.
TEST_F(RegulationAutomationTest, PropertiesReachTheirOwnField) {
    const int detector = host.fftDetectors.Add("peak")->Id();
    struct Given {
        const char* name;
        double value;
        int index;
        double stored;
    };
    const Given kGiven[] = {
        {"REG_ResultFFTDetector", 1.0 * detector, kResultFftDetector, 1.0 * detector},
        {"REG_Result", 3208, kResult, 3208},
        {"REG_Channel", 2, kChannel, 2},
        {"REG_ResultUnit", kUnitMillivolt, kResultUnit, kUnitMillivolt},
        {"REG_RegulateTo", 500, kRegulateTo, 0.5 * kStepsPerVolt},
        {"REG_Tolerance", 7, kToleranceOffset, 7},
        {"REG_Sensitivity", 33, kSensitivity, 33},
        {"REG_UseSettling", 0, kUseSettling, 0},
        {"REG_Continuous", -1, kContinuous, 1},
        {"REG_Timeout", 77, kTimeout, 77},
        {"REG_Source", 1, kSource, 1},
        {"REG_SourceOppChannel", -1, kOppositeChannel, 1},
        {"REG_SourceMinLimit", 0.25, kSourceMinLimit, 0.25 * kStepsPerVolt},
        {"REG_SourceMaxLimit", 4, kSourceMaxLimit, 4 * kStepsPerVolt},
        {"REG_SourceUnit", kUnitDbv, kSourceUnit, kUnitDbv},
        {"REG_Trend", 3, kTrend, 3},
        {"REG_StepSize", 2, kStepSize, 2},
        {"REG_StepSizeAuto", 0, kStepSizeAuto, 0},
        {"REG_Direction", 1, kDirection, 1},
        {"REG_ToleranceType", 1, kToleranceType, 1},
        {"REG_ToleranceUnit", kUnitDb, kToleranceUnit, kUnitDb},
    };
    for (const Given& given : kGiven) {
        Set(given.name, given.value);
        EXPECT_NEAR(Number(given.name), given.value, 1e-9) << given.name;
        EXPECT_NEAR(document.GetStoredValue(given.index), given.stored, 1e-9) << given.name;
    }
    EXPECT_TRUE(host.user.Texts().empty());
    Set("REG_Direction", 3);
    EXPECT_EQ(document.GetDirection(), 1);
    EXPECT_EQ(host.user.Texts().size(), 1U);
    host.application.oleDisplay = 0;
    Set("REG_Direction", 3);
    EXPECT_EQ(host.user.Texts().size(), 1U); // scripts may not show boxes now
}

} // namespace kalvio::test
