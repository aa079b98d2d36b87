#include "host/FormView.h"

// The controls; what they command goes to the view.
class CFormView::Form final : public CDialog {
public:
    explicit Form(CFormView& view) : m_view(view) {}
    void Make(const kalvio::DialogTemplate& layout) { CreateControls(layout, &m_view); }

protected:
    void OnCommand(int controlId) override { m_view.Send(WM_COMMAND, static_cast<WPARAM>(controlId), 0); }

private:
    CFormView& m_view;
};

CFormView::CFormView(const kalvio::DialogTemplate& layout)
    : m_layout(layout), m_form(std::make_unique<Form>(*this)) {}

CFormView::~CFormView() = default;

void CFormView::OnInitialUpdate() {
    m_form->Make(m_layout);
    MoveWindow(m_layout.rect);
}

LRESULT CFormView::OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_COMMAND) {
        return CView::OnMessage(message, wParam, lParam);
    }
    OnCommand(static_cast<int>(wParam));
    return 0;
}

void CFormView::OnCommand(int) {}
