#pragma once

// Writes to I/O ports: what was asked for is kept and noted in the debug file, and carried out where there is
// a device for it.

#include "platform/PortOutput.h"
#include "platform/Text.h"

#include <deque>
#include <functional>

namespace kalvio::reference_host {

enum class PortWriteEnd { Written, Failed, NotEnabled };

struct RecordedWrite {
    PortWrite write;
    PortWriteEnd end = PortWriteEnd::NotEnabled;
};

// "port 0x0378 <- 0x5A, 1 byte: not enabled".
[[nodiscard]] CString DescribeWrite(const RecordedWrite& write);

// User-interface thread.
class PortRecord final : public PortOutput {
public:
    static constexpr std::size_t kMostKept = 1000;
    using Writer = std::function<bool(const PortWrite& write)>;

    // Without a writer, no write is ever carried out.
    explicit PortRecord(Writer writer = {}) : m_writer(std::move(writer)) {}

    bool Write(const PortWrite& write) override;
    void Refused(const PortWrite& write) override;
    [[nodiscard]] const std::deque<RecordedWrite>& Writes() const { return m_writes; } // the newest last

private:
    void Note(const RecordedWrite& write);

    Writer m_writer;
    std::deque<RecordedWrite> m_writes;
};

} // namespace kalvio::reference_host
