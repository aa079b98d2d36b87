#include "settling/SettlingFields.h"

#include "host/HostTexts.h"
#include "host/ResultCatalogue.h"
#include "host/Units.h"
#include "settling/SettlingTexts.h"

#include <array>

namespace kalvio {

namespace {

constexpr std::size_t kFieldCount = static_cast<std::size_t>(kSettlingGroups) * kSettlingFieldsPerGroup;
constexpr int kFirstTreeItem = 302;
constexpr int kTreeItemsPerGroup = 10;

struct GroupInfo {
    unsigned captionId;
    double defaultTolerance; // percent
    int defaultType;
    const char* stem; // of the names that scripts know its fields by
};

constexpr std::array<GroupInfo, kSettlingGroups> kGroups{{
    {settling::kTextAmplitude, 2.5, TOLERANCETYPE_EXPONENTIAL, "SETT_SAAmpl"},
    {settling::kTextFrequency, 2.5, TOLERANCETYPE_EXPONENTIAL, "SETT_SAFreq"},
    {settling::kTextPhase, 5.0, TOLERANCETYPE_EXPONENTIAL, "SETT_SAPhase"},
    {settling::kTextCtDetector, 2.5, TOLERANCETYPE_EXPONENTIAL, "SETT_CTD"},
    {settling::kTextFftDetector, 2.5, TOLERANCETYPE_EXPONENTIAL, "SETT_FFTD"},
    {settling::kTextCarrierAmplitude, 5.0, TOLERANCETYPE_EXPONENTIAL, "SETT_DICAmpl"},
    {settling::kTextCarrierJitter, 5.0, TOLERANCETYPE_EXPONENTIAL, "SETT_DICJitter"},
    {settling::kTextCarrierPhase, 5.0, TOLERANCETYPE_EXPONENTIAL, "SETT_DICPhase"},
    {settling::kTextInputFrameRate, 0.001, TOLERANCETYPE_NORMAL, "SETT_DIFrameRate"},
    {settling::kTextSyncSource, 0.001, TOLERANCETYPE_NORMAL, "SETT_RefSyncSource"},
}};

constexpr FieldChoice kTypes[] = {
    {TOLERANCETYPE_NONE, settling::kTextTypeNone},
    {TOLERANCETYPE_NORMAL, settling::kTextTypeNormal},
    {TOLERANCETYPE_EXPONENTIAL, settling::kTextTypeExponential},
};

SettlingGroupDetails& GroupOf(CSettingsData& document, const FieldRow& row) {
    return static_cast<CSettlingDetails&>(document).MutableGroup(
        static_cast<SettlingGroup>(row.id / kSettlingFieldsPerGroup));
}

template<auto Member>
auto& KeptInGroup(CSettingsData& document, const FieldRow& row) {
    return GroupOf(document, row).*Member;
}

template<int Unit>
int ShownIn(const CSettingsData&) {
    return Unit;
}

// What a field is in every group; the defaults of the first two are the group's own.
struct FieldInfo {
    const char* suffix;
    int firstControl;
    FieldRow row;
};

const std::array<FieldInfo, kSettlingFieldsPerGroup>& FieldInfos() {
    using Group = SettlingGroupDetails;
    static const std::array<FieldInfo, kSettlingFieldsPerGroup> kInfos{{
        {"Convergence",
         kCtrlSettlingType,
         {.details = {0, 0.0, 3.0, 0.0, 0, 0},
          .kind = FieldKind::Choice,
          .integer = KeptInGroup<&Group::ToleranceType>,
          .choices = kTypes,
          .scriptType = AutomationType::Short,
          .help = "how settled values are compared: not at all, each with the last, or ever more loosely"}},
        {"Tolerance",
         kCtrlSettlingTolerance,
         {.details = {0, 0.0, 100.0, 0.0, 7, 5},
          .real = KeptInGroup<&Group::Tolerance>,
          .unit = ShownIn<kUnitPercent>,
          .scriptType = AutomationType::Double,
          .help = "how far values may lie apart, relative to the newest"}},
        {"SettlingTime",
         kCtrlSettlingTime,
         {.details = {0, 0.0, 5000.0, 30.0, 2, 0},
          .integer = KeptInGroup<&Group::SettlingTime>,
          .scriptType = AutomationType::Long,
          .help = "milliseconds that pass before the first value counts"}},
        {"NumResults",
         kCtrlSettlingCount,
         {.details = {0, 1.0, 10.0, 3.0, 1, 0},
          .integer = KeptInGroup<&Group::NumResults>,
          .scriptType = AutomationType::Short,
          .help = "how many values in a row must agree"}},
        {"Average",
         kCtrlSettlingAverage,
         {.details = {0, 0.0, 1.0, 0.0, 0, 0},
          .kind = FieldKind::Flag,
          .integer = KeptInGroup<&Group::Average>,
          .scriptType = AutomationType::Bool,
          .help = "whether the settled value is the mean of the values that agreed"}},
    }};
    return kInfos;
}

// The rows with the names that they point at.
struct Rows {
    std::array<CString, kFieldCount> names;
    std::array<FieldRow, kFieldCount> rows;
    std::array<FieldDetails, kFieldCount> details;

    Rows() {
        for (std::size_t index = 0; index < kFieldCount; ++index) {
            Fill(index, index / kSettlingFieldsPerGroup, index % kSettlingFieldsPerGroup);
        }
    }

    void Fill(std::size_t index, std::size_t group, std::size_t field) {
        const GroupInfo& groupInfo = kGroups[group];
        const FieldInfo& info = FieldInfos()[field];
        names[index] = CString(groupInfo.stem) + info.suffix;
        FieldRow& row = rows[index];
        row = info.row;
        row.id = static_cast<int>(index);
        row.ctrlID = info.firstControl + static_cast<int>(group);
        row.details.stringId = groupInfo.captionId + 1 + static_cast<unsigned>(field);
        if (row.real != nullptr) {
            row.details.defaultValue = groupInfo.defaultTolerance;
        } else if (row.kind == FieldKind::Choice) {
            row.details.defaultValue = groupInfo.defaultType;
        }
        row.archivePlace = row.scriptPlace = row.id;
        row.group = static_cast<int>(group);
        row.treeItem = kFirstTreeItem + kTreeItemsPerGroup * row.group + static_cast<int>(field);
        row.script = names[index].c_str();
        row.door = ScriptDoor::Checked;
        details[index] = row.details;
    }
};

const Rows& TheRows() {
    static const Rows kRows;
    return kRows;
}

} // namespace

std::span<const FieldRow> SettlingRows() {
    return TheRows().rows;
}

std::span<const FieldDetails> SettlingFieldTable() {
    return TheRows().details;
}

unsigned SettlingCaption(int group) {
    return kGroups[static_cast<std::size_t>(group)].captionId;
}

int SettlingGroupOfResult(int resultID) {
    const ResultRow* row = FindResultRow(resultID);
    return row == nullptr ? 0 : row->settlingGroup;
}

} // namespace kalvio
