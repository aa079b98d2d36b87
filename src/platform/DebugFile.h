#pragma once

// The host's debug file: trace lines of bring-up and failures.

#include "platform/Export.h"
#include "platform/Text.h"

#include <functional>

// Any thread; guarded by one lock of its own.
class KALVIO_API CDebugFile {
public:
    static void Write(const CString& line); // the line brings its own line end

    // Where lines go from now on (none: nowhere, the default).
    static void SetSink(std::function<void(const CString& line)> sink);
};

// Notes a failure under a caption in the debug file.
KALVIO_API void TraceError(const CString& caption, const CString& detail);
