#include "host/Views.h"

#include "host/HostTexts.h"
#include "host/documents/LiveObjects.h"
#include "platform/ControlState.h"

#include <utility>

namespace {

// Never destroyed, so that a window that outlives the library's statics can still leave.
kalvio::LiveObjects<CView>& LiveViews() {
    static auto& views = *new kalvio::LiveObjects<CView>;
    return views;
}

kalvio::LiveObjects<CTypedFrameWnd>& LiveFrames() {
    static auto& frames = *new kalvio::LiveObjects<CTypedFrameWnd>;
    return frames;
}

} // namespace

CView::CView() {
    LiveViews().Add(this);
}

CView::CView(int controlId, CWnd* parent) : CWnd(controlId, parent) {
    LiveViews().Add(this);
}

CView::~CView() {
    LiveViews().Remove(this);
}

void CView::OnUpdate(CView*, int, void*) {}

CTypedFrameWnd* CView::GetParentFrame() const {
    return dynamic_cast<CTypedFrameWnd*>(GetParent());
}

CTypedFrameWnd::CTypedFrameWnd() {
    LiveFrames().Add(this);
}

CTypedFrameWnd::CTypedFrameWnd(int controlId, CWnd* parent) : CWnd(controlId, parent) {
    LiveFrames().Add(this);
}

CTypedFrameWnd::~CTypedFrameWnd() {
    LiveFrames().Remove(this);
}

void CTypedFrameWnd::SetWindowType(int type, int panel) {
    m_type = type;
    m_panel = panel;
}

void CTypedFrameWnd::Close() {
    if (m_closed) {
        return;
    }
    m_closed = true;
    ShowWindow(false);
    if (m_onClose) {
        m_onClose();
    }
}

kalvio::ActAnswer CTypedFrameWnd::Act(const kalvio::UserAct& act) {
    if (act.kind != kalvio::ActKind::Close) {
        return kalvio::ActAnswer::NotPossible;
    }
    Close();
    return kalvio::ActAnswer::Done;
}

void CPrintView::Print(CDC& context) {
    m_lines.clear();
    m_context = &context;
    SetPrintTabStops(&context);
    PrintDetails(&context);
    m_context = nullptr;
}

void CPrintView::PrintDetails(CDC*) {}

void CPrintView::SetPrintTabStops(CDC*) {}

void CPrintView::PrintTitle(const CString& title) {
    Record({title, {}, {}, true});
}

void CPrintView::PrintEmptyLine() {
    Record({});
}

void CPrintView::PrintField(const CString& label, const CString& value, const CString& unit) {
    Record({label, value, unit, false});
}

void CPrintView::PrintText(const CString& columns) {
    Record({columns, {}, {}, false});
}

void CPrintView::Record(Line line) {
    if (m_context != nullptr) {
        CString text = line.label;
        text += line.value.empty() && line.unit.empty() ? CString() : "\t" + line.value;
        text += line.unit.empty() ? CString() : " " + line.unit;
        m_context->PrintLine(text, line.title);
    }
    m_lines.push_back(std::move(line));
}

CString GetYesNoText(bool value) {
    return kalvio::LoadText(value ? kalvio::kTextYes : kalvio::kTextNo);
}

CString GetOnOffText(bool value) {
    return kalvio::LoadText(value ? kalvio::kTextOn : kalvio::kTextOff);
}

void kalvio::TellViews(CView* sender, int hint, void* object) {
    for (CView* view : LiveViews().All()) {
        // A view that was told before may have closed this one.
        if (view != sender && LiveViews().Contains(view)) {
            view->OnUpdate(sender, hint, object);
        }
    }
}

CTypedFrameWnd* kalvio::FindOpenFrame(int type) {
    for (CTypedFrameWnd* frame : OpenFrames()) {
        if (frame->WindowType() == type) {
            return frame;
        }
    }
    return nullptr;
}

std::vector<CTypedFrameWnd*> kalvio::OpenFrames() {
    std::vector<CTypedFrameWnd*> frames = LiveFrames().All();
    std::erase_if(frames, [](const CTypedFrameWnd* frame) { return frame->IsClosed(); });
    return frames;
}
