#include "preprocessor/regulator/RegulatorWatch.h"

CRegulatorWatch::CRegulatorWatch(CWnd* owner, CEvent* done, int* status)
    : CWatch(owner, done, status), m_regulator(CRegulator::Acquire(this)) {}

void CRegulatorWatch::RequestNotification() {
    if (Status() == NPreProcessor::Working) {
        m_notifyWhenFinished = true;
    } else {
        Report(Status(), ReportForm::Post);
    }
}

void CRegulatorWatch::OnFinished(NPreProcessor::EResult outcome) {
    if (m_notifyWhenFinished) {
        Report(outcome, ReportForm::Send);
    }
}
