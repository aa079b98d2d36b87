#pragma once

// The exported handle of the one regulator of the process.

#include "preprocessor/EResult.h"
#include "preprocessor/Watch.h"

#include <memory>

class CRegulatorWatch;

// Every handle controls the same regulator; the last one deletes it. Cannot be copied. Any thread; each call
// but GetStatus takes the pre-processor lock.
class KALVIO_API CRegulatorWatcher : public CWatcher {
public:
    CRegulatorWatcher(CWnd* owner, CEvent* done, int* status);
    ~CRegulatorWatcher() override;

    // The regulator's state; one atomic read.
    [[nodiscard]] NPreProcessor::EResult GetStatus() const;

protected:
    [[nodiscard]] CWatch* Watch() const override;

private:
    std::unique_ptr<CRegulatorWatch> m_watch;
};
