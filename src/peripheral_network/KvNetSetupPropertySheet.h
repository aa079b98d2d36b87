#pragma once

// The setup sheet of the peripheral network.

#include "host/PropertySheet.h"
#include "peripheral_network/KvNetSetupChannelArrayPage.h"
#include "peripheral_network/KvNetSetupGeneralPage.h"
#include "platform/Export.h"

// Holds its two pages. Help id 1028. User-interface thread.
class KALVIO_API CKvNetSetupPropertySheet : public CPropertySheet {
public:
    explicit CKvNetSetupPropertySheet(unsigned captionId, CWnd* parent = nullptr, int firstPage = 0);
    explicit CKvNetSetupPropertySheet(const CString& caption, CWnd* parent = nullptr, int firstPage = 0);
    ~CKvNetSetupPropertySheet() override;

    [[nodiscard]] CKvNetSetupGeneralPage& GeneralPage() { return m_general; }
    [[nodiscard]] CKvNetSetupChannelArrayPage& ChannelArrayPage() { return m_arrays; }

protected:
    bool OnInitDialog() override;

private:
    CKvNetSetupGeneralPage m_general;
    CKvNetSetupChannelArrayPage m_arrays;
};
