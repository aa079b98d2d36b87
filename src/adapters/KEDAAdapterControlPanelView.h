#pragma once

// The window in which the user edits one KEDA adapter.

#include "adapters/KEDAAdapterSettings.h"
#include "host/SettingsView.h"
#include "platform/Export.h"

#include <cstdint>

// Mirrors the image of the adapter at its address; each edit goes to the adapter's accessor and then its
// command to the unit. The first two tabs edit the generator's and the analyser's side, the third the control
// port. While an adapter that is on is shown, its frame clocks are read once a second. User-interface thread.
class KALVIO_API CKEDAAdapterControlPanelView : public CSettingsView {
public:
    // The document owns the view.
    explicit CKEDAAdapterControlPanelView(CKEDAAdapterSettings& document) : m_document(document) {}

    int InitialiseView(int panel, CPoint point) override; // 1, or 0 when the panel cannot be built
    // 1: accepted; 0: refused, the control is put back. Only the address group works without an adapter.
    int OnControlChanged(int controlId) override;
    // Sends what the control belongs to; failures are not shown.
    void OnControlUpdateHardware(int controlId) override;
    // Refreshes what a control id or an adapter hint concerns; -1: everything.
    void OnUpdate(CView* sender, int hint, void* object) override;
    void OnTimer(unsigned timer) override;
    void OnDestroy() override;
    void PrintDetails(CDC* context) override;
    // The address (1 byte) and the tab (32 bits, in configurations from version 19 on).
    void Serialize(CArchive& archive) override;

    // Enables, greys and shows controls as the adapter and the tab ask for.
    void AdjustControls(int controlId);
    // Shows one field of the control port or one frequency.
    void DisplayValue(int controlId);
    int OnRefillKEDAAdapterList(); // scans the network and fills the list anew; 1
    int FillKEDAAdapterCombo();    // 1, or 0 without a network

    [[nodiscard]] std::uint8_t Address() const { return m_address; } // 254: none
    [[nodiscard]] CKEDAAdapter* Adapter() const;                     // null: none

protected:
    std::unique_ptr<CWnd> MakeControl(const kalvio::ControlTemplate& item, CWnd* panel) override;

private:
    struct Change;
    struct Refresh;
    struct Command;

    bool InitialisePanel();
    [[nodiscard]] int Direction() const; // 1 on the Analyzer tab, else 0
    [[nodiscard]] int Tab() const;
    void SelectTab(int tab);

    int OnAddressChanged();
    bool SelectAdapter(CKEDAAdapter& adapter, std::uint8_t address);
    bool AcceptUnknownAddress(std::uint8_t address);
    void ShowAddress(std::uint8_t address);
    int ReselectAfterScan();
    int ResetAdapter();
    int StandbyAdapter();

    // Reactions to changed controls; false: refused.
    bool TakePath(CKEDAAdapter& adapter, int controlId);
    bool TakeOutputs(CKEDAAdapter& adapter, int controlId);
    bool TakeVoltage(CKEDAAdapter& adapter, int controlId);
    bool TakeChoice(CKEDAAdapter& adapter, int controlId);
    bool TakeFlag(CKEDAAdapter& adapter, int controlId);
    bool TakeDataLength(CKEDAAdapter& adapter, int controlId);
    bool TakeFormat(CKEDAAdapter& adapter, int controlId);
    bool TakeClockDirection(CKEDAAdapter& adapter, int controlId);
    bool TakeRouting(CKEDAAdapter& adapter, int controlId);
    bool TakeRouteAll(CKEDAAdapter& adapter, int controlId);
    bool TakeAnalyserRouting(CKEDAAdapter& adapter, int controlId);
    bool TakePort(CKEDAAdapter& adapter, int controlId);

    void ShowPaths(const CKEDAAdapter& adapter);
    void ShowFormat(const CKEDAAdapter& adapter);
    void ShowTiming(const CKEDAAdapter& adapter);
    void ShowRouting(const CKEDAAdapter& adapter);
    void ShowAnalyserRouting(CKEDAAdapter& adapter);
    void ShowClocks(const CKEDAAdapter& adapter);
    void ShowDelay(const CKEDAAdapter& adapter);
    void ShowPort(const CKEDAAdapter& adapter);
    void ShowFrequency(int controlId, int hertz, bool valid);
    void ShowTab(const CKEDAAdapter* adapter);

    void SetTick(int controlId, bool on);
    [[nodiscard]] bool Ticked(int controlId) const;
    void Choose(int controlId, std::intptr_t itemData);
    [[nodiscard]] int Chosen(int controlId) const;

    CKEDAAdapterSettings& m_document;
    std::uint8_t m_address = KVNET_ADDRESS_NONE;
    bool m_initialised = false;
    bool m_timerRuns = false;
};
