// The document in archives, in the save table and in the automation browser.

#include "host/HostApplication.h"
#include "regulation/RegulationSettings.h"

#include <cmath>

using namespace kalvio::regulation;

namespace {

enum Group { kResultGroup, kSourceGroup };
enum Width { kInt32, kReal64 };

struct StoredField {
    int index;
    Group group;
    Width width;
};

// In the order of the archive.
constexpr StoredField kStored[] = {
    {kResult, kResultGroup, kInt32},
    {kResultFftDetector, kResultGroup, kInt32},
    {kChannel, kResultGroup, kInt32},
    {kRegulationType, kResultGroup, kInt32},
    {kRegulateTo, kResultGroup, kReal64},
    {kResultUnit, kResultGroup, kInt32},
    {kToleranceType, kResultGroup, kInt32},
    {kToleranceOffset, kResultGroup, kReal64},
    {kToleranceRatio, kResultGroup, kReal64},
    {kToleranceUnit, kResultGroup, kInt32},
    {kSensitivity, kResultGroup, kReal64},
    {kTrend, kResultGroup, kInt32},
    {kUseSettling, kResultGroup, kInt32},
    {kTimeout, kResultGroup, kInt32},
    {kContinuous, kResultGroup, kInt32},
    {kSource, kSourceGroup, kInt32},
    {kSourceFftDetector, kSourceGroup, kInt32},
    {kOppositeChannel, kSourceGroup, kInt32},
    {kSourceMinLimit, kSourceGroup, kReal64},
    {kSourceMaxLimit, kSourceGroup, kReal64},
    {kStepSize, kSourceGroup, kReal64},
    {kStepSizeAuto, kSourceGroup, kInt32},
    {kSourceUnit, kSourceGroup, kInt32},
    {kDirection, kSourceGroup, kInt32},
};
constexpr std::size_t kStoredCount = std::size(kStored);

struct LoadedField {
    std::uint8_t flag;
    double value;
};

std::array<LoadedField, kStoredCount> ReadFields(CArchive& archive) {
    std::array<LoadedField, kStoredCount> fields{};
    for (std::size_t i = 0; i < kStoredCount; ++i) {
        fields[i].flag = archive.ReadByte();
        fields[i].value = kStored[i].width == kInt32 ? archive.ReadInt32() : archive.ReadDouble();
    }
    return fields;
}

// Whether a loaded value goes into its field.
bool Applies(const LoadedField& field) {
    const CHostApplication& application = GetHostApplication();
    return !application.discardStoredValues && (field.flag != 0 || application.applyUnsavedGroups);
}

// Whether a value lies within the limits that the field has whatever the host's settings are. The choices
// without such limits may be ones that the host offers no more; the step's belong to dB only.
bool IsWithinOwnLimits(int index, double value) {
    const FieldDetails& limits = FieldAt(index).details;
    if (index == kStepSize || limits.minimum == limits.maximum) {
        return std::isfinite(value);
    }
    return value >= limits.minimum && value <= limits.maximum;
}

void CheckFields(const std::array<LoadedField, kStoredCount>& fields) {
    for (std::size_t i = 0; i < kStoredCount; ++i) {
        if (Applies(fields[i]) && !IsWithinOwnLimits(kStored[i].index, fields[i].value)) {
            const CString name = kalvio::LoadText(FieldAt(kStored[i].index).details.stringId);
            throw CArchiveException(
                kalvio::Format("The archive holds %g for \"%s\".", fields[i].value, name.c_str()));
        }
    }
}

// The groups' items in the trees; the fields of a group follow its id.
constexpr int kResultGroupItem = 901;
constexpr int kSourceGroupItem = 920;
constexpr int kOperationItems = 930;

constexpr unsigned kOperationTexts[] = {kTextStartOperation, kTextAbortOperation, kTextStatusOperation};

// How the automation browser shows an entry.
constexpr int kShown = 1;
constexpr int kAsProperty = 1;
constexpr int kAsMethod = 3;

// Calls `add(description, item id)` for the fields of a group; the two tolerances share one entry.
template<typename Add>
void ForEachField(Group group, int groupItem, Add add) {
    int item = groupItem;
    for (const StoredField& field : kStored) {
        if (field.group == group && field.index != kToleranceRatio) {
            add(kalvio::LoadText(FieldAt(field.index).details.stringId), ++item);
        }
    }
}

// Calls `visit(item)` for every item below `parent`.
template<typename Visit>
void ForEachItem(const CTreeCtrl& tree, HTREEITEM parent, Visit visit) {
    for (HTREEITEM item = tree.GetChildItem(parent); item != nullptr; item = tree.GetNextSiblingItem(item)) {
        visit(item);
        ForEachItem(tree, item, visit);
    }
}

} // namespace

