#pragma once

// The setup sheet's list of devices.

#include "host/PropertySheet.h"
#include "peripheral_network/bus/KvNetStatus.h"
#include "platform/Export.h"

// Shows what the network's last scan found; applies nothing. User-interface thread.
class KALVIO_API CKvNetSetupGeneralPage : public CPropertyPage {
public:
    CKvNetSetupGeneralPage();
    ~CKvNetSetupGeneralPage() override;

    void OnRefreshDeviceList(); // scans all addresses anew
    // Sends a firmware file of the user's choice to the selected device and tells how it went.
    void OnDownloadFirmware();
    void OnDeviceListSelChanged();

    int FillDeviceListBox(); // 1, or 0 when a line could not be added
    static int AddDeviceToListBox(CListBox* list, const CKvNetStatus& status); // likewise
    // Address, class, type, hardware version, firmware version and on or off, tabs between.
    [[nodiscard]] static CString GetDeviceListString(const CKvNetStatus& status);
    int GetStatusFromCurSel(CKvNetStatus& status) const; // 0 without a selection

    int OnControlChanged(int controlId) override;

protected:
    bool OnInitDialog() override;
    void OnCommand(int controlId) override;

private:
    [[nodiscard]] CListBox* List() const;
};
