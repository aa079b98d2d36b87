#include "host/BaseDocument.h"

#include "host/HostTexts.h"

#include <new>

namespace {

// The sentence ends once, whether the reason is one or not.
CString LoadFailure(CString reason) {
    if (reason.ends_with('.')) {
        reason.pop_back();
    }
    return kalvio::FormatText(kalvio::LoadText(kalvio::kTextLoadFailed), reason);
}

} // namespace

bool CBaseDocument::OnNewDocument() {
    SetModifiedFlag(false);
    return true;
}

void CBaseDocument::Serialize(CArchive&) {}

bool CBaseDocument::Load(std::span<const std::uint8_t> bytes, CString& error) {
    CArchive archive(bytes);
    return Load(archive, error);
}

bool CBaseDocument::Load(CArchive& archive, CString& error) {
    try {
        Serialize(archive);
    } catch (const CArchiveException& damaged) {
        error = LoadFailure(damaged.what());
        return false;
    } catch (const std::bad_alloc&) {
        error = LoadFailure("out of memory");
        return false;
    }
    SetModifiedFlag(false);
    return true;
}
