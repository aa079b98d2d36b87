#pragma once

// The window of the settling parameters: a line of controls for each group of results.

#include "host/SettingsView.h"
#include "platform/Export.h"

class CSettlingDetails;

// User-interface thread. Shows the settling document that the host application has when the view is made;
// everything that the user sets is in the document.
class KALVIO_API CSettlingView : public CSettingsView {
public:
    static constexpr int kWindowType = 26;

    CSettlingView();

    // The whole window (-1) or its one panel (260). 0 also when there is no settling document.
    int InitialiseView(int panel, CPoint point) override;
    // Binds the controls of the panel and fills them. 0, with a trace line, when one cannot be initialised.
    int InitialiseSettlingPanel();

    // Passes the change to the document; 0 when it refuses, and then nobody is told.
    int OnControlChanged(int ctrlID) override;
    void OnControlUpdateHardware(int ctrlID) override;
    // A control id, or -1 for everything; other hints do nothing.
    void OnUpdate(CView* sender, int hint, void* object) override;
    // Greys what a type of convergence has no use for: of every group (-1), or of the one whose type it is.
    void AdjustControls(int ctrlID);
    // Writes a tolerance or a settling time into its edit; nothing for other controls.
    void DisplayValue(int ctrlID);

    // After a question: puts the field of a control back to its default. 0.
    LRESULT OnSetDefault(WPARAM ctrlID, LPARAM lParam) override;
    // Shows the range of a tolerance, a settling time or a number of results. 0.
    LRESULT OnShowRange(WPARAM ctrlID, LPARAM lParam) override;
    void PrintDetails(CDC* context) override;
    void SetPrintTabStops(CDC* context) override;

private:
    bool InitialiseGroup(int group);
    void ShowValue(int ctrlID);

    CSettlingDetails* const m_details; // null: the host has none
    CDragDialog* m_panel = nullptr;    // null until the panel is made
    bool m_initialised = false;        // the panel's controls show the document
};
