#pragma once

// One user of the regulator, with the owner that is told of its outcome.

#include "preprocessor/Watch.h"
#include "preprocessor/regulator/Regulator.h"

class CRegulatorWatch final : public CWatch {
public:
    CRegulatorWatch(CWnd* owner, CEvent* done, int* status) KALVIO_NEEDS_PREPROCESSOR_LOCK;

    void RequestNotification() override KALVIO_NEEDS_PREPROCESSOR_LOCK;
    void Start(int on) override KALVIO_NEEDS_PREPROCESSOR_LOCK { m_regulator->Start(on); }

    // From the thread, when the regulation has ended. The request stands for the regulations that follow.
    void OnFinished(NPreProcessor::EResult outcome) KALVIO_NEEDS_PREPROCESSOR_LOCK;

    [[nodiscard]] NPreProcessor::EResult Status() const { return m_regulator->Status(); } // any thread
    [[nodiscard]] std::unique_ptr<CRegulator> Release() KALVIO_NEEDS_PREPROCESSOR_LOCK {
        return CRegulator::Release(this);
    }

private:
    CRegulator* const m_regulator;
};
