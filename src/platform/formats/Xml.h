#pragma once

// Texts in XML documents, as pictures are.

#include "platform/Export.h"
#include "platform/Text.h"

#include <string_view>

namespace kalvio {

// The text with the characters that mean something to XML written as entities; good between tags and within
// double quotes. Any thread.
[[nodiscard]] KALVIO_API CString XmlText(std::string_view text);

} // namespace kalvio
