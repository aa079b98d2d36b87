#pragma once

// The text of the registry file, line by line:
//
//     # a comment
//     [Machine\Hardware]
//     FPGAFile = "C:\\Kalvio\\fpga.bin"
//     ConverterResetWaitTime = 100
//
// A section is the key type and the key. A value is a 32-bit number or a text in double quotes, with the
// escapes \" \\ \n \r \t and \xNN (two hex digits). A name with other characters than letters, digits,
// "_", "-", "." and inner spaces stands in quotes as well. Sections and names compare without case; where a
// name repeats, its last line holds. Comments and what nobody asks for stay as they are.

#include "platform/Text.h"

#include <optional>
#include <variant>
#include <vector>

namespace kalvio {

using RegistryValue = std::variant<int, CString>;

// No thread of its own, no lock: the owner guards it.
class RegistryFile {
public:
    // Takes over the text of a file. False leaves the contents alone; `error` says in which line what is
    // wrong.
    bool Parse(std::string_view text, CString& error);

    // Null when there is no such value. Valid until the next change.
    [[nodiscard]] const RegistryValue* Find(std::string_view section, std::string_view name) const;

    // Replaces the value's line, or adds one at the end of its section, or adds the section. False for a
    // section that cannot stand in a file, because it has control characters.
    bool Set(const CString& section, const CString& name, const RegistryValue& value);

    [[nodiscard]] CString Text() const;

private:
    struct Line {
        CString text;
        bool isHeader = false;
        CString section;                    // of a header, and of the lines below it
        CString name;                       // of a value
        std::optional<RegistryValue> value; // none for a header, a comment or an empty line
    };

    // Empty when the line was understood.
    static CString ParseLine(Line& line);
    static CString ParseValueLine(Line& line);
    [[nodiscard]] std::vector<Line>::const_iterator FindLine(std::string_view section,
                                                             std::string_view name) const;
    [[nodiscard]] std::vector<Line>::const_iterator EndOfSection(std::string_view section) const;

    std::vector<Line> m_lines;
};

} // namespace kalvio
