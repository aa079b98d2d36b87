// The document base, through a small document of the kind that the library's folders derive from it.

#include "host/SettingsData.h"
#include "support/TestHost.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace {

using kalvio::test::TestHost;
using kalvio::test::ViewHint;

constexpr unsigned kDescription = 11832; // "Phase"
constexpr int kCount = 100;
constexpr int kChoice = 101;
constexpr int kFlag = 102;
constexpr int kLevel = 103;
constexpr FieldDetails kTable[] = {
    {kDescription, 1.0, 10.0, 3.0, 1, 0},
    {kDescription, 0.0, 4.0, 0.0, 0, 0},
    {kDescription, 0.0, 1.0, 1.0, 0, 0},
    {kDescription, 0.0, 2.0, 1.0, 5, 3}, // volts; kept in storage units
};

class Document : public CSettingsData {
public:
    kalvio::Field<std::int32_t> count{3};
    kalvio::Field<std::int32_t> choice{0};
    kalvio::Field<std::int32_t> flag{0};
    kalvio::Field<double> level{0.0};

    const FieldDetails* GetDefaultFieldDetails(int ctrlID, int) override {
        return ctrlID >= kCount && ctrlID <= kLevel ? &kTable[ctrlID - kCount] : nullptr;
    }
    int GetFieldIndexForCtrlID(int ctrlID, int) override { return ctrlID == kChoice ? 1 : -1; }
    double GetMinValue(int index) override { return kTable[index].minimum; }
    double GetMaxValue(int index) override { return kTable[index].maximum; }
    bool OnMessenger(CIntValueMessenger* messenger) override {
        switch (messenger->ctrlID) {
        case kCount:
            OnIntValue(count, messenger, 0);
            return true;
        case kChoice:
            OnEnumValue(choice, messenger);
            return true;
        case kFlag:
            OnBoolValue(flag, messenger);
            return true;
        default:
            return false;
        }
    }
    bool OnMessenger(CPhyValueMessenger* messenger) override {
        if (messenger->ctrlID != kLevel) {
            return false;
        }
        OnPhyValue(level, messenger, kTable[3], kUnitVolt, kUnitStorage, references);
        return true;
    }
    void Serialize(CArchive& archive) override {
        if (archive.IsStoring()) {
            archive.WriteInt32(count);
            archive.WriteDouble(level);
            return;
        }
        const std::int32_t readCount = archive.ReadInt32();
        const double readLevel = archive.ReadDouble();
        count = readCount;
        level = readLevel;
    }

    SReferences references{kUnitVolt, kStepsPerVolt, 600.0, 27516.0};
};

// All of this one follows from its rows.
class RowDocument : public CSettingsData {
public:
    kalvio::Field<std::int32_t> count{3};
    kalvio::Field<std::int32_t> choice{0};
    kalvio::Field<std::int32_t> flag{0};
    kalvio::Field<double> level{0.5};
    std::span<const kalvio::FieldRow> FieldRows() const override;
};

constexpr kalvio::FieldChoice kChoices[] = {{2, kDescription}, {4, kDescription}};
constexpr kalvio::FieldRow kRows[] = {
    {.id = 0, .ctrlID = kCount, .details = kTable[0], .integer = kalvio::KeptIn<&RowDocument::count>},
    {.id = 1,
     .ctrlID = kChoice,
     .details = kTable[1],
     .kind = kalvio::FieldKind::Choice,
     .integer = kalvio::KeptIn<&RowDocument::choice>,
     .choices = kChoices},
    {.id = 2,
     .ctrlID = kFlag,
     .details = kTable[2],
     .kind = kalvio::FieldKind::Flag,
     .integer = kalvio::KeptIn<&RowDocument::flag>},
    {.id = 3,
     .ctrlID = kLevel,
     .details = kTable[3],
     .real = kalvio::KeptIn<&RowDocument::level>,
     .unit = [](const CSettingsData&) { return static_cast<int>(kUnitVolt); }},
};

std::span<const kalvio::FieldRow> RowDocument::FieldRows() const {
    return kRows;
}

