#include "platform/system/RegistryFile.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>

namespace kalvio {

namespace {

struct Escape {
    char letter;
    char character;
};

constexpr Escape kEscapes[] = {{'"', '"'}, {'\\', '\\'}, {'n', '\n'}, {'r', '\r'}, {'t', '\t'}};

bool IsControl(char character) {
    const auto code = static_cast<unsigned char>(character);
    return code < 0x20 || code == 0x7F;
}

bool IsBareNameCharacter(char character) {
    const bool letter = (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
    const bool digit = character >= '0' && character <= '9';
    return letter || digit || character == '_' || character == '-' || character == '.' || character == ' ';
}

CString Quote(std::string_view text) {
    CString out = "\"";
    for (const char character : text) {
        const auto* escape = std::find_if(std::begin(kEscapes), std::end(kEscapes),
                                          [=](const Escape& each) { return each.character == character; });
        if (escape != std::end(kEscapes)) {
            out += {'\\', escape->letter};
        } else if (IsControl(character)) {
            out += Format("\\x%02X", static_cast<unsigned>(static_cast<unsigned char>(character)));
        } else {
            out += character;
        }
    }
    return out + "\"";
}

CString NameText(const CString& name) {
    const bool bare = !name.empty() && name.front() != ' ' && name.back() != ' ' &&
                      std::all_of(name.begin(), name.end(), IsBareNameCharacter);
    return bare ? name : Quote(name);
}

CString ValueText(const RegistryValue& value) {
    const auto* text = std::get_if<CString>(&value);
    return text != nullptr ? Quote(*text) : std::to_string(std::get<int>(value));
}

// Takes one escape, behind its backslash, off the rest of a line.
bool TakeEscape(std::string_view& rest, CString& out) {
    if (rest.empty()) {
        return false;
    }
    const char letter = rest.front();
    rest.remove_prefix(1);
    if (letter == 'x') {
        unsigned code = 0;
        const std::string_view digits = rest.substr(0, 2);
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), code, 16);
        if (error != std::errc() || end != digits.data() + 2) {
            return false;
        }
        out += static_cast<char>(code);
        rest.remove_prefix(2);
        return true;
    }
    const auto* escape = std::find_if(std::begin(kEscapes), std::end(kEscapes),
                                      [=](const Escape& each) { return each.letter == letter; });
    if (escape == std::end(kEscapes)) {
        return false;
    }
    out += escape->character;
    return true;
}

// Takes a text in quotes off the rest of a line. What is wrong with it, or empty.
CString TakeQuoted(std::string_view& rest, CString& out) {
    rest.remove_prefix(1);
    while (!rest.empty()) {
        const char character = rest.front();
        rest.remove_prefix(1);
        if (character == '"') {
            return {};
        }
        if (character != '\\') {
            out += character;
        } else if (!TakeEscape(rest, out)) {
            return "a text has an unknown escape";
        }
    }
    return "a text has no closing quote";
}

CString TakeName(std::string_view& rest, CString& name) {
    if (rest.front() == '"') {
        return TakeQuoted(rest, name);
    }
    const std::size_t equals = std::min(rest.find('='), rest.size());
    name = Trim(rest.substr(0, equals));
    rest.remove_prefix(equals);
    return !name.empty() && std::all_of(name.begin(), name.end(), IsBareNameCharacter)
               ? CString()
               : "this is no name of a value";
}

CString ParseValue(std::string_view text, RegistryValue& value) {
    if (text.starts_with('"')) {
        CString content;
        const CString error = TakeQuoted(text, content);
        value = std::move(content);
        return error.empty() && !text.empty() ? "something follows the text" : error;
    }
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    value = number;
    if (error == std::errc::result_out_of_range) {
        return "the number does not fit into 32 bits";
    }
    return error == std::errc() && end == text.data() + text.size()
               ? CString()
               : "the value is neither a number nor a text in quotes";
}

} // namespace

CString RegistryFile::ParseLine(Line& line) {
    const CString content = Trim(line.text);
    if (content.empty() || content.front() == '#' || content.front() == ';') {
        return {};
    }
    if (content.front() != '[') {
        return ParseValueLine(line);
    }
    if (content.size() < 3 || content.back() != ']') {
        return "the section name has no closing bracket";
    }
    line.isHeader = true;
    line.section = content.substr(1, content.size() - 2);
    return {};
}

CString RegistryFile::ParseValueLine(Line& line) {
    const CString content = Trim(line.text);
    std::string_view rest = content;
    CString error = TakeName(rest, line.name);
    const CString value = Trim(rest);
    if (error.empty() && !value.starts_with('=')) {
        error = "there is no \"=\" behind the name";
    }
    if (error.empty() && line.section.empty()) {
        error = "the value stands before the first section";
    }
    return error.empty() ? ParseValue(Trim(std::string_view(value).substr(1)), line.value.emplace()) : error;
}

bool RegistryFile::Parse(std::string_view text, CString& error) {
    std::vector<Line> lines;
    CString section;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        Line line;
        line.text = text.substr(0, end);
        line.section = section;
        if (line.text.ends_with('\r')) {
            line.text.pop_back();
        }
        text.remove_prefix(std::min(end + 1, text.size()));
        const CString wrong = ParseLine(line);
        if (!wrong.empty()) {
            error = Format("line %zu: %s", lines.size() + 1, wrong.c_str());
            return false;
        }
        section = line.section;
        lines.push_back(std::move(line));
    }
    m_lines = std::move(lines);
    return true;
}

std::vector<RegistryFile::Line>::const_iterator RegistryFile::FindLine(std::string_view section,
                                                                       std::string_view name) const {
    const auto found = std::find_if(m_lines.rbegin(), m_lines.rend(), [=](const Line& line) {
        return line.value && CompareNoCase(line.section, section) == 0 && CompareNoCase(line.name, name) == 0;
    });
    return found == m_lines.rend() ? m_lines.end() : std::prev(found.base());
}

// Behind the section's last value, or behind its header; the beginning when there is no such section.
std::vector<RegistryFile::Line>::const_iterator RegistryFile::EndOfSection(std::string_view section) const {
    const auto last = std::find_if(m_lines.rbegin(), m_lines.rend(), [=](const Line& line) {
        return (line.value || line.text.find('[') != CString::npos) &&
               CompareNoCase(line.section, section) == 0;
    });
    return last.base();
}

const RegistryValue* RegistryFile::Find(std::string_view section, std::string_view name) const {
    const auto found = FindLine(section, name);
    return found != m_lines.end() ? &*found->value : nullptr;
}

bool RegistryFile::Set(const CString& section, const CString& name, const RegistryValue& value) {
    if (std::any_of(section.begin(), section.end(), IsControl)) {
        return false;
    }
    Line line{NameText(name) + " = " + ValueText(value), false, section, name, value};
    const auto known = FindLine(section, name);
    if (known != m_lines.end()) {
        m_lines[static_cast<std::size_t>(known - m_lines.begin())] = std::move(line);
        return true;
    }
    auto at = EndOfSection(section);
    if (at == m_lines.begin()) {
        if (!m_lines.empty()) {
            m_lines.push_back({});
        }
        m_lines.push_back({"[" + section + "]", true, section, {}, {}});
        at = m_lines.end();
    }
    m_lines.insert(at, std::move(line));
    return true;
}

CString RegistryFile::Text() const {
    CString text;
    for (const Line& line : m_lines) {
        text += line.text + "\n";
    }
    return text;
}

} // namespace kalvio
