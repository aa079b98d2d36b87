#pragma once

// Settings that outlive a run: keys and named values in one human-readable file, written atomically.

#include "platform/Export.h"
#include "platform/Text.h"

#include <cstdint>
#include <memory>

// The key type that callers pass: machine-wide settings or the user's.
enum class RegistryKeyType { Machine = 0, User = 1 };

// Any thread; guarded by one lock of its own.
class KALVIO_API CRegistry {
public:
    // The value, or the default when it is missing or not of the kind asked for.
    static CString GetRegistryValue(RegistryKeyType type, const CString& key, const CString& name,
                                    const CString& defaultValue);
    static int GetRegistryValue(RegistryKeyType type, const CString& key, const CString& name,
                                int defaultValue);
    // Stores the value; false (and a line in the debug file) when the file could not be written, the value
    // then holds for this run only. A key with control characters is refused.
    static bool SetRegistryValue(RegistryKeyType type, const CString& key, const CString& name,
                                 const CString& value);
    static bool SetRegistryValue(RegistryKeyType type, const CString& key, const CString& name, int value);

    // Uses the file of that path from now on (empty: memory only, the default). A missing file is an empty
    // registry. A damaged file is kept aside under the same name with ".damaged" appended (and a number when
    // there is one already) and defaults hold; the next change makes a new file. A file that can be neither
    // read nor moved aside is left alone, and changes then hold for this run only. `error` says what was
    // wrong and where; false in these cases.
    static bool Open(const CString& path, CString& error);
    // Forgets everything and the file, for tests.
    static void Reset();
};
