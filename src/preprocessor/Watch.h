#pragma once

// What every watch is: something that is started, stopped and reports its outcome to an owner.

#include "platform/Export.h"
#include "platform/Sync.h"
#include "platform/Window.h"
#include "preprocessor/EResult.h"
#include "preprocessor/PreProcessor.h"

class KALVIO_API CWatch {
public:
    // Any of the three may be null; they must outlive the watch. The status is stored atomically and may be
    // polled from any thread.
    CWatch(CWnd* owner, CEvent* done, int* status);
    virtual ~CWatch();
    CWatch(const CWatch&) = delete;
    CWatch& operator=(const CWatch&) = delete;

    virtual void RequestNotification() KALVIO_NEEDS_PREPROCESSOR_LOCK = 0;
    virtual void Start(int on) KALVIO_NEEDS_PREPROCESSOR_LOCK = 0;

protected:
    enum class ReportForm { Send, Post }; // from the thread; in the caller's thread

    // Message 0x8038 to the window, then the event, then the status.
    void Report(NPreProcessor::EResult result, ReportForm form) KALVIO_NEEDS_PREPROCESSOR_LOCK;

    bool m_notifyWhenFinished KALVIO_UNDER_PREPROCESSOR_LOCK = false;

private:
    WindowHandle m_owner;
    CEvent* m_done;
    int* m_status;
};

// A handle on a watch: takes the pre-processor lock around each call. Any thread.
class KALVIO_API CWatcher {
public:
    virtual ~CWatcher() = default;
    CWatcher(const CWatcher&) = delete;
    CWatcher& operator=(const CWatcher&) = delete;

    void Start(int on);
    void RequestNotification();
    // Start(1) and RequestNotification() as one operation, so that a watch that finishes at once reports
    // exactly once.
    void StartAndRequestNotification();

protected:
    CWatcher() = default;
    [[nodiscard]] virtual CWatch* Watch() const = 0;
};
