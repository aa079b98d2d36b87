#include "reference_host/script/Script.h"

#include "platform/Text.h"
#include "reference_host/script/ScriptTokens.h"

#include <cmath>
#include <limits>
#include <optional>

namespace kalvio::reference_host {

namespace {

constexpr double kLongestWaitMs = 86400000.0;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::optional<QuantityKind> KindOfQuantity(std::string_view word) {
    if (word == kWordRead) {
        return QuantityKind::Result;
    }
    return word == kWordSource ? std::optional(QuantityKind::Source) : std::nullopt;
}

class LineParser {
public:
    LineParser(std::string_view text, int line) : m_tokens(text), m_line(line) {}

    void Parse(ParsedScript& script) {
        if (Current().kind == TokenKind::End) {
            return;
        }
        if (ParseStatement()) {
            script.statements.push_back(std::move(m_statement));
        } else {
            script.errors.push_back(std::move(m_error));
        }
    }

private:
    [[nodiscard]] const Token& Current() const { return m_tokens.Current(); }

    bool Fail(const std::string& message) { return FailAt(Current().column, message); }
    bool FailAt(int column, const std::string& message) {
        m_error = {m_line, column, message};
        return false;
    }
    // Complains about the current token, which may be one that could not be read at all.
    bool Expected(const char* what) {
        if (Current().kind == TokenKind::Wrong) {
            return Fail(Current().text);
        }
        return Fail(Format("expected %s, found %s", what, Current().Shown().c_str()));
    }

    bool Skip(char mark) {
        if (!Current().Is(mark)) {
            return false;
        }
        m_tokens.Next();
        return true;
    }

    bool ParseStatement() {
        if (Current().kind != TokenKind::Name) {
            return Expected("a name");
        }
        m_statement.line = m_line;
        m_statement.column = Current().column;
        m_statement.name = Current().text;
        if (KindOfQuantity(m_statement.name)) {
            m_statement.kind = StatementKind::Measure;
            return ParseValue() && CheckMeasure() && ParseEnd();
        }
        if (m_statement.name == kWordSave) {
            return ParseFile(StatementKind::Save);
        }
        if (m_statement.name == kWordLoad) {
            return ParseFile(StatementKind::Load);
        }
        m_tokens.Next();
        if (m_statement.name == kWordExpect) {
            return ParseExpect() && CheckExpect();
        }
        if (m_statement.name == kWordPrint) {
            return ParseCall(StatementKind::Print) && CheckPrint();
        }
        if (m_statement.name == kWordWait) {
            return ParseCall(StatementKind::Wait) && CheckWait();
        }
        if (m_statement.name == kWordWaitRegulation) {
            return ParseCall(StatementKind::WaitRegulation) && CheckNoArguments();
        }
        if (m_statement.name == kWordWindow) {
            return ParseWindow() && CheckWindow();
        }
        if (m_statement.name == kWordSweep) {
            return ParseCall(StatementKind::Sweep) && CheckSweep();
        }
        return Skip('=') ? ParseSet() : ParseCall(StatementKind::Call);
    }

    bool ParseSet() {
        m_statement.kind = StatementKind::Set;
        return ParseValue() && ParseEnd();
    }

    bool ParseExpect() {
        m_statement.kind = StatementKind::Expect;
        if (!ParseValue()) {
            return false;
        }
        if (Current().kind != TokenKind::Name || Current().text != kWordWithin) {
            return Expected("\"within\"");
        }
        m_tokens.Next();
        if (!ParseValue()) {
            return false;
        }
        Skip(',');
        return ParseValue() && ParseEnd();
    }

    // The name of a file, as it stands or in quotes.
    bool ParseFile(StatementKind kind) {
        m_statement.kind = kind;
        const int column = Current().column + static_cast<int>(m_statement.name.size()) + 1;
        std::string file = m_tokens.TakeRest();
        if (file.size() > 1 && file.front() == '"' && file.back() == '"') {
            file = file.substr(1, file.size() - 2);
        }
        if (file.empty() || file.find('"') != std::string::npos) {
            return FailAt(column, m_statement.name + " needs the name of a file");
        }
        m_statement.arguments.push_back({VARIANT::String(file), column});
        return true;
    }

    // Words and literals up to the end of the line, all taken as texts.
    bool ParseWindow() {
        m_statement.kind = StatementKind::Window;
        for (; Current().kind != TokenKind::End; m_tokens.Next()) {
            if (Current().kind == TokenKind::Name) {
                m_statement.arguments.push_back({VARIANT::String(Current().text), Current().column});
            } else if (Current().kind == TokenKind::Literal) {
                m_statement.arguments.push_back(
                    {VARIANT::String(Current().value.ToText()), Current().column});
            } else {
                return Expected("a word or a value");
            }
        }
        return true;
    }

    bool ParseCall(StatementKind kind) {
        m_statement.kind = kind;
        const bool bracketed = Skip('(');
        if (bracketed ? Skip(')') : Current().kind == TokenKind::End) {
            return ParseEnd();
        }
        do {
            if (!ParseValue()) {
                return false;
            }
        } while (Skip(','));
        if (bracketed && !Skip(')')) {
            return Expected("\",\" or \")\"");
        }
        return ParseEnd();
    }

