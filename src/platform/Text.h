#pragma once

// Narrow text and the string table.

#include "platform/Export.h"

#include <span>
#include <string>
#include <string_view>

#include "platform/MacroNamesBegin.h"

using CString = std::string;

namespace kalvio {

// Formats as printf does.
[[nodiscard]] KALVIO_API KALVIO_PRINTF(1, 2) CString Format(const char* format, ...);

// Formats with a text that comes from the string table, so the compiler cannot check it; only %d, %i, %u,
// %x, %X, %s and %% with at most these arguments are carried out, anything else stands as it is.
[[nodiscard]] KALVIO_API CString FormatText(std::string_view format, const CString& text);
[[nodiscard]] KALVIO_API CString FormatText(std::string_view format, const CString& first,
                                            const CString& second);
[[nodiscard]] KALVIO_API CString FormatText(std::string_view format, int number);
[[nodiscard]] KALVIO_API CString FormatText(std::string_view format, int number, const CString& text);

// Case-insensitive comparison of ASCII letters: negative, 0 or positive.
[[nodiscard]] KALVIO_API int CompareNoCase(std::string_view a, std::string_view b);

// Removes white space at both ends.
[[nodiscard]] KALVIO_API CString Trim(std::string_view text);

// The number at the start of a text as atoi reads it: white space, a sign, digits; 0 without digits.
[[nodiscard]] KALVIO_API int ParseLeadingInt(std::string_view text);

// One text of the string table.
struct TextResource {
    unsigned id;
    const char* text;
};

// Adds a folder's texts to the process-wide string table. The table must outlive the process's use of it
// (a constexpr array). A later table wins where ids repeat, so that a host may replace a text. Any thread.
KALVIO_API void RegisterTexts(std::span<const TextResource> texts);

// The text of an id; empty when no table has it. Any thread.
[[nodiscard]] KALVIO_API CString LoadText(unsigned id);
// Its former name, kept for programs that use it.
[[nodiscard]] inline CString LoadString(unsigned id) {
    return LoadText(id);
}

// Registers a table during static initialisation: `const TextTable kTexts{kTable};`
class TextTable {
public:
    explicit TextTable(std::span<const TextResource> texts) { RegisterTexts(texts); }
};

} // namespace kalvio

#include "platform/MacroNamesEnd.h"
