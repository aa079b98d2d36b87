#pragma once

// Views of settings documents: panels of controls in a frame. User-interface thread.

#include "host/Views.h"
#include "platform/ControlState.h"
#include "platform/Dialog.h"
#include "platform/Export.h"

#include <memory>
#include <vector>

class CArchive;
class CSettingsView;

// One panel of a settings view. What the user does to its controls goes to the view.
class KALVIO_API CDragDialog : public CDialog {
public:
    // The template lives as long as the panel. The style says how the frame holds it: floating or docked.
    CDragDialog(const kalvio::DialogTemplate& layout, unsigned style, CSettingsView& view);
    ~CDragDialog() override;

    bool CreatePanel(); // the controls, within the view; false when it exists or does not want to start
    [[nodiscard]] int Resource() const { return m_layout.id; }
    [[nodiscard]] unsigned Style() const { return m_style; }

    int OnControlChanged(int controlId) override;
    void OnControlUpdateHardware(int controlId) override;
    LRESULT OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) override;
    [[nodiscard]] bool TakesCommands() const override { return false; }

protected:
    std::unique_ptr<CWnd> MakeControl(const kalvio::ControlTemplate& item) override;
    void OnCommand(int controlId) override; // nothing: a panel goes with its view only

private:
    const kalvio::DialogTemplate& m_layout;
    unsigned m_style;
    CSettingsView& m_view;
};

// The base of every view of a settings document. The host calls InitialiseView once the view stands in its
// frame, OnControlChanged when the user changed a control (1: accepted) and then OnControlUpdateHardware, and
// OnDestroy before the view goes.
class KALVIO_API CSettingsView : public CPrintView {
public:
    CSettingsView();
    ~CSettingsView() override;

    // Builds the panel with a resource number (-1: the whole window). 1, or 0 when a step failed: the window
    // is not shown.
    virtual int InitialiseView(int panel, CPoint point) = 0;
    // Asked to put a control back to its default, to show its range; 0.
    virtual LRESULT OnSetDefault(WPARAM controlId, LPARAM lParam);
    virtual LRESULT OnShowRange(WPARAM controlId, LPARAM lParam);
    virtual void OnTimer(unsigned timer);
    // What of the view a window layout keeps.
    virtual void Serialize(CArchive& archive);
    // The view goes; its panels and frame exist still. Once.
    virtual void OnDestroy();

    // A panel of the view, made but not created; the view keeps it.
    CDragDialog* AddPanelToFrame(const kalvio::DialogTemplate& layout, unsigned style);
    // Creates every panel, gives each control the tooltip that the string table has under its id and arranges
    // the panels. 1, or 0.
    int CreatePanels();
    // Puts the panels below one another, in their order, and makes the view and its frame as large as they
    // need.
    void ArrangePanels();
    [[nodiscard]] const std::vector<std::unique_ptr<CDragDialog>>& Panels() const { return m_panels; }
    [[nodiscard]] CDragDialog* FindPanel(int resource) const; // null when the view has none such

    // A control of a class in any panel; null when there is none such.
    template<typename Control>
    [[nodiscard]] Control* Find(int controlId) const {
        return dynamic_cast<Control*>(kalvio::FindControl(*this, controlId));
    }
    // Each does nothing when there is no such control.
    void ShowControl(int controlId, bool show);
    void EnableControl(int controlId, bool enable); // a disabled control is greyed too
    void SetControlText(int controlId, const CString& text);

    LRESULT OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) override;

protected:
    // A control of a class of the view's own for a panel; null: one of the library's, by its kind.
    virtual std::unique_ptr<CWnd> MakeControl(const kalvio::ControlTemplate& item, CWnd* panel);

private:
    friend class CDragDialog;

    std::vector<std::unique_ptr<CDragDialog>> m_panels;
};
