#pragma once

// Files as the library reads them.

#include "platform/Export.h"
#include "platform/Text.h"

#include <cstdint>
#include <span>
#include <vector>

#include "platform/MacroNamesBegin.h"

namespace kalvio {

// What reading a file gave: all of it; a file that is missing, may not be read or is no plain file (a
// directory, a pipe); one too large for the memory; one that could not be read to the end.
enum class FileStatus { Ok, NotOpened, NoMemory, ReadFailed };

// A larger file counts as too large for the memory; images and settings have some kilobytes.
inline constexpr std::uint64_t kLargestFileBytes = 0x40000000;

// Reads a whole file. `bytes` is filled only with Ok; a file that shrinks while it is read is ReadFailed.
// Any thread.
KALVIO_API FileStatus ReadFile(const CString& path, std::vector<std::uint8_t>& bytes);

// Writes a whole file in one step: a new file beside it (".new" appended), then a rename. False leaves the
// old file alone. Any thread, but only one at a time for a path.
KALVIO_API bool WriteFileAtomically(const CString& path, const CString& content);

// The same for a file whose former version is kept as `path` + "~". Whenever the process or the machine
// stops, `path` holds the old content or the new one, whole. Links are followed. Empty, or why it was not
// written; then `path` is as it was. Any thread, but only one at a time for a path.
[[nodiscard]] KALVIO_API CString SaveFileKeepingOld(const CString& path,
                                                    std::span<const std::uint8_t> content);

// The full path of a file name, relative names from the working directory, without "." and ".."
// steps. Empty stays empty.
[[nodiscard]] KALVIO_API CString GetFullPathName(const CString& path);

} // namespace kalvio

#include "platform/MacroNamesEnd.h"
