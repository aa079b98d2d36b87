#pragma once

// The settings document of the KEDA adapters: one object for each address in use, and what scripts do with
// the current one.

#include "adapters/KEDAAdapter.h"
#include "host/PanelWindows.h"
#include "host/SettingsData.h"
#include "platform/Controls.h"
#include "platform/Export.h"

#include <functional>
#include <map>
#include <memory>
#include <utility>

enum KEDAGroup : int { GROUP_GENERATOR = 0, GROUP_ANALYSER = 1 };

// Scripts work on the current adapter and, where a direction is meant, on the current group; reading the
// object `Generator` or `Analyzer` makes that the group until the other is read. User-interface thread.
class KALVIO_API CKEDAAdapterSettings : public CSettingsData {
public:
    explicit CKEDAAdapterSettings(CHostApplication* host = nullptr);
    ~CKEDAAdapterSettings() override;

    int Initialise() { return 1; }

    // The adapter at an address, made when the device there answers as one; null for 254 and for any other.
    CKEDAAdapter* GetKEDAAdapter(std::uint8_t address);
    // Makes the adapter at an address and enters it. With `force` whatever answers will do, and nothing that
    // answers: the adapter then counts as not responding. Failures are not shown. Null when there is none, or
    // when memory ran out, which is posted to the main window.
    CKEDAAdapter* CreateKEDAAdapter(std::uint8_t address, int force);
    void RemoveAllAdapters() { m_adapters.clear(); }
    [[nodiscard]] const std::map<std::uint8_t, std::unique_ptr<CKEDAAdapter>>& Adapters() const {
        return m_adapters;
    }
    [[nodiscard]] std::uint8_t CurrentAddress() const { return m_currentAddress; }

    // Sixteen channels of a direction (0 generator, 1 analyser) for an empty array; even ones on bus 1 and
    // odd ones on bus 2 in a stereo one. A KvNetError; KVNET_ERR_CONFLICT when the array is not empty.
    short AddBusGroupToArray(const char* name, std::uint8_t address, std::uint8_t bus, std::uint8_t group);
    short AddGroupToStereoArray(const char* name, std::uint8_t address, std::uint8_t group);

    // Refills a list of the panel by its control id: 1, or 0 for no list or another id.
    int FillCombo(const CKEDAAdapter* adapter, CComboBox* combo, int ctrlID);
    int FillColorCombo(const CKEDAAdapter* adapter, CColorCombo* combo, int ctrlID);

    void OnKEDAAdapterControlPanel() { OpenKEDAAdapterControlPanel(); }
    // Null when the window could not be made, which the user was told.
    CTypedFrameWnd* OpenKEDAAdapterControlPanel();
    using ViewFactory = kalvio::PanelWindows::ViewFactory;
    void SetViewFactory(ViewFactory factory) { m_viewFactory = std::move(factory); }

    int OnViewChanged(CView*, int) override { return 0; } // the panel handles its controls itself
    void UpdateHardware(int) override {}

    // The save flag, the number of adapters, then each address with its record, ascending. A damaged archive
    // is refused before an adapter is touched.
    void Serialize(CArchive& archive) override;
    void PopulateConfigTreeCtrl(CConfigTreeCtrl* tree, HTREEITEM parent) override;
    void PopulateSaveTable(CConfigTreeCtrl* tree, HTREEITEM parent) override;
    void PopulateOLETreeCtrl(COLETreeCtrl* tree, HTREEITEM parent) override;
    [[nodiscard]] int GetSaveFlag() const { return m_save; }

    // --- Automation ---
    [[nodiscard]] const kalvio::DispatchTable& GetDispatchMap() const override;
    // The current adapter; null after the user was told how to choose one.
    CKEDAAdapter* Current();
    [[nodiscard]] int Group() const { return m_group; }
    bool OLESetCurrentDevice(std::int16_t address);
    CCmdTarget* OLEGetGenerator();
    CCmdTarget* OLEGetAnalyzer();
    bool OLESetGeneratorRouting(std::int16_t wire, std::int16_t slot, std::int16_t routing);
    bool OLESetAnalyzerRouting(std::int16_t channel, std::int16_t wire, std::int16_t slot);
    // One-dimensional arrays, by value or by reference, or single values for a count of 1.
    bool OLESendSPIData(std::int16_t count, const VARIANT& transmit, const VARIANT& receive);
    bool OLESendI2CData(std::int16_t slaveAddress, std::int16_t count, const VARIANT& data);
    bool OLEAddToArray(std::int16_t address, std::int16_t bus, std::int16_t group, CString name);
    bool OLEAddToStereoArray(std::int16_t address, std::int16_t group, CString name);

    // Shown when the automation display is on and the network shows its messages.
    static void Show(const CString& text, bool exclamation);
    static bool MethodFailed(const char* method); // shows that the call was not carried out; false

private:
    bool Transfer(int mode, int count, const VARIANT& transmit, const VARIANT* receive);
    bool AddToArray(const char* method, const CString& name, bool stereo, const std::function<short()>& add);
    short AddChannels(const char* name, const std::function<ChannelDetails(std::uint8_t channel)>& channelOf);
    void LoadAdapters(CArchive& archive);

    std::map<std::uint8_t, std::unique_ptr<CKEDAAdapter>> m_adapters; // by address
    std::uint8_t m_currentAddress = KVNET_ADDRESS_NONE;
    int m_group = GROUP_GENERATOR;
    std::int32_t m_save = 1;
    ViewFactory m_viewFactory;
    kalvio::PanelWindows m_windows;
};
