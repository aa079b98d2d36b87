#include "reference_host/script/ScriptTokens.h"

#include "platform/Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace kalvio::reference_host {

namespace {

bool IsLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsNameCharacter(char c) {
    return IsLetter(c) || IsDigit(c);
}

// What of a text goes into a message.
std::string Shortened(std::string_view text) {
    std::string shown(text.substr(0, kLongestName));
    if (text.size() > kLongestName) {
        shown += "...";
    }
    return shown;
}

bool IsNumberCharacter(char c, char before) {
    const bool exponentSign = (c == '+' || c == '-') && (before == 'e' || before == 'E');
    return IsNameCharacter(c) || c == '.' || exponentSign;
}

std::optional<VARIANT> ParseHex(std::string_view digits, bool negative) {
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    if (error != std::errc() || end != digits.data() + digits.size()) {
        return std::nullopt;
    }
    const double number = negative ? -static_cast<double>(value) : static_cast<double>(value);
    if (std::fabs(number) <= std::numeric_limits<std::int32_t>::max()) {
        return VARIANT::Long(static_cast<std::int32_t>(number));
    }
    return VARIANT::Double(number);
}

std::optional<VARIANT> ParseNumber(std::string_view text) {
    const bool negative = text.front() == '-';
    const std::string_view digits = text.substr(negative || text.front() == '+' ? 1 : 0);
    if (digits.starts_with("0x") || digits.starts_with("0X")) {
        return ParseHex(digits.substr(2), negative);
    }
    const char* end = digits.data() + digits.size();
    std::int32_t whole = 0;
    if (const auto result = std::from_chars(digits.data(), end, whole);
        result.ec == std::errc() && result.ptr == end) {
        return VARIANT::Long(negative ? -whole : whole);
    }
    double real = 0.0;
    if (const auto result = std::from_chars(digits.data(), end, real);
        result.ec == std::errc() && result.ptr == end && std::isfinite(real)) {
        return VARIANT::Double(negative ? -real : real);
    }
    return std::nullopt;
}

} // namespace

std::string Token::Shown() const {
    if (kind == TokenKind::End) {
        return "the end of the line";
    }
    const std::string shown = Shortened(text);
    return shown.front() == '"' ? shown : "\"" + shown + "\""; // a text brings its quotes
}

char TokenReader::Peek(std::size_t ahead) const {
    return m_position + ahead < m_line.size() ? m_line[m_position + ahead] : '\0';
}

void TokenReader::SkipSpace() {
    while (!AtEnd() && (Peek() == ' ' || Peek() == '\t' || Peek() == '\r')) {
        ++m_position;
    }
}

void TokenReader::SetWrong(const std::string& complaint) {
    m_current.kind = TokenKind::Wrong;
    m_current.text = complaint;
    m_position = m_line.size();
}

void TokenReader::SetLiteral(VARIANT value) {
    m_current.kind = TokenKind::Literal;
    m_current.value = std::move(value);
    m_current.text = m_line.substr(m_start, m_position - m_start);
}

void TokenReader::Next() {
    if (m_current.kind == TokenKind::Wrong) {
        return;
    }
    SkipSpace();
    m_start = m_position;
    m_current = {};
    m_current.column = static_cast<int>(m_start) + 1;
    const char first = Peek();
    const bool sign = first == '-' || first == '+';
    if (AtEnd() || first == '#') {
        m_position = m_line.size();
    } else if (IsLetter(first)) {
        ReadName();
    } else if (IsDigit(first) || first == '.' || (sign && (IsDigit(Peek(1)) || Peek(1) == '.'))) {
        ReadNumber();
    } else if (first == '"') {
        ReadText();
    } else if (std::string_view("(),=").find(first) != std::string_view::npos) {
        m_current.kind = TokenKind::Mark;
        m_current.text = first;
        ++m_position;
    } else {
        SetWrong(Format("\"%c\" has no meaning here", first));
    }
}

std::string TokenReader::TakeRest() {
    std::string_view rest = m_line.substr(std::min(m_position, m_line.size()));
    for (std::size_t at = 0; at < rest.size(); ++at) {
        if (rest[at] == '#' && (at == 0 || rest[at - 1] == ' ' || rest[at - 1] == '\t')) {
            rest = rest.substr(0, at);
        }
    }
    m_position = m_line.size();
    Next();
    return Trim(rest);
}

void TokenReader::ReadName() {
    while (IsNameCharacter(Peek()) || (Peek() == '-' && IsLetter(Peek(1))) ||
           (Peek() == ':' && IsDigit(Peek(1)))) {
        ++m_position;
    }
    const std::string_view text = m_line.substr(m_start, m_position - m_start);
    if (text.size() > kLongestName) {
        SetWrong(Format("the name is longer than %zu characters", kLongestName));
        return;
    }
    if (CompareNoCase(text, "true") == 0 || CompareNoCase(text, "false") == 0) {
        SetLiteral(VARIANT::Bool(CompareNoCase(text, "true") == 0));
        return;
    }
    m_current.kind = TokenKind::Name;
    m_current.text = text;
}

void TokenReader::ReadNumber() {
    do {
        ++m_position;
    } while (IsNumberCharacter(Peek(), m_line[m_position - 1]));
    const std::string text(m_line.substr(m_start, m_position - m_start));
    if (std::optional<VARIANT> value = ParseNumber(text)) {
        SetLiteral(std::move(*value));
    } else {
        SetWrong(Format("\"%s\" is no number", Shortened(text).c_str()));
    }
}

bool TokenReader::ReadEscape(std::string& content) {
    constexpr std::string_view kLetters = "nrt\"\\";
    constexpr std::string_view kMeanings = "\n\r\t\"\\";
    const char letter = Peek();
    ++m_position;
    if (const std::size_t at = kLetters.find(letter); at != std::string_view::npos) {
        content += kMeanings[at];
        return true;
    }
    std::uint8_t value = 0;
    const std::string_view digits = m_line.substr(std::min(m_position, m_line.size()), 2);
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    if (letter != 'x' || digits.size() != 2 || result.ptr != digits.data() + 2) {
        return false;
    }
    m_position += 2;
    content += static_cast<char>(value);
    return true;
}

void TokenReader::ReadText() {
    std::string content;
    ++m_position;
    while (!AtEnd() && Peek() != '"') {
        const char c = Peek();
        ++m_position;
        if (c != '\\') {
            content += c;
        } else if (!ReadEscape(content)) {
            SetWrong("a backslash in a text stands before n, r, t, \", \\ or x and two hex digits");
            return;
        }
    }
    if (AtEnd()) {
        SetWrong("the text has no closing quote");
        return;
    }
    ++m_position;
    SetLiteral(VARIANT::String(std::move(content)));
}

} // namespace kalvio::reference_host
