#pragma once

// The settings document of the peripheral network.

#include "host/PanelWindows.h"
#include "host/SettingsData.h"
#include "peripheral_network/FirmwareDownload.h"
#include "peripheral_network/bus/PeripheralNetwork.h"
#include "platform/Export.h"
#include "switching/ChannelArrayList.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class CFormatConverterSettings;
class CSwitcherSettings;

// Made by the program once and entered as CHostApplication::kvNet before Initialise, taken out before it
// goes. It owns the settings of switchers and format converters, the devices that the last scan found, and
// the channel arrays. User-interface thread.
//
// Operations answer a KvNetError. A failure that they report is shown when the host's automation display is
// on and error messages are on (ReportMethodError), under the automation name of the operation.
class KALVIO_API CKvNetSettings : public CSettingsData, public kalvio::PeripheralNetwork {
public:
    explicit CKvNetSettings(CHostApplication* host = nullptr);
    ~CKvNetSettings() override;
    CKvNetSettings(const CKvNetSettings&) = delete;
    CKvNetSettings& operator=(const CKvNetSettings&) = delete;

    // Makes the children: 1, or 0 when one could not be made, which is also posted to the main window (0x8000
    // with wParam 11304).
    int Initialise();

    [[nodiscard]] CSwitcherSettings* GetSwitcherSettings() const { return m_switcherSettings.get(); }
    [[nodiscard]] CFormatConverterSettings* GetFormatConverterSettings() const {
        return m_formatConverterSettings.get();
    }
    [[nodiscard]] CChannelArrayList* GetChannelArrayList() { return &m_channelArrays; }
    [[nodiscard]] CChannelArray* GetCurrentChannelArray() const { return m_currentArray; } // null: none

    [[nodiscard]] int UseResponses() const override { return m_useResponses; }
    [[nodiscard]] int GetShowErrorMessages() const override { return m_showErrorMessages; }
    int SetShowErrorMessages(int show) override; // answers the value before

    // --- Devices ---
    // KVNET_ERR_PARAMETER for an address outside 0 to 63 (Reset takes 255 as well), which is never sent; a
    // failure of the exchange as it came.
    short GetStatus(std::uint8_t address, VARIANT* status) override;
    // KVNET_ERR_RESPONSE_MISMATCH when the device does not tell the state that was asked for. A broadcast is
    // not answered, so that switching all devices on ends with it as well. Notes loads as dropped.
    short Reset(std::uint8_t address, int on, VARIANT* status) override;
    // One record of firmware: its two leading bytes and at most 32 bytes of data, the rest is sent as 0.
    // KVNET_ERR_RESPONSE_MISMATCH, which is not reported, when the device did not take it.
    short WriteSector(std::uint8_t address, std::uint8_t first, std::uint8_t second, std::uint8_t byteCount,
                      const std::uint8_t* data);

    // Asks every address from 0 to 63 for its status, without messages: 1; 0 when memory ran out, the list
    // then holds what was found before. `progress` is told each address before it is asked.
    int FillDeviceList() override { return FillDeviceList(nullptr); }
    using ScanProgress = std::function<void(std::uint8_t address)>;
    int FillDeviceList(const ScanProgress& progress);
    void DeleteDeviceList() { m_devices.clear(); }
    [[nodiscard]] std::span<const CKvNetStatus> Devices() const override { return m_devices; }
    void PutDevicesIntoStandby(); // one broadcast, without messages

    static std::uint8_t StringToAddress(CString& text) { return kalvio::StringToAddress(text); }
    static CString AddressToString(std::uint8_t address) { return kalvio::AddressToString(address); }

    // 1 when firmware can be sent to a device of that kind: all but I/O switchers.
    static int CanDownloadFirmware(const CKvNetStatus& status);
    // Lets the user choose a file and sends it, with a progress window and a box for what went wrong. 1 when
    // the whole file was sent.
    int DownloadFirmware(const CKvNetStatus& status);
    // The same for a file that is known, with the caller's own display; nothing is shown for the result.
    [[nodiscard]] kalvio::DownloadResult DownloadFirmwareFile(const CKvNetStatus& status, const CString& path,
                                                              kalvio::ProgressDisplay& progress);

    // --- Lists for windows ---
    int FillKvNetCombo(CComboBox* combo, std::uint8_t deviceClass, std::uint8_t deviceType,
                       std::uint8_t selectAddress) const override;
    int FillChannelArrayDropList(CComboBox* combo, const CChannelArray* select) const override;

