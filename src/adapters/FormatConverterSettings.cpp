#include "adapters/FormatConverterSettings.h"

#include "adapters/KEDAAdapterSettings.h"
#include "adapters/KEDATexts.h"
#include "switching/Creation.h"

namespace {

constexpr int kItemAdapter = 11000;

} // namespace

CFormatConverterSettings::CFormatConverterSettings(CHostApplication* host) : CSettingsData(host) {}

CFormatConverterSettings::~CFormatConverterSettings() = default;

int CFormatConverterSettings::Initialise() {
    m_adapters = kalvio::MakeOrPost<CKEDAAdapterSettings>(GivenHost());
    return m_adapters != nullptr && m_adapters->Initialise() > 0 ? 1 : 0;
}

void CFormatConverterSettings::Serialize(CArchive& archive) {
    m_adapters->Serialize(archive);
}

void CFormatConverterSettings::PopulateConfigTreeCtrl(CConfigTreeCtrl* tree, HTREEITEM parent) {
    m_adapters->PopulateConfigTreeCtrl(
        tree, tree->AddCheckItem(parent, kalvio::LoadText(kalvio::keda::kTextAdapter), kItemAdapter, true));
}

void CFormatConverterSettings::PopulateSaveTable(CConfigTreeCtrl* tree, HTREEITEM parent) {
    if (tree == nullptr) {
        m_adapters->PopulateSaveTable(nullptr, nullptr);
        return;
    }
    for (HTREEITEM item = tree->GetChildItem(parent); item != nullptr;
         item = tree->GetNextSiblingItem(item)) {
        int id = 0;
        bool ticked = false;
        tree->GetItemDetails(item, id, ticked);
        if (id == kItemAdapter) {
            m_adapters->PopulateSaveTable(tree, item);
        }
    }
}

void CFormatConverterSettings::PopulateOLETreeCtrl(COLETreeCtrl* tree, HTREEITEM parent) {
    m_adapters->PopulateOLETreeCtrl(tree, tree->AddFolder(parent, kalvio::keda::kTextAdapter, kItemAdapter));
}
