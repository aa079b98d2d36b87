#pragma once

// A view that is a form: the controls of one dialog template, without a document behind them.

#include "host/Views.h"
#include "platform/ControlState.h"
#include "platform/Dialog.h"
#include "platform/Export.h"

#include <memory>

// User-interface thread.
class KALVIO_API CFormView : public CView {
public:
    // The template lives as long as the view.
    explicit CFormView(const kalvio::DialogTemplate& layout);
    ~CFormView() override;

    // Makes the controls. Called once, when the view stands in its frame.
    virtual void OnInitialUpdate();
    // A control of a class; null when there is none such.
    template<typename Control>
    [[nodiscard]] Control* Find(int controlId) const {
        return dynamic_cast<Control*>(kalvio::FindControl(*this, controlId));
    }

    LRESULT OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) override;

protected:
    // A button was pressed; nothing by default.
    virtual void OnCommand(int controlId);

private:
    class Form;

    const kalvio::DialogTemplate& m_layout;
    std::unique_ptr<Form> m_form;
};
