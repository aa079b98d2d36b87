#include "ports/MSComm.h"

#include "host/HostApplication.h"

namespace {

CMSComm::Result NoControl() {
    return {kalvio::AutomationFault::Failed, "there is no communications control", {}};
}

} // namespace

int CMSComm::Create(CWnd& parent, int controlId) {
    m_control = GetHostApplication().CreateCommunicationsControl(parent, controlId);
    return m_control != nullptr ? 1 : 0;
}

CMSComm::Result CMSComm::Get(kalvio::CommProperty property) {
    return m_control != nullptr ? m_control->GetProperty(property) : NoControl();
}

CMSComm::Result CMSComm::Set(kalvio::CommProperty property, const VARIANT& value) {
    return m_control != nullptr ? m_control->SetProperty(property, value) : NoControl();
}

void CMSComm::SetEventHandler(std::function<void(kalvio::CommEvent event)> handler) {
    if (m_control != nullptr) {
        m_control->onComm = std::move(handler);
    }
}
