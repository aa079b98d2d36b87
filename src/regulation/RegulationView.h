#pragma once

// The window of the regulation: panels for the result, the source and the operation.

#include "host/SettingsView.h"
#include "platform/Export.h"

#include <cstdint>

class CRegulationSettings;

namespace kalvio::regulation {
struct ViewControl;
}

// User-interface thread. Shows the regulation document of the host application in force; everything that the
// user sets is in the document.
class KALVIO_API CRegulationView : public CSettingsView {
public:
    static constexpr int kWindowType = 36;

    // All three panels, docked (-1), or one of them, floating (262 result, 263 source, 264 operation). 0 also
    // for any other panel, and when there is no regulation document.
    int InitialiseView(int panel, CPoint point) override;
    // Fill the choices of a panel and show the values; 0 when the view does not have it.
    int InitialiseResultPanel();
    int InitialiseSourcePanel();
    int InitialiseOperationPanel();

    // Starts or stops a regulation, or passes the change to the document; 0 when it refuses, and the control
    // shows the document's value again.
    int OnControlChanged(int ctrlID) override;
    // A control id, -1 for everything or -2 for everything but the status; the changes of the host's
    // detectors fill the lists anew.
    void OnUpdate(CView* sender, int hint, void* object) override;
    // Writes a number into its edit, in the unit that the field shows; nothing for other controls.
    void DisplayValue(int ctrlID);
    // Enables what applies just now, of every panel that is there; the rest is greyed.
    void AdjustControls(int ctrlID);

    // Gives the document the default of a field, unless a regulation runs. 0.
    LRESULT OnSetDefault(WPARAM ctrlID, LPARAM lParam) override;
    // Shows the range of a number in the unit that the field shows; nothing for other controls. 0.
    LRESULT OnShowRange(WPARAM ctrlID, LPARAM lParam) override;
    void PrintDetails(CDC* context) override;
    void OnDestroy() override;

    // Null: the host has none, or the view is on its way out.
    [[nodiscard]] CRegulationSettings* GetRegulationSettings() const;

private:
    int InitialisePanel(int resource);
    void FillCombo(int ctrlID);
    void ShowEverything();
    void ShowChanged(int ctrlID);
    void ShowValue(int ctrlID);
    void ShowChoice(int ctrlID);
    void ShowStatus();
    // True when the document took what the control shows.
    bool Take(const kalvio::regulation::ViewControl& control);
    bool TakePacked(int ctrlID, std::uint32_t data);
    bool TakeNumber(int ctrlID);
    bool SendInt(int ctrlID, int value);
    bool SendReal(int ctrlID, double value, int unit);

    bool m_leaving = false; // OnDestroy was called
};
