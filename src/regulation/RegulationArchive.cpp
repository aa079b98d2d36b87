// The document in archives, in the save table and in the automation browser.

#include "host/HostApplication.h"
#include "regulation/RegulationSettings.h"

using namespace kalvio::regulation;

namespace {

// The groups' items in the trees.
constexpr int kResultGroupItem = 901;
constexpr int kSourceGroupItem = 920;
constexpr int kOperationItems = 930;

constexpr unsigned kOperationTexts[] = {kTextStartOperation, kTextAbortOperation, kTextStatusOperation};

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
    for (const kalvio::FieldRow* row : kalvio::RowsInArchiveOrder(Rows())) {
        archive.WriteByte(SaveFlag(row->group));
        kalvio::StoreField(archive, *this, *row);
    }
}

std::uint8_t& CRegulationSettings::SaveFlag(int group) {
    return group == kResultGroup ? m_saveResultGroup : m_saveSourceGroup;
}

void CRegulationSettings::LoadFields(CArchive& archive) {
    const std::vector<const kalvio::FieldRow*> rows = kalvio::RowsInArchiveOrder(Rows());
    std::vector<kalvio::LoadedField> fields;
    fields.reserve(rows.size());
    for (const kalvio::FieldRow* row : rows) {
        fields.push_back(kalvio::ReadField(archive, *row));
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        kalvio::CheckLoadedField(fields[i], *rows[i]);
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        SaveFlag(rows[i]->group) = fields[i].saveFlag;
        kalvio::ApplyLoadedField(*this, fields[i], *rows[i]);
    }
    if (!Host().discardStoredValues) {
        RefreshReferences(1);
        RefreshReferences(0);
    }
}

void CRegulationSettings::PopulateConfigTreeCtrl(CConfigTreeCtrl* tree, HTREEITEM parent) {
    const auto addGroup = [&](int group, unsigned textId, int item, std::uint8_t save) {
        const HTREEITEM groupItem = tree->AddCheckItem(parent, kalvio::LoadText(textId), item, save != 0);
        kalvio::ForEachTreeField(Rows(), group, [&](const CString& text, int id) {
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
        tree->AddEntry(parent, text, id, kalvio::BrowserKind::Field);
    };
    kalvio::ForEachTreeField(Rows(), kResultGroup, addProperty);
    kalvio::ForEachTreeField(Rows(), kSourceGroup, addProperty);
    int item = kOperationItems;
    for (const unsigned textId : kOperationTexts) {
        tree->AddEntry(parent, kalvio::LoadText(textId), item++, kalvio::BrowserKind::Method);
    }
}