    bool ParseValue() {
        const Token& token = Current();
        if (token.kind == TokenKind::Literal) {
            m_statement.arguments.push_back({token.value, token.column});
        } else if (token.kind == TokenKind::Name) {
            return ParseName();
        } else {
            return Expected("a value");
        }
        m_tokens.Next();
        return true;
    }

    // A name alone, or a quantity: its word and its name.
    bool ParseName() {
        const int column = Current().column;
        const std::string word = Current().text;
        m_tokens.Next();
        const std::optional<QuantityKind> kind = KindOfQuantity(word);
        if (!kind || Current().kind != TokenKind::Name || Current().text == kWordWithin) {
            m_statement.arguments.push_back({word, column});
            return true;
        }
        m_statement.arguments.push_back({ScriptQuantity{*kind, Current().text}, column});
        m_tokens.Next();
        return true;
    }

    bool ParseEnd() { return Current().kind == TokenKind::End || Expected("the end of the line"); }

    bool CheckWindow() {
        struct Verb {
            const char* name;
            std::size_t fewest; // words after it
            std::size_t most;
        };
        static constexpr Verb kVerbs[] = {{"open", 1, 1},  {"show", 1, 1}, {"print", 1, 1},
                                          {"close", 1, 1}, {"act", 3, 4},  {"dialog", 2, 3}};
        const std::size_t words = m_statement.arguments.size();
        for (const Verb& verb : kVerbs) {
            if (words > 0 && m_statement.arguments.front().Literal()->ToText() == verb.name) {
                return (words > verb.fewest && words <= verb.most + 1) ||
                       FailAt(m_statement.column, verb.fewest == verb.most
                                                      ? Format("window %s takes one word", verb.name)
                                                      : Format("window %s takes %zu or %zu words", verb.name,
                                                               verb.fewest, verb.most));
            }
        }
        return FailAt(m_statement.column, "window takes open, show, print, close, act or dialog");
    }

    bool CheckPrint() {
        return !m_statement.arguments.empty() || FailAt(m_statement.column, "print needs something to print");
    }

    bool CheckWait() {
        double milliseconds = -1.0;
        const bool one = m_statement.arguments.size() == 1;
        const VARIANT* literal = one ? m_statement.arguments.front().Literal() : nullptr;
        if (literal != nullptr && literal->Type() != AutomationType::String) {
            literal->Get(milliseconds);
        }
        return (milliseconds >= 0.0 && milliseconds <= kLongestWaitMs) ||
               FailAt(m_statement.column, "wait needs one number of milliseconds, 0 to 86400000");
    }

    bool CheckMeasure() {
        return m_statement.arguments.front().Quantity() != nullptr ||
               Expected(m_statement.name == kWordRead ? "the name of a result" : "the name of a source");
    }

    bool CheckExpect() {
        double bounds[2] = {0.0, 0.0};
        for (const std::size_t i : {0U, 1U}) {
            const VARIANT* literal = m_statement.arguments[i + 1].Literal();
            if (literal == nullptr) {
                return true; // known when it runs
            }
            if (literal->Type() == AutomationType::String) {
                return FailAt(m_statement.arguments[i + 1].column, "expect compares with numbers");
            }
            literal->Get(bounds[i]);
        }
        return bounds[0] <= bounds[1] ||
               FailAt(m_statement.arguments[1].column, "expect needs the lower bound first");
    }

    bool CheckSweep() {
        const std::vector<ScriptValue>& given = m_statement.arguments;
        const VARIANT* array = given.size() == 2 ? given[0].Literal() : nullptr;
        const ScriptQuantity* result = given.size() == 2 ? given[1].Quantity() : nullptr;
        return (array != nullptr && array->Type() == AutomationType::String && result != nullptr &&
                result->kind == QuantityKind::Result) ||
               FailAt(m_statement.column, "sweep needs the name of an array and what to read, as in "
                                          "sweep \"outputs\", read rms");
    }

    bool CheckNoArguments() {
        return m_statement.arguments.empty() ||
               FailAt(m_statement.arguments.front().column, m_statement.name + " takes nothing");
    }

    TokenReader m_tokens;
    int m_line;
    ScriptStatement m_statement;
    ScriptError m_error;
};

} // namespace

std::string ScriptError::ToText(std::string_view file) const {
    const std::string place = std::string(file) + Format(":%d", line);
    return column == 0 ? place + ": " + message : place + Format(":%d: ", column) + message;
}

void ParseScriptLine(std::string_view text, int line, ParsedScript& script) {
    if (line == 1 && text.starts_with(kByteOrderMark)) {
        text.remove_prefix(kByteOrderMark.size());
    }
    LineParser(text, line).Parse(script);
}

ParsedScript ParseScript(std::string_view text) {
    ParsedScript script;
    for (int line = 1; !text.empty(); ++line) {
        const std::size_t end = text.find('\n');
        ParseScriptLine(text.substr(0, end), line, script);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return script;
}

} // namespace kalvio::reference_host
