#pragma once

// A file that one process at a time may change.

#include "platform/Text.h"

namespace kalvio {

// Waits until this process alone holds the lock of a path, which is a file beside it (".lock" appended) that
// stays. A lock that cannot be made is not waited for: the path's own failure will be told. Any thread.
class FileLock {
public:
    explicit FileLock(const CString& path);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

private:
    int m_descriptor;
};

} // namespace kalvio
