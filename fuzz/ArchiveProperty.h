#pragma once

// What a document promises when it loads an archive from outside.

#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "host/BaseDocument.h"
#include "support/TestHost.h"

namespace kalvio::fuzz {

inline Bytes Stored(CBaseDocument& document) {
    CArchive archive;
    document.Serialize(archive);
    return archive.Bytes();
}

// A document as it is stored, behind the byte of load switches that the input begins with.
inline Bytes ArchiveSeed(CBaseDocument& document, std::uint8_t switches) {
    Bytes seed = Stored(document);
    seed.insert(seed.begin(), switches);
    return seed;
}

// The load switches, one bit each.
enum LoadSwitch : std::uint8_t { kDiscard = 1, kApplyUnsaved = 2, kEarlierVersion = 4 };

// Loads the input into a new document. Refused: there is a text and nothing has changed. Accepted:
// `checkFields(document)` finds every field within its limits, and what the document stores loads into the
// same document again.
template<typename Document, typename CheckFields>
void LoadsOrRefuses(const std::uint8_t* data, std::size_t size, CheckFields checkFields) {
    test::TestHost host;
    FuzzInput input(data, size);
    const std::uint8_t switches = input.Byte();
    host.application.discardStoredValues = (switches & kDiscard) != 0;
    host.application.applyUnsavedGroups = (switches & kApplyUnsaved) != 0;
    Document document;
    const Bytes before = Stored(document);

    CArchive archive(input.Rest());
    if ((switches & kEarlierVersion) != 0) {
        archive.SetFileVersion(100, 98);
    }
    CString error;
    const bool loaded = document.Load(archive, error);
    const Bytes after = Stored(document);
    if (!loaded) {
        Require(!error.empty(), "a refusal says why");
        Require(after == before, "a refused archive changes nothing");
        return;
    }
    checkFields(document);
    host.application.discardStoredValues = false;
    host.application.applyUnsavedGroups = true;
    Document again;
    Require(again.Load(std::span(after), error), "what was stored can be loaded");
    Require(Stored(again) == after, "what was loaded is stored as it was");
}

} // namespace kalvio::fuzz
