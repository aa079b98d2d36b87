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

using enum kalvio::BrowserKind;

constexpr kalvio::BrowserEntry kNetworkEntries[] = {
    {kalvio::kTextShowErrorMessages, 10401, Property},
    {kalvio::kTextGetStatus, 10402},
    {kalvio::kTextReset, 10403},
};

constexpr kalvio::BrowserEntry kArrayEntries[] = {
    {kalvio::kTextDefineArray, 10404},    {kalvio::kTextRemoveArray, 10405},
    {kalvio::kTextSetArray, 10406},       {kalvio::kTextOnExclusively, 10810},
    {kalvio::kTextOffExclusively, 10811}, {kalvio::kTextChannelOn, 10812},
    {kalvio::kTextChannelOff, 10813},     {kalvio::kTextClearAll, 10814},
    {kalvio::kTextSetAll, 10815},         {kalvio::kTextSetBalance, 10816},
};

} // namespace

void CKvNetSettings::PopulateOLETreeCtrl(COLETreeCtrl* tree, HTREEITEM parent) {
    tree->AddEntries(parent, kNetworkEntries);
    tree->AddEntries(tree->AddFolder(parent, kalvio::kTextChannelArrays, kFolderArrays), kArrayEntries);
    m_switcherSettings->PopulateOLETreeCtrl(tree,
                                            tree->AddFolder(parent, kTextClassSwitcher, kFolderSwitcher));
    m_formatConverterSettings->PopulateOLETreeCtrl(
        tree, tree->AddFolder(parent, kTextClassFormatConverter, kFolderFormatConverter));
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