TEST(SettingsData, RowsWithoutAReactionStoreAndTell) {
    const struct {
        int ctrlID;
        double value;
        bool taken;
        double stored;
        std::size_t hints;
    } rows[] = {{kCount, 10, true, 10, 1},    {kCount, 3, true, 3, 0},      {kCount, 11, false, 3, 0},
                {kChoice, 4, true, 4, 1},     {kChoice, 5, false, 0, 0},    {kFlag, 5, true, 1, 1},
                {kFlag, 0, true, 0, 0},       {kLevel, 2, true, 2, 1},      {kLevel, 0.5, true, 0.5, 0},
                {kLevel, 2.1, false, 0.5, 0}, {kLevel, -0.1, false, 0.5, 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.value << " to " << row.ctrlID);
        TestHost host;
        RowDocument document;
        const bool real = row.ctrlID == kLevel;
        EXPECT_EQ(real ? document.OLESetPhyValue(row.value, row.ctrlID)
                       : document.OLESetIntValue(static_cast<std::int32_t>(row.value), row.ctrlID),
                  row.taken);
        EXPECT_EQ(kalvio::GetKept(document, *kalvio::FindControl(kRows, row.ctrlID)), row.stored);
        EXPECT_EQ(real ? document.OLEGetPhyValue(kLevel) : 0.0, real ? row.stored : 0.0);
        ASSERT_EQ(host.hints.size(), row.hints);
        EXPECT_TRUE(row.hints == 0 || (host.hints[0].hint == row.ctrlID && host.hints[0].flag == 1));
        EXPECT_EQ(document.IsModified(), row.hints != 0);
    }
    RowDocument document;
    EXPECT_FALSE(document.OLESetPhyValue(1.0, kCount));
    EXPECT_FALSE(document.OLESetIntValue(1, kLevel));
    EXPECT_EQ(document.GetDefaultValue(3), 1.0);
    EXPECT_EQ(document.GetDefaultValue(4), 0.0);
    EXPECT_EQ(document.GetMaxValue(0) + document.GetMinValue(0), 11.0);
}

TEST(SettingsData, SetValueChecksStoresAndTells) {
    struct Row {
        const char* what;
        int index;
        double value;
        int check;
        int update;
        bool taken;
    };
    const Row rows[] = {
        {"inside", 3, 1.25, 1, 1, true},
        {"on the limit", 3, 2.0, 1, 0, true},
        {"above", 3, 2.001, 1, 1, false},
        {"above, unchecked", 3, 2.001, 0, 1, true},
        {"not a number", 3, std::nan(""), 1, 1, false},
        {"not a number, unchecked", 3, std::nan(""), 0, 1, false},
        {"no such field", 4, 1.0, 0, 1, false},
        {"negative index", -1, 1.0, 0, 1, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        TestHost host;
        host.application.oleDisplay = 0;
        Document document;
        document.level = 0.5;
        const std::array hints{kLevel, 7};
        EXPECT_EQ(
            document.SetValue(document.level, kTable, row.index, hints, row.value, row.check, row.update),
            row.taken);
        EXPECT_EQ(document.level.Get(), row.taken ? row.value : 0.5);
        EXPECT_EQ(document.IsModified(), row.taken);
        ASSERT_EQ(host.hints.size(), row.taken && row.update != 0 ? 2U : 0U);
        EXPECT_TRUE(host.user.Boxes().empty());
    }
}

TEST(SettingsData, SetValueExplainsARefusalWhenAutomationShowsBoxes) {
    TestHost host;
    Document document;
    EXPECT_FALSE(document.SetValue(document.count, kTable, 0, {}, 11, 1, 1));
    EXPECT_EQ(host.user.Texts(), std::vector<CString>{"Phase is out of range.\nThe valid range is 1 to 10."});
}

TEST(SettingsData, AutomationSetters) {
    struct Row {
        int ctrlID;
        int value;
        bool taken;
        int stored;
    };
    const Row rows[] = {{kCount, 10, true, 10}, {kCount, 11, false, 3}, {kCount, 0, false, 3},
                        {kChoice, 4, true, 4},  {kChoice, 5, false, 0}, {kChoice, -1, false, 0},
                        {kFlag, -1, true, 1},   {kFlag, 0, true, 0},    {kLevel, 1, false, 0}};
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.value << " to " << row.ctrlID);
        TestHost host;
        Document document;
        EXPECT_EQ(document.OLESetIntValue(row.value, row.ctrlID), row.taken);
        CIntValueMessenger get;
        get.ctrlID = row.ctrlID;
        get.get = true;
        document.OnMessenger(&get);
        EXPECT_EQ(get.value, row.stored);
        const bool explained = !row.taken && row.ctrlID != kLevel; // not for a control that is no integer
        EXPECT_EQ(host.user.Boxes().size(), explained ? 1U : 0U);
    }
}

