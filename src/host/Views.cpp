#include "host/Views.h"

#include "host/HostTexts.h"
#include "host/LiveObjects.h"

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

void CPrintView::PrintTitle(const CString& title) {
    m_lines.push_back({title, {}, {}, true});
}

void CPrintView::PrintEmptyLine() {
    m_lines.emplace_back();
}

void CPrintView::PrintField(const CString& label, const CString& value, const CString& unit) {
    m_lines.push_back({label, value, unit, false});
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
    for (CTypedFrameWnd* frame : LiveFrames().All()) {
        if (frame->WindowType() == type) {
            return frame;
        }
    }
    return nullptr;
}
