#pragma once

// The settings document of the format converters.

#include "host/SettingsData.h"
#include "platform/Export.h"

#include <memory>

class CKEDAAdapterSettings;

// Owns the adapters' settings and hands archive, trees and save table to them; keeps nothing of its own.
// User-interface thread.
class KALVIO_API CFormatConverterSettings : public CSettingsData {
public:
    explicit CFormatConverterSettings(CHostApplication* host = nullptr);
    ~CFormatConverterSettings() override;

    int Initialise(); // makes the child: 1, or 0 when memory ran out, which is posted to the main window
    [[nodiscard]] CKEDAAdapterSettings* GetKEDAAdapterSettings() const { return m_adapters.get(); }

    void Serialize(CArchive& archive) override;
    void PopulateConfigTreeCtrl(CConfigTreeCtrl* tree, HTREEITEM parent) override;
    void PopulateSaveTable(CConfigTreeCtrl* tree, HTREEITEM parent) override;
    void PopulateOLETreeCtrl(COLETreeCtrl* tree, HTREEITEM parent) override;

private:
    std::unique_ptr<CKEDAAdapterSettings> m_adapters;
};
