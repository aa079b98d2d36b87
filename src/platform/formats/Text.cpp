#include "platform/Text.h"

#include "platform/Sync.h"

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <unordered_map>
#include <variant>

namespace kalvio {

namespace {

constexpr std::string_view kWhiteSpace = " \t\r\n\v\f";

using TextArgument = std::variant<int, std::string_view>;

// What a conversion gives for an argument; false when the two do not fit.
bool AppendConversion(CString& out, char conversion, const TextArgument& argument) {
    if (const auto* text = std::get_if<std::string_view>(&argument)) {
        if (conversion != 's') {
            return false;
        }
        out += *text;
        return true;
    }
    const int number = std::get<int>(argument);
    switch (conversion) {
    case 'd':
    case 'i':
        out += std::to_string(number);
        return true;
    case 'u':
        out += std::to_string(static_cast<unsigned>(number));
        return true;
    case 'x':
        out += Format("%x", static_cast<unsigned>(number));
        return true;
    case 'X':
        out += Format("%X", static_cast<unsigned>(number));
        return true;
    default:
        return false;
    }
}

CString FormatArguments(std::string_view format, std::span<const TextArgument> arguments) {
    CString out;
    std::size_t used = 0;
    for (std::size_t at = 0; at < format.size(); ++at) {
        const char conversion = format[at] == '%' && at + 1 < format.size() ? format[at + 1] : '\0';
        if (conversion == '%') {
            out += '%';
            ++at;
        } else if (conversion != '\0' && used < arguments.size() &&
                   AppendConversion(out, conversion, arguments[used])) {
            ++used;
            ++at;
        } else {
            out += format[at];
        }
    }
    return out;
}

char LowerCase(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

struct StringTable {
    Mutex lock;
    std::unordered_map<unsigned, const char*> texts KALVIO_GUARDED_BY(lock);
};

StringTable& Strings() {
    // Made by whichever folder registers first during static initialisation, and never destroyed, since an
    // abandoned thread may still look up a text while the process ends.
    static StringTable& table = *new StringTable;
    return table;
}

} // namespace

CString Format(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    CString out(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    std::vsnprintf(out.data(), out.size() + 1, format, again);
    va_end(again);
    return out;
}

CString FormatText(std::string_view format, const CString& text) {
    const TextArgument arguments[] = {std::string_view(text)};
    return FormatArguments(format, arguments);
}

CString FormatText(std::string_view format, const CString& first, const CString& second) {
    const TextArgument arguments[] = {std::string_view(first), std::string_view(second)};
    return FormatArguments(format, arguments);
}

CString FormatText(std::string_view format, int number) {
    const TextArgument arguments[] = {number};
    return FormatArguments(format, arguments);
}

CString FormatText(std::string_view format, int number, const CString& text) {
    const TextArgument arguments[] = {number, std::string_view(text)};
    return FormatArguments(format, arguments);
}

int CompareNoCase(std::string_view a, std::string_view b) {
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end(),
                                          [](char x, char y) { return LowerCase(x) == LowerCase(y); });
    if (inA == a.end() || inB == b.end()) {
        return static_cast<int>(inA != a.end()) - static_cast<int>(inB != b.end());
    }
    return static_cast<int>(static_cast<unsigned char>(LowerCase(*inA))) -
           static_cast<int>(static_cast<unsigned char>(LowerCase(*inB)));
}

CString Trim(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kWhiteSpace);
    if (first == std::string_view::npos) {
        return {};
    }
    return CString(text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1));
}

int ParseLeadingInt(std::string_view text) {
    constexpr std::int64_t kHighest = std::numeric_limits<int>::max();
    std::size_t at = std::min(text.find_first_not_of(kWhiteSpace), text.size());
    const bool negative = at < text.size() && text[at] == '-';
    if (negative || (at < text.size() && text[at] == '+')) {
        ++at;
    }
    std::int64_t magnitude = 0;
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
        magnitude = std::min(magnitude * 10 + (text[at] - '0'), kHighest + 1);
    }
    return static_cast<int>(negative ? -magnitude : std::min(magnitude, kHighest));
}

void RegisterTexts(std::span<const TextResource> texts) {
    StringTable& table = Strings();
    const LockGuard guard(table.lock);
    for (const TextResource& resource : texts) {
        table.texts[resource.id] = resource.text;
    }
}

CString LoadText(unsigned id) {
    StringTable& table = Strings();
    const LockGuard guard(table.lock);
    const auto found = table.texts.find(id);
    return found != table.texts.end() ? CString(found->second) : CString();
}

} // namespace kalvio
