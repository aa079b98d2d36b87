// Units: conversions against values worked out by hand, texts, rounding.

#include "host/Units.h"

#include "support/Scenarios.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// A unit by its text, or by its code where it has none.
int UnitNamed(const std::string& word) {
    const int unit = GetUnitForString(word);
    return unit != kUnitNone ? unit : std::stoi(word);
}

TEST(Units, ConvertBothWays) {
    for (const kalvio::test::ScenarioLine& line : kalvio::test::ReadLines(__FILE__, "conversions.txt")) {
        SCOPED_TRACE(line.where);
        const auto number = [&line](std::size_t at) { return std::stod(line.words.at(at)); };
        const int unit = UnitNamed(line.words[0]);
        SReferences references;
        if (line.words.size() > 3) {
            references = {UnitNamed(line.words[3]), number(4), number(5), 27516.0};
        }
        EXPECT_NEAR(CPhysicalValue::UnitToStorage(number(1), unit, references), number(2),
                    1e-8 * std::fabs(number(2)));
        EXPECT_NEAR(CPhysicalValue::StorageToUnit(number(2), unit, references), number(1),
                    1e-7 * std::max(1.0, std::fabs(number(1))));
    }
}

TEST(Units, ConvertBetweenUnits) {
    EXPECT_NEAR(CPhysicalValue::Convert(0.0, kUnitDbu, kUnitVolt, {}), 0.7745966692415, 1e-12);
    EXPECT_NEAR(CPhysicalValue::Convert(1.0, kUnitVolt, kUnitDbv, {}), 0.0, 1e-12);
    EXPECT_DOUBLE_EQ(CPhysicalValue::Convert(0.1, kUnitUi, kUnitUi, {}), 0.1);
}

// Nothing gives a NaN or an infinity, and a level of nothing is the lowest level.
TEST(Units, ExtremesStayFinite) {
    const double values[] = {0.0,       -0.0,      1e-300,     -5.0,        kLargest,
                             -kLargest, kInfinity, -kInfinity, std::nan("")};
    SReferences broken;
    broken.reference = 0.0;
    broken.ohms = -1.0;
    broken.fullScale = std::nan("");
    for (int unit = -3; unit < 80; ++unit) {
        for (const double value : values) {
            for (const SReferences& references : {SReferences{}, broken}) {
                SCOPED_TRACE(testing::Message() << value << " in unit " << unit);
                EXPECT_TRUE(std::isfinite(CPhysicalValue::UnitToStorage(value, unit, references)));
                EXPECT_TRUE(std::isfinite(CPhysicalValue::StorageToUnit(value, unit, references)));
            }
        }
    }
    for (const int unit : {kUnitDbu, kUnitDbv, kUnitDbm, kUnitDbfs, kUnitDb}) {
        EXPECT_EQ(CPhysicalValue::StorageToUnit(0.0, unit, broken), -200.0);
        EXPECT_EQ(CPhysicalValue::UnitToStorage(-1000.0, unit, broken), 0.0);
    }
    EXPECT_NEAR(CPhysicalValue::StorageToUnit(-27516.337208519708, kUnitDbv, {}), 0.0, 1e-9);
}

TEST(Units, KindsAndTexts) {
    struct Row {
        int unit;
        const char* text;
        bool dB;
        bool amplitude;
        bool relative;
    };
    const Row rows[] = {
        {kUnitVolt, "V", false, true, false},           {kUnitMillivolt, "mV", false, true, false},
        {kUnitMicrovolt, "µV", false, true, false},     {kUnitDbu, "dBu", true, true, false},
        {kUnitDbv, "dBV", true, true, false},           {kUnitDbm, "dBm", true, true, false},
        {kUnitWatt, "W", false, true, false},           {kUnitFullScale, "FS", false, true, false},
        {kUnitDbfs, "dBFS", true, true, false},         {kUnitDb, "dB", true, true, true},
        {kUnitPercent, "%", false, true, true},         {kUnitHertz, "Hz", false, false, false},
        {kUnitKilohertz, "kHz", false, false, false},   {kUnitUi, "UI", false, false, false},
        {kUnitDegree, "°", false, false, false},        {kUnitPpm, "ppm", false, false, false},
        {kUnitCarrierVolt, "Vpp", false, false, false}, {kUnitSecond, "s", false, false, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(IsdBUnit(row.unit), row.dB);
        EXPECT_EQ(IsAmplitudeUnit(row.unit), row.amplitude);
        EXPECT_EQ(IsRelativeUnit(row.unit), row.relative);
        EXPECT_EQ(GetStringForUnit(row.unit), row.text);
        EXPECT_EQ(kalvio::LoadText(GetStringIDForUnit(row.unit, 1)), row.text);
        EXPECT_NE(kalvio::LoadText(GetStringIDForUnit(row.unit, 0)), "");
        EXPECT_EQ(GetUnitForString(row.text), row.unit);
    }
    EXPECT_EQ(GetStringForUnit(kUnitNone), "");
    EXPECT_EQ(GetNumDPsForUnit(kUnitNone), 0);
}

TEST(Units, TypedTexts) {
    struct Row {
        const char* text;
        int unit;
    };
    const Row rows[] = {{" DBU ", kUnitDbu}, {"hz", kUnitHertz}, {"uV", kUnitMicrovolt}, {"Deg", kUnitDegree},
                        {"", kUnitNone},     {"  ", kUnitNone},  {"furlong", kUnitNone}, {"V V", kUnitNone}};
    for (const Row& row : rows) {
        EXPECT_EQ(GetUnitForString(row.text), row.unit) << '"' << row.text << '"';
    }
}

TEST(Units, SignificantFigures) {
    struct Row {
        double value;
        int figures;
        double rounded;
    };
    const Row rows[] = {{79998.0, 1, 80000.0}, {-0.012345, 2, -0.012}, {9.96, 2, 10.0},
                        {4.902, 1, 5.0},       {0.0, 3, 0.0},          {1234.5, 0, 1000.0},
                        {1e-300, 1, 1e-300},   {1.5, 99, 1.5},         {kLargest, 1, kLargest}};
    for (const Row& row : rows) {
        EXPECT_DOUBLE_EQ(SigFig(row.value, row.figures), row.rounded) << row.value;
    }
}

} // namespace
