#pragma once

// The exported handle of a settling watch.

#include "preprocessor/SettlingWatch.h"

#include <memory>

// Owns its watch and cannot be copied: two handles that both destroyed one watch would be a fault. Any
// thread; each call takes the pre-processor lock for its whole duration.
class KALVIO_API CSettlingWatcher : public CWatcher {
public:
    struct Status {
        int resultID = 0;
        int detector = 0;
        double value = 0.0;
        int status = NPreProcessor::None;
    };

    CSettlingWatcher(CWnd* owner, CEvent* done, int* status);
    ~CSettlingWatcher() override;

    int AddSignal(int resultID, int detector);
    NPreProcessor::EResult GetStatus(Status* out, int n);
    void RemoveAllSignals();
    // Why signal `index` stands as it does; false when there is no such signal.
    bool GetVerdict(int index, SettlingVerdict& verdict);

protected:
    [[nodiscard]] CWatch* Watch() const override { return m_watch.get(); }

private:
    std::unique_ptr<CSettlingWatch> m_watch;
};
