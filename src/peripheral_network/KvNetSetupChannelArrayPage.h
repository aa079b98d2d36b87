#pragma once

// The setup sheet's editor of channel arrays.

#include "host/PropertySheet.h"
#include "peripheral_network/bus/KvNetErrors.h"
#include "platform/Export.h"
#include "switching/ChannelArray.h"
#include "switching/ChannelArrayDetailsDlg.h"

#include <cstdint>
#include <memory>
#include <vector>

class CKvNetSettings;

namespace kalvio {
struct ArrayDetailItem;
}

// Edits working copies; the arrays of the network change only when the sheet is applied. Applying gives every
// array what its copy holds, channel states included, as they were when the page opened. An array that goes
// meanwhile is made anew if its copy is still there, and when the document is loaded meanwhile the copies
// belong to the arrays of the same names. User-interface thread.
class KALVIO_API CKvNetSetupChannelArrayPage : public CPropertyPage, public kalvio::ChannelArrayNames {
public:
    CKvNetSetupChannelArrayPage();
    ~CKvNetSetupChannelArrayPage() override;

    bool OnSetActive() override;
    // Refused while the address is being typed, and when the array in front has no channels.
    bool OnApply() override;
    void OnCancel() override;

    void OnNewChannelArray();
    void OnEditChannelArray();
    void OnDeleteChannelArray();
    void OnMoveChannelArrayUp() { MoveChannelArray(-1); }
    void OnMoveChannelArrayDown() { MoveChannelArray(1); }
    int OnChannelArraySelectionChanged(); // 0 when the array in front cannot be left
    int OnDeviceAddressSelChanged() { return OnDeviceAddressKillFocus(); }
    int OnDeviceAddressKillFocus(); // 0 when the address is not taken; it is put back then
    void OnDeviceTypeSelChanged();
    void OnChannelsAvailableSelChanged();
    void OnChannelsAvailableDoubleClicked() { OnAddDeviceDetails(); }
    void OnAddDeviceDetails();
    void OnRemoveDeviceDetails();
    void OnMoveDeviceDetailsUp() { MoveDeviceDetails(-1); }
    void OnMoveDeviceDetailsDown() { MoveDeviceDetails(1); }
    void OnChannelsUsedSelChanged();

    // Compares with regard to case.
    int IsNameUnique(const CString& name, CChannelArray* except) override;

    int OnControlChanged(int controlId) override;
    LRESULT OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) override;

protected:
    bool OnInitDialog() override;
    void OnCommand(int controlId) override;

private:
    // One array under edit.
    struct ChannelArrayDetails {
        CChannelArray* live = nullptr;       // in the network's list; null: a new one
        std::unique_ptr<CChannelArray> copy; // null: deleted
        bool edited = false;                 // channels, stereo or exclusive-only
        bool nameEdited = false;
        CString liveName; // when the page opened
    };
    class Watch;
    struct Command;

    [[nodiscard]] static CKvNetSettings* Network();
    template<typename Control>
    [[nodiscard]] Control* Find(int controlId) const;
    [[nodiscard]] std::vector<kalvio::ArrayDetailItem> Items(int listId) const;

    bool MakeRecords();
    void DropRecords();
    ChannelArrayDetails* RecordOf(const CChannelArray* copy);
    void FollowArrays(int hint);

    void FillArrayList();
    void FillDeviceTypeCombo();
    void FillDetailsList();
    void FillAvailableList();
    void UpdateDescription();
    void SelectArray(int line);
    void ShowCurrentArray();
    void AdjustControlsOnArraySelectionChanged();
    void EnableItem(int controlId, bool enable);
    void WriteAddress(std::uint8_t address);
    void MarkEdited();

    bool SaveCurrentArrayDetails();
    bool RebuildChannels();
    bool AddArray(const kalvio::ArrayIdentity& identity);
    void TakeIdentity(const kalvio::ArrayIdentity& identity);
    void MoveChannelArray(int by);
    void MoveDeviceDetails(int by);
    void GiveBackToAvailable(const kalvio::ArrayDetailItem& item);

    bool ApplyRecords(CKvNetSettings& network);
    static void ApplyToArray(CKvNetSettings& network, ChannelArrayDetails& record, int target);
    static void ApplyDeletion(CKvNetSettings& network, ChannelArrayDetails& record);
    static bool ApplyNewArray(CKvNetSettings& network, ChannelArrayDetails& record, int target);

    std::vector<ChannelArrayDetails> m_records;
    CChannelArray* m_current = nullptr; // a copy; null: none
    std::uint8_t m_address = KVNET_ADDRESS_NONE;
    std::unique_ptr<Watch> m_watch; // while there are records
};
