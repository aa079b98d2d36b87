#pragma once

// The settings document of the switchers: what scripts do with named channel arrays.

#include "host/SettingsData.h"
#include "platform/Export.h"

#include <cstdint>
#include <memory>

class CIOSwitcherSettings;

// A child of the network document, which it reaches as the peripheral network. It keeps nothing in a
// configuration of its own. User-interface thread.
class KALVIO_API CSwitcherSettings : public CSettingsData {
public:
    explicit CSwitcherSettings(CHostApplication* host = nullptr);
    ~CSwitcherSettings() override;
    CSwitcherSettings(const CSwitcherSettings&) = delete;
    CSwitcherSettings& operator=(const CSwitcherSettings&) = delete;

    // Makes the child: 1, or 0 when memory ran out, which is also posted to the main window (0x8000 with
    // wParam 11304).
    int Initialise();
    [[nodiscard]] CIOSwitcherSettings* GetIOSwitcherSettings() const { return m_ioSwitcherSettings.get(); }

    // Stores nothing. Configurations before version 20 hold the channel arrays here, which are loaded into
    // the network's list; files up to version 101, revision 98 hold nothing. Throws CArchiveException for a
    // short or damaged archive, and has changed nothing then.
    void Serialize(CArchive& archive) override;
    // The folder "I/O Switcher". The save table has no entry of this document.
    void PopulateOLETreeCtrl(COLETreeCtrl* tree, HTREEITEM parent) override;

    // --- Automation: true when done, else the reason was reported under the automation name ---
    [[nodiscard]] const kalvio::DispatchTable& GetDispatchMap() const override;
    bool OLEExclusiveChannel(const CString& name, std::int16_t channel);
    bool OLENotChannel(const CString& name, std::int16_t channel);
    bool OLEAddChannel(const CString& name, std::int16_t channel);
    bool OLERemoveChannel(const CString& name, std::int16_t channel);
    bool OLEClearChannels(const CString& name); // without a frame to what is off already
    bool OLESetAllChannels(const CString& name);
    bool OLEBalance(const CString& name, bool balance);
    bool OLEDefineArray(const CString& name);
    bool OLEDefineStereoArray(const CString& name);
    bool OLERemoveArray(const CString& name);

private:
    std::unique_ptr<CIOSwitcherSettings> m_ioSwitcherSettings;
};
