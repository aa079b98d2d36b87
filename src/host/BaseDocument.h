#pragma once

// A document that scripts reach and archives carry.

#include "platform/Archive.h"
#include "platform/Automation.h"
#include "platform/Export.h"

#include <atomic>
#include <cstdint>
#include <span>

// User-interface thread, but for the modified flag, which is atomic.
class KALVIO_API CBaseDocument : public CCmdTarget {
public:
    // A new, unmodified document; false when it cannot be made.
    virtual bool OnNewDocument();
    // Stores or loads the document. While loading, an override first reads everything into temporaries and
    // applies them at its end, with nothing in between that can throw: the archive throws when it is short
    // or damaged, and the document must then be as it was.
    virtual void Serialize(CArchive& archive);
    [[nodiscard]] bool IsModified() const { return m_modified.load(); }
    void SetModifiedFlag(bool modified = true) { m_modified.store(modified); }

    // Loads through Serialize and clears the modified flag. A short or damaged archive is refused: false, a
    // clear text in `error`, and nothing is changed. Bytes that follow the document are left unread, since
    // one archive carries several documents.
    bool Load(std::span<const std::uint8_t> bytes, CString& error);
    bool Load(CArchive& archive, CString& error);

private:
    std::atomic<bool> m_modified{false};
};
