#pragma once

// The diagnostic panel of one I/O switcher: every relay, past all channel arrays.

#include "host/SettingsView.h"
#include "peripheral_network/bus/KvNetStatus.h"
#include "platform/Export.h"

#include <array>
#include <cstdint>
#include <memory>

class CIOSwitcher;
class CIOSwitcherSettings;

// Shows what it last read from the device or what the user set since. It never tells of failures: a device
// that does not answer leaves the panel without an address. Window type 32. User-interface thread.
class KALVIO_API CIOSwitcherControlPanelView : public CSettingsView {
public:
    CIOSwitcherControlPanelView();
    ~CIOSwitcherControlPanelView() override;
    [[nodiscard]] static std::unique_ptr<CView> GetInstance(); // a new one

    int InitialiseView(int panel, CPoint point) override;
    // HINT_SWITCHER_CHANGED of the device reads it anew; a reset, which leaves its class open, does not.
    void OnUpdate(CView* sender, int hint, void* object) override;
    int OnControlChanged(int controlId) override;
    void OnControlUpdateHardware(int controlId) override;
    // Reads the DC voltages, once a second, of a device that is on and measures them.
    void OnTimer(unsigned timer) override;
    void OnDestroy() override;
    void PrintDetails(CDC* context) override;
    void SetPrintTabStops(CDC* context) override;
    // The address as 16 bits; loading handles it as if it had been typed.
    void Serialize(CArchive& archive) override;

    [[nodiscard]] std::uint8_t GetAddress() const { return m_address; } // 254: none
    [[nodiscard]] const CKvNetStatus& Status() const { return m_status; }

private:
    std::unique_ptr<CWnd> MakeControl(const kalvio::ControlTemplate& item, CWnd* panel) override;
    void InitialiseControlPanel();
    void AdjustControls(int controlId);
    int UpdateControlsFromSwitcher(std::uint8_t bus, std::uint8_t group);
    int ReadRelays();
    void SetAllCheckBoxes(int check);
    void TickFromImage();
    void OnAddressChosen();
    void OnRefillIOSwitcherList();
    void FillIOSwitcherCombo();
    void PrintGroupDetails(std::uint8_t bus, std::uint8_t group);
    void ShowVoltages();
    void ClearVoltages();
    [[nodiscard]] bool IsOn() const;
    [[nodiscard]] bool MeasuresVoltages() const;
    [[nodiscard]] bool IsTicked(int controlId) const;
    [[nodiscard]] bool IsSet(std::uint8_t bus, std::uint8_t part, std::uint8_t bit) const;
    // Null while there is no such document, and for address 254.
    [[nodiscard]] static CIOSwitcherSettings* GetIOSwitcherSettings();
    [[nodiscard]] CIOSwitcher* GetIOSwitcher() const;

    std::uint8_t m_address;
    std::array<std::uint8_t, 6> m_image{}; // bus A: group X, group Y, flags; bus B
    CKvNetStatus m_status;
    int m_timer = -1;                        // -1: none runs
    std::array<signed char, 4> m_voltages{}; // bus A positive, negative; bus B
};
