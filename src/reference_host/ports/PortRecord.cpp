#include "reference_host/ports/PortRecord.h"

#include "platform/DebugFile.h"

namespace kalvio::reference_host {

CString DescribeWrite(const RecordedWrite& write) {
    constexpr const char* kEnds[] = {"written", "failed", "not enabled"};
    return Format("port 0x%04X <- 0x%0*X, %d byte%s: %s", write.write.port, write.write.bytes * 2,
                  write.write.value, write.write.bytes, write.write.bytes == 1 ? "" : "s",
                  kEnds[static_cast<std::size_t>(write.end)]);
}

bool PortRecord::Write(const PortWrite& write) {
    const bool written = m_writer && m_writer(write);
    Note({write, written ? PortWriteEnd::Written : PortWriteEnd::Failed});
    return written;
}

void PortRecord::Refused(const PortWrite& write) {
    Note({write, PortWriteEnd::NotEnabled});
}

void PortRecord::Note(const RecordedWrite& write) {
    m_writes.push_back(write);
    if (m_writes.size() > kMostKept) {
        m_writes.pop_front();
    }
    CDebugFile::Write(DescribeWrite(write) + "\n");
}

} // namespace kalvio::reference_host
