// The network document in the host's trees.

#include "adapters/FormatConverterSettings.h"
#include "peripheral_network/KvNetSettings.h"
#include "peripheral_network/KvNetTexts.h"
#include "switching/SwitcherSettings.h"

namespace {

constexpr int kFolderSwitcher = 10500;
constexpr int kItemArraysSaved = 10501;
constexpr int kFolderFormatConverter = 10700;
constexpr int kFolderArrays = 10800;

// How the automation browser shows an entry; a folder has neither flag.
constexpr int kShown = 1;
constexpr int kAsProperty = 2;
constexpr int kAsMethod = 3;

struct Entry {
    unsigned text;
    int id;
    int kind;
};

constexpr Entry kNetworkEntries[] = {
    {kalvio::kTextShowErrorMessages, 10401, kAsProperty},
    {kalvio::kTextGetStatus, 10402, kAsMethod},
    {kalvio::kTextReset, 10403, kAsMethod},
};

constexpr Entry kArrayEntries[] = {
    {kalvio::kTextDefineArray, 10404, kAsMethod},    {kalvio::kTextRemoveArray, 10405, kAsMethod},
    {kalvio::kTextSetArray, 10406, kAsMethod},       {kalvio::kTextOnExclusively, 10810, kAsMethod},
    {kalvio::kTextOffExclusively, 10811, kAsMethod}, {kalvio::kTextChannelOn, 10812, kAsMethod},
    {kalvio::kTextChannelOff, 10813, kAsMethod},     {kalvio::kTextClearAll, 10814, kAsMethod},
    {kalvio::kTextSetAll, 10815, kAsMethod},         {kalvio::kTextSetBalance, 10816, kAsMethod},
};

void AddEntries(COLETreeCtrl& tree, HTREEITEM parent, std::span<const Entry> entries) {
    for (const Entry& entry : entries) {
        tree.AddItem(parent, kalvio::LoadText(entry.text), entry.id, kShown, entry.kind);
    }
}

HTREEITEM AddFolder(COLETreeCtrl& tree, HTREEITEM parent, unsigned text, int id) {
    return tree.AddItem(parent, kalvio::LoadText(text), id, 0, 0);
}

} // namespace

void CKvNetSettings::PopulateOLETreeCtrl(COLETreeCtrl* tree, HTREEITEM parent) {
    AddEntries(*tree, parent, kNetworkEntries);
    AddEntries(*tree, AddFolder(*tree, parent, kalvio::kTextChannelArrays, kFolderArrays), kArrayEntries);
    m_switcherSettings->PopulateOLETreeCtrl(tree,
                                            AddFolder(*tree, parent, kTextClassSwitcher, kFolderSwitcher));
    m_formatConverterSettings->PopulateOLETreeCtrl(
        tree, AddFolder(*tree, parent, kTextClassFormatConverter, kFolderFormatConverter));
}

void CKvNetSettings::PopulateConfigTreeCtrl(CConfigTreeCtrl* tree, HTREEITEM parent) {
    tree->AddCheckItem(parent, kalvio::LoadText(kalvio::kTextChannelArrays), kItemArraysSaved,
                       m_saveChannelArrays != 0);
    m_formatConverterSettings->PopulateConfigTreeCtrl(
        tree, tree->AddCheckItem(parent, kalvio::LoadText(kTextClassFormatConverter), kFolderFormatConverter,
                                 true));
}

void CKvNetSettings::PopulateSaveTable(CConfigTreeCtrl* tree, HTREEITEM parent) {
    if (tree == nullptr) {
        m_switcherSettings->PopulateSaveTable(nullptr, nullptr);
        m_formatConverterSettings->PopulateSaveTable(nullptr, nullptr);
        return;
    }
    for (HTREEITEM item = tree->GetChildItem(parent); item != nullptr;
         item = tree->GetNextSiblingItem(item)) {
        int id = 0;
        bool ticked = false;
        tree->GetItemDetails(item, id, ticked);
        if (id == kFolderSwitcher) {
            m_switcherSettings->PopulateSaveTable(tree, item);
        } else if (id == kItemArraysSaved) {
            m_saveChannelArrays = ticked ? 1 : 0;
        } else if (id == kFolderFormatConverter) {
            m_formatConverterSettings->PopulateSaveTable(tree, item);
        }
    }
}