    // --- Channel arrays ---
    [[nodiscard]] CChannelArrayList& ChannelArrays() override { return m_channelArrays; }
    CChannelArray* GetChannelArray(const char* name) override;
    // The new array becomes the current one.
    short DefineArray(const char* name, int stereo, int exclusiveOnly) override;
    // Switches the channels of the array off and deletes it. KVNET_ERR_ARRAY_IN_USE while a sweep runs over
    // it.
    short RemoveArray(const char* name) override;
    [[nodiscard]] static int CanRemoveArray(const CChannelArray* array);
    // Forgets an array that goes: as the current one and on the sweep axes.
    void OnArrayRemoved(const CChannelArray* array);
    short AddChannelToArray(const char* name, std::uint8_t address, std::uint8_t classType, std::uint8_t bus,
                            std::uint8_t group, std::uint8_t channel, std::uint8_t flags);
    int IsBusGroupPartOfAnyArray(std::uint8_t address, std::uint8_t bus, std::uint8_t group) override;
    int UpdateLoadStatusForAllArrays(std::uint8_t address, std::uint8_t bus, std::uint8_t load) override;
    CChannelArrayDevice* FindChannelArrayDevice(std::uint8_t address, std::uint8_t classType) override;
    [[nodiscard]] int GetSaveChannelArrays() const override { return m_saveChannelArrays; }
    void SetSaveChannelArrays(int save) override { m_saveChannelArrays = save; }

    void ReportMethodError(const CString& method, unsigned reason, int parameter) override;

    // --- Archive ---
    // The arrays, then the switcher settings, then the format converter settings. Archives up to version 101,
    // revision 98 hold none of it: loading one leaves all as it is and takes the arrays out of the save
    // table. A damaged archive throws CArchiveException, and arrays and settings are as before. Unless stored
    // values are to be discarded, the devices of all arrays are then brought to the states of their channels.
    void Serialize(CArchive& archive) override;
    // The arrays whose devices did not take their states after the last load, with the failure.
    struct ArrayNotSent {
        CString name;
        short code; // a KvNetError
    };
    [[nodiscard]] const std::vector<ArrayNotSent>& ArraysNotSent() const { return m_arraysNotSent; }

    // --- Menus, windows and trees ---
    int OnMenuCommand(unsigned id); // 1 when it was one of this document's, else 0
    void OnKvNetSetup();
    void OnChannelArrayControlPanel();
    // Null when the window could not be made, which the user was told.
    CTypedFrameWnd* OpenChannelArrayControlPanel();
    // What runs the setup sheet modally, and what makes the control panel's view: the library's own unless a
    // program sets others. Without one there is no such window.
    using SetupSheet = std::function<void(CKvNetSettings& network, const CString& caption, CWnd* owner)>;
    void SetSetupSheet(SetupSheet sheet) { m_setupSheet = std::move(sheet); }
    using ViewFactory = kalvio::PanelWindows::ViewFactory;
    void SetViewFactory(ViewFactory factory) { m_viewFactory = std::move(factory); }

    void PopulateOLETreeCtrl(COLETreeCtrl* tree, HTREEITEM parent) override;
    void PopulateConfigTreeCtrl(CConfigTreeCtrl* tree, HTREEITEM parent) override;
    void PopulateSaveTable(CConfigTreeCtrl* tree, HTREEITEM parent) override;

    // --- Automation; true: done ---
    [[nodiscard]] const kalvio::DispatchTable& GetDispatchMap() const override;
    [[nodiscard]] bool OLEGetShowErrorMessages() const { return m_showErrorMessages != 0; }
    void OLESetShowErrorMessages(bool show) { m_showErrorMessages = show ? 1 : 0; }
    bool OLEGetStatus(std::int16_t address, VARIANT* status);
    bool OLEReset(std::int16_t address, bool on, VARIANT* status);
    bool OLEDefineChannelArray(const CString& name, bool stereo, bool exclusiveOnly);
    bool OLERemoveChannelArray(const CString& name);
    bool OLESetChannelArray(const CString& name); // makes it the current one
    // Of the current array; channels count from 1.
    bool OLEExclusiveChannel(std::int16_t channel);
    bool OLENotChannel(std::int16_t channel);
    bool OLEAddChannel(std::int16_t channel);
    bool OLERemoveChannel(std::int16_t channel);
    bool OLEClearChannels();
    bool OLESetAllChannels();
    bool OLEBalance(bool balance);

private:
    // A script's call of the current array: whether it switches channels independently of each other, which
    // an exclusive-only array refuses, and whether it names a channel.
    struct ArrayCall {
        bool independent;
        bool namesChannel;
    };

    void RegisterControls();
    [[nodiscard]] bool ShowsMessages() const;
    short ReadStatus(short address, VARIANT* status);
    short ResetDevice(short address, int on, VARIANT* status);
    short ReportBadAddress(const char* method);
    bool ReportCode(const char* method, short code); // true for KVNET_OK
    void Scan(const ScanProgress& progress);
    template<typename Call>
    bool CallCurrentArray(const char* method, ArrayCall kind, Call call);
    void LoadParts(CArchive& archive);
    void FollowArrays();
    void SendArrays();

    std::unique_ptr<CSwitcherSettings> m_switcherSettings;
    std::unique_ptr<CFormatConverterSettings> m_formatConverterSettings;
    int m_useResponses = 1; // nothing changes it
    int m_showErrorMessages = 1;
    std::vector<CKvNetStatus> m_devices;
    CChannelArrayList m_channelArrays;
    CChannelArray* m_currentArray = nullptr; // in the list
    int m_saveChannelArrays = 1;
    std::vector<ArrayNotSent> m_arraysNotSent;
    SetupSheet m_setupSheet;
    ViewFactory m_viewFactory;
    kalvio::PanelWindows m_windows;
};
