#include "platform/posix/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace kalvio {

FileLock::FileLock(const CString& path)
    : m_descriptor(open((path + ".lock").c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0644)) {
    if (m_descriptor >= 0) {
        flock(m_descriptor, LOCK_EX);
    }
}

FileLock::~FileLock() {
    if (m_descriptor >= 0) {
        close(m_descriptor); // lets go of the lock
    }
}

} // namespace kalvio