void CRegulationSettings::Serialize(CArchive& archive) {
    if (archive.IsLoading()) {
        LoadFields(archive);
        return;
    }
    for (const StoredField& field : kStored) {
        archive.WriteByte(field.group == kResultGroup ? m_saveResultGroup : m_saveSourceGroup);
        if (field.width == kInt32) {
            archive.WriteInt32(Int(field.index));
        } else {
            archive.WriteDouble(GetStoredValue(field.index));
        }
    }
}

void CRegulationSettings::LoadFields(CArchive& archive) {
    const std::array<LoadedField, kStoredCount> fields = ReadFields(archive);
    CheckFields(fields);
    for (std::size_t i = 0; i < kStoredCount; ++i) {
        (kStored[i].group == kResultGroup ? m_saveResultGroup : m_saveSourceGroup) = fields[i].flag;
        if (Applies(fields[i])) {
            SetStoredValue(kStored[i].index, fields[i].value);
        }
    }
    if (!GetHostApplication().discardStoredValues) {
        RefreshReferences(1);
        RefreshReferences(0);
    }
}

void CRegulationSettings::PopulateConfigTreeCtrl(CConfigTreeCtrl* tree, HTREEITEM parent) {
    const auto addGroup = [&](Group group, unsigned textId, int item, std::uint8_t save) {
        const HTREEITEM groupItem = tree->AddCheckItem(parent, kalvio::LoadText(textId), item, save != 0);
        ForEachField(group, item, [&](const CString& text, int id) {
            tree->AddCheckItem(groupItem, text, id, save != 0);
        });
    };
    addGroup(kResultGroup, kTextResultGroup, kResultGroupItem, m_saveResultGroup);
    addGroup(kSourceGroup, kTextSourceGroup, kSourceGroupItem, m_saveSourceGroup);
}

void CRegulationSettings::PopulateSaveTable(CConfigTreeCtrl* tree, HTREEITEM parent) {
    if (tree == nullptr) {
        m_saveResultGroup = 1;
        return;
    }
    ForEachItem(*tree, parent != nullptr ? parent : tree->GetRootItem(), [&](HTREEITEM item) {
        int id = 0;
        bool ticked = false;
        tree->GetItemDetails(item, id, ticked);
        if (id == kResultGroupItem) {
            m_saveResultGroup = ticked ? 1 : 0;
        } else if (id == kSourceGroupItem) {
            m_saveSourceGroup = ticked ? 1 : 0;
        }
    });
}

void CRegulationSettings::PopulateOLETreeCtrl(COLETreeCtrl* tree, HTREEITEM parent) {
    const auto addProperty = [&](const CString& text, int id) {
        tree->AddItem(parent, text, id, kShown, kAsProperty);
    };
    ForEachField(kResultGroup, kResultGroupItem, addProperty);
    ForEachField(kSourceGroup, kSourceGroupItem, addProperty);
    int item = kOperationItems;
    for (const unsigned textId : kOperationTexts) {
        tree->AddItem(parent, kalvio::LoadText(textId), item++, kShown, kAsMethod);
    }
}
