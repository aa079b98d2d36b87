#pragma once

// Texts and numbers as JSON.

#include "platform/Export.h"
#include "platform/Text.h"

namespace kalvio {

// The text in double quotes. A text that is no UTF-8 is taken byte by byte as Latin-1, so that the outcome
// is valid whatever the text holds. Any thread.
[[nodiscard]] KALVIO_API CString JsonText(std::string_view text);

// The shortest number that reads back as the same value; null for what is not finite, which JSON has no
// word for. Any thread.
[[nodiscard]] KALVIO_API CString JsonNumber(double value);

// The shortest decimal form that reads back as the same value. Any thread.
[[nodiscard]] KALVIO_API CString ShortestText(double value);

} // namespace kalvio