TEST(SettingsData, PhysicalValuesAreCheckedInTheFieldUnit) {
    struct Row {
        double value;
        int unit;
        bool taken;
        double storage;
    };
    const Row rows[] = {
        {1.0, kUnitNone, true, 27516.337208519708},
        {500.0, kUnitMillivolt, true, 13758.168604259854},
        {-6.0205999132796239, kUnitDbv, true, 13758.168604259854},
        {55032.674417039416, kUnitStorage, true, 55032.674417039416}, // 2 V, the limit
        {200.0, kUnitPercent, true, 55032.674417039416},
        {2.001, kUnitVolt, false, 0.0},
        {-0.1, kUnitVolt, false, 0.0},
        {std::nan(""), kUnitVolt, false, 0.0},
        {std::nan(""), kUnitStorage, false, 0.0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.value << " in unit " << row.unit);
        TestHost host;
        Document document;
        CPhyValueMessenger set;
        set.ctrlID = kLevel;
        set.value = row.value;
        set.unit = row.unit;
        set.wantsMessages = true;
        document.OnMessenger(&set);
        EXPECT_EQ(set.refused, !row.taken);
        EXPECT_EQ(set.changed, row.taken);
        EXPECT_EQ(document.IsModified(), row.taken);
        EXPECT_NEAR(document.level.Get(), row.storage, 1e-9);
        EXPECT_EQ(host.user.Boxes().size(), row.taken ? 0U : 1U);
    }
}

TEST(SettingsData, PhysicalValuesReadBackInAnyUnitWithReferences) {
    TestHost host;
    Document document;
    ASSERT_TRUE(document.OLESetPhyValue(0.1, kLevel));
    EXPECT_NEAR(document.OLEGetPhyValue(kLevel), 0.1, 1e-12);
    CPhyValueMessenger get;
    get.ctrlID = kLevel;
    get.get = true;
    get.unit = kUnitDb;
    document.OnMessenger(&get);
    EXPECT_NEAR(get.value, -20.0, 1e-9);
    EXPECT_TRUE(get.hasReferences);
    EXPECT_EQ(get.references, document.references);
    EXPECT_FALSE(document.OLESetPhyValue(0.1, kCount));
    EXPECT_EQ(document.OLEGetPhyValue(kCount), 0.0);
}

TEST(SettingsData, AValueStoredAlreadyChangesNothing) {
    TestHost host;
    Document document;
    document.SetModifiedFlag();
    EXPECT_TRUE(document.OnNewDocument());
    EXPECT_TRUE(document.OLESetIntValue(3, kCount));
    EXPECT_FALSE(document.IsModified());
}

TEST(Document, LoadTakesAllOrNothing) {
    Document stored;
    stored.count = 7;
    stored.level = 0.25;
    CArchive archive;
    stored.Serialize(archive);
    const std::vector<std::uint8_t> whole = archive.Bytes();
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        SCOPED_TRACE(length);
        Document document;
        document.SetModifiedFlag();
        CString error;
        const bool loaded = document.Load(std::span(whole).first(length), error);
        EXPECT_EQ(loaded, length == whole.size());
        EXPECT_EQ(document.count.Get(), loaded ? 7 : 3);
        EXPECT_EQ(document.level.Get(), loaded ? 0.25 : 0.0);
        EXPECT_EQ(document.IsModified(), !loaded);
        EXPECT_EQ(error.rfind("The settings could not be loaded: ", 0) == 0, !loaded) << error;
    }
}

TEST(FieldDetails, RangeBoxes) {
    struct Row {
        int numberType;
        double minimum;
        double maximum;
        int code;
        double value;
        const char* text; // empty: inside
    };
    const Row rows[] = {
        {7, 0.0, 100.0, 11073, 100.0, ""},
        {7, 0.0, 100.0, 11073, 100.5, "Field is out of range.\nThe valid range is 0 % to 100 %."},
        {2, 0.0, 5000.0, 11074, 6000.0, "Field is out of range.\nThe valid range is 0 ms to 5000 ms."},
        {1, 1.0, 10.0, 11071, 0.0, "Field is out of range.\nThe valid range is 1 to 10."},
        {3, -0.125, 0.001, 0, std::nan(""), "Field is out of range.\nThe valid range is -0.125 to 0.001."},
    };
    for (const Row& row : rows) {
        TestHost host;
        const CString expected = row.text;
        EXPECT_EQ(CheckMinMax("Field", row.numberType, row.minimum, row.maximum, row.code, row.value),
                  expected.empty());
        ASSERT_EQ(host.user.Boxes().size(), expected.empty() ? 0U : 1U);
        if (!expected.empty()) {
            EXPECT_EQ(host.user.Boxes()[0].text, expected);
            EXPECT_EQ(host.user.Boxes()[0].icon, kalvio::BoxIcon::Exclamation);
        }
    }
    TestHost host;
    ShowRange(5, 0.0, 1.5, "V");
    EXPECT_EQ(host.user.Texts(), std::vector<CString>{"The valid range is 0 V to 1.5 V."});
    EXPECT_EQ((FieldDetails{0, 0, 0, 0, 7, 5}.GetFormat()), "%.5f");
    EXPECT_EQ((FieldDetails{0, 0, 0, 0, 2, 5}.GetFormat()), "%d");
}

} // namespace
