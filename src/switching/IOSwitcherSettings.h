#pragma once

// The settings document of the I/O switchers: what scripts do with one of them by its address.

#include "host/PanelWindows.h"
#include "host/SettingsData.h"
#include "platform/Export.h"
#include "switching/IOSwitcher.h"

#include <cstdint>
#include <optional>
#include <utility>

class CChannelArray;
class CSwitcherSettings;

// A child of the switcher settings, which must outlive it. One device object stands for every I/O switcher:
// it is pointed at an address by each look-up, so that two pointers from GetIOSwitcher are the same object
// and its status word belongs to whichever device told it last. User-interface thread.
class KALVIO_API CIOSwitcherSettings : public CSettingsData {
public:
    explicit CIOSwitcherSettings(CSwitcherSettings& switchers);

    int Initialise(); // 1

    // The device object, pointed at the address without a frame; null for 254.
    CIOSwitcher* GetIOSwitcher(std::uint8_t address);
    // A new object for the device at an address, with its status, for the caller to delete. Null when no I/O
    // switcher answers there and `force` is 0, or when memory ran out, which is also posted to the main
    // window. With `force` any device or none will do.
    [[nodiscard]] static CIOSwitcher* CreateIOSwitcher(std::uint8_t address, int force);

    // Appends the eight channels of a group (of both buses by turns for a stereo array) and switches them
    // off: the whole bus when no array has channels of its other group. Views are told HINT_ARRAY_CHANGED. A
    // KvNetError; KVNET_ERR_CONFLICT when the array holds channels of other devices than I/O switchers.
    short AddBusGroupToArray(const char* name, std::uint8_t address, std::uint8_t bus, std::uint8_t group);
    short AddGroupToStereoArray(const char* name, std::uint8_t address, std::uint8_t group);

    void Serialize(CArchive& archive) override; // keeps nothing
    void PopulateOLETreeCtrl(COLETreeCtrl* tree, HTREEITEM parent) override;

    void OnIOSwitcherControlPanel();
    // Null when the window could not be made, which the user was told.
    CTypedFrameWnd* OpenIOSwitcherControlPanel();
    // Makes the view that goes into the window: the library's own unless a program sets another. Without one
    // there is no such window.
    using ViewFactory = kalvio::PanelWindows::ViewFactory;
    void SetViewFactory(ViewFactory factory) { m_viewFactory = std::move(factory); }

    // --- Automation: true when done, else the reason was reported under the automation name ---
    // An address that is no device's is refused before anything is sent, then a bus, then a group. Voltages
    // and states of a failed call are 0, of the type that they would have. A state is group X in bits 0 to 7,
    // group Y in bits 8 to 15, flags in bits 16 to 23.
    [[nodiscard]] const kalvio::DispatchTable& GetDispatchMap() const override;
    bool OLEGetShowErrorMessages();
    void OLESetShowErrorMessages(bool show);
    bool OLEGetStatus(std::int16_t address, VARIANT* status);
    bool OLEReset(std::int16_t address, bool on, VARIANT* status);
    bool OLEGetBusStatus(std::int16_t address, std::int16_t bus, VARIANT* state);
    bool OLEGetFullStatus(std::int16_t address, VARIANT* busA, VARIANT* busB);
    // Sets the relays of one group; the mask's low byte counts.
    bool OLEBusGroupSwitch(std::int16_t address, std::int16_t bus, std::int16_t group, std::int16_t mask);
    bool OLEBusLoad(std::int16_t address, std::int16_t bus, bool load);
    bool OLEBusBalance(std::int16_t address, std::int16_t bus, bool balance);
    bool OLEAddToArray(std::int16_t address, std::int16_t bus, std::int16_t group, const CString& array);
    bool OLEAddToStereoArray(std::int16_t address, std::int16_t group, const CString& array);
    bool OLEGetBusDC(std::int16_t address, std::int16_t bus, VARIANT* positive, VARIANT* negative);

private:
    // A change of some bits of a bus state: in the mask of a group, or in the flags.
    struct BusChange {
        const char* method; // automation name
        const char* trace;
        std::optional<std::int16_t> group = {}; // none: the flags
        std::uint8_t bits;
        std::uint8_t value;
        int mismatch; // the parameter that a wrong answer disagrees with
    };

    CIOSwitcher* FindSwitcher(const char* method, std::int16_t address);
    bool CheckBus(const char* method, std::int16_t bus);
    bool CheckGroup(const char* method, std::int16_t group);
    bool ChangeBus(std::int16_t address, std::int16_t bus, const BusChange& change);
    static bool CheckArray(const char* method, const CString& array, bool stereo);
    template<typename BusOfChannel>
    static short AppendChannels(CChannelArray& array, std::uint8_t address, std::uint8_t group,
                                BusOfChannel busOfChannel);

    CSwitcherSettings& m_switchers;
    CIOSwitcher m_switcher;
    ViewFactory m_viewFactory;
    kalvio::PanelWindows m_windows;
};
