#include "platform/Json.h"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace kalvio {

namespace {

constexpr unsigned char kFirstBeyondAscii = 0x80;

struct ShortEscape {
    char character;
    const char* escape;
};

constexpr ShortEscape kShortEscapes[] = {{'"', "\\\""}, {'\\', "\\\\"}, {'\n', "\\n"}, {'\r', "\\r"},
                                         {'\t', "\\t"}, {'\b', "\\b"},  {'\f', "\\f"}};

// The lead bytes of UTF-8 sequences: how many bytes follow, and the range of the first of them, which keeps
// out overlong forms, surrogates and what lies beyond the last code point.
struct LeadByte {
    unsigned char first;
    unsigned char last;
    std::size_t following;
    unsigned char lowestSecond;
    unsigned char highestSecond;
};

constexpr LeadByte kLeadBytes[] = {
    {0x00, 0x7F, 0, 0, 0},       {0xC2, 0xDF, 1, 0x80, 0xBF}, {0xE0, 0xE0, 2, 0xA0, 0xBF},
    {0xE1, 0xEC, 2, 0x80, 0xBF}, {0xED, 0xED, 2, 0x80, 0x9F}, {0xEE, 0xEF, 2, 0x80, 0xBF},
    {0xF0, 0xF0, 3, 0x90, 0xBF}, {0xF1, 0xF3, 3, 0x80, 0xBF}, {0xF4, 0xF4, 3, 0x80, 0x8F},
};

unsigned char ByteAt(std::string_view text, std::size_t at) {
    return static_cast<unsigned char>(text[at]);
}

// The length of the UTF-8 sequence at the start of a text that is not empty; 0 when there is none.
std::size_t SequenceLength(std::string_view text) {
    for (const LeadByte& lead : kLeadBytes) {
        if (ByteAt(text, 0) < lead.first || ByteAt(text, 0) > lead.last) {
            continue;
        }
        bool whole = text.size() > lead.following;
        for (std::size_t at = 1; whole && at <= lead.following; ++at) {
            const unsigned char lowest = at == 1 ? lead.lowestSecond : 0x80;
            const unsigned char highest = at == 1 ? lead.highestSecond : 0xBF;
            whole = ByteAt(text, at) >= lowest && ByteAt(text, at) <= highest;
        }
        return whole ? lead.following + 1 : 0;
    }
    return 0;
}

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = SequenceLength(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

CString EscapeCharacter(char character, bool keepBeyondAscii) {
    for (const ShortEscape& each : kShortEscapes) {
        if (each.character == character) {
            return each.escape;
        }
    }
    const auto code = static_cast<unsigned char>(character);
    const bool plain = code >= 0x20 && code != 0x7F && (code < kFirstBeyondAscii || keepBeyondAscii);
    return plain ? CString(1, character) : Format("\\u%04x", static_cast<unsigned>(code));
}

} // namespace

CString JsonText(std::string_view text) {
    const bool isUtf8 = IsUtf8(text);
    CString out = "\"";
    for (const char character : text) {
        out += EscapeCharacter(character, isUtf8);
    }
    return out + "\"";
}

CString JsonNumber(double value) {
    return std::isfinite(value) ? ShortestText(value) : "null";
}

CString ShortestText(double value) {
    char digits[32]; // the longest has 24 characters
    const auto [end, error] = std::to_chars(std::begin(digits), std::end(digits), value);
    return error == std::errc() ? CString(digits, end) : CString();
}

} // namespace kalvio
