#pragma once

// The words, values and marks that a script line is made of.

#include "platform/Automation.h"

#include <string>
#include <string_view>

namespace kalvio::reference_host {

enum class TokenKind {
    End, // of the line, or a comment
    Name,
    Literal,
    Mark,  // one of ( ) , =
    Wrong, // `text` says why
};

// Longer names are refused where they stand.
inline constexpr std::size_t kLongestName = 128;

struct Token {
    TokenKind kind = TokenKind::End;
    std::string text; // as written; of a wrong one, the complaint
    VARIANT value;    // of a literal
    int column = 0;   // from 1

    [[nodiscard]] bool Is(char mark) const { return kind == TokenKind::Mark && text.front() == mark; }
    // For messages: the text in quotes, cut short when it is long, or "the end of the line".
    [[nodiscard]] std::string Shown() const;
};

// Reads one line, token by token. A wrong token ends the reading.
class TokenReader {
public:
    explicit TokenReader(std::string_view line) : m_line(line) { Next(); }

    [[nodiscard]] const Token& Current() const { return m_current; }
    void Next();
    // The rest of the line after the current token, without a comment; reading is at the end then.
    std::string TakeRest();

private:
    [[nodiscard]] bool AtEnd() const { return m_position >= m_line.size(); }
    [[nodiscard]] char Peek(std::size_t ahead = 0) const;
    void SkipSpace();
    void ReadName();
    void ReadNumber();
    void ReadText();
    // The character that an escape stands for, after its backslash; false when there is no such escape.
    bool ReadEscape(std::string& content);
    void SetWrong(const std::string& complaint);
    void SetLiteral(VARIANT value);

    std::string_view m_line;
    std::size_t m_position = 0;
    std::size_t m_start = 0; // of the current token
    Token m_current;
};

} // namespace kalvio::reference_host
