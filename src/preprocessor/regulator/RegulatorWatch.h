#pragma once

// One user of the regulator, with the owner that is told of its outcome.

#include "preprocessor/Watch.h"
#include "preprocessor/regulator/Regulator.h"

// Under the pre-processor lock, all of it.
class CRegulatorWatch final : public CWatch {
public:
    CRegulatorWatch(CWnd* owner, CEvent* done, int* status);

    void RequestNotification() override;
    void Start(int on) override { m_regulator->Start(on); }

    // From the thread, when the regulation has ended. The request stands for the regulations that follow.
    void OnFinished(NPreProcessor::EResult outcome);

    [[nodiscard]] NPreProcessor::EResult Status() const { return m_regulator->Status(); } // any thread
    [[nodiscard]] std::unique_ptr<CRegulator> Release() { return CRegulator::Release(this); }

private:
    CRegulator* const m_regulator;
};
