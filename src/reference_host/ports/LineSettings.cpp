#include "reference_host/ports/LineSettings.h"

#include "platform/Text.h"

#include <array>
#include <charconv>

namespace kalvio::reference_host {

namespace {

constexpr std::size_t kParts = 4;
constexpr std::string_view kParityLetters = "neoms"; // in the order of Parity

// False unless there are exactly four.
bool Split(std::string_view text, std::array<CString, kParts>& parts) {
    for (std::size_t i = 0; i < kParts; ++i) {
        const std::size_t comma = text.find(',');
        if ((comma == std::string_view::npos) != (i + 1 == kParts)) {
            return false;
        }
        parts[i] = Trim(text.substr(0, comma));
        text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 1);
    }
    return true;
}

bool ParseBaud(const CString& text, unsigned& baud) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), baud);
    return result.ec == std::errc() && result.ptr == text.data() + text.size() && baud >= 1 &&
           baud <= kFastestBaud;
}

bool ParseParity(const CString& text, Parity& parity) {
    for (std::size_t i = 0; i < kParityLetters.size(); ++i) {
        if (CompareNoCase(text, kParityLetters.substr(i, 1)) == 0) {
            parity = static_cast<Parity>(i);
            return true;
        }
    }
    return false;
}

bool ParseDataBits(const CString& text, int& bits) {
    if (text.size() != 1 || text[0] < '5' || text[0] > '8') {
        return false;
    }
    bits = text[0] - '0';
    return true;
}

bool ParseStopBits(const CString& text, int dataBits, bool& isLong) {
    constexpr int kFewestDataBits = 5;
    isLong = text == (dataBits == kFewestDataBits ? "1.5" : "2");
    return isLong || text == "1";
}

} // namespace

std::string ParseLineSettings(std::string_view text, LineSettings& settings) {
    std::array<CString, kParts> parts;
    if (!Split(text, parts)) {
        return "it is written BAUD,PARITY,DATA,STOP, as 9600,n,8,1";
    }
    LineSettings parsed;
    if (!ParseBaud(parts[0], parsed.baud)) {
        return Format("the speed is 1 to %u baud", kFastestBaud);
    }
    if (!ParseParity(parts[1], parsed.parity)) {
        return "the parity is n, e, o, m or s";
    }
    if (!ParseDataBits(parts[2], parsed.dataBits)) {
        return "there are 5 to 8 data bits";
    }
    if (!ParseStopBits(parts[3], parsed.dataBits, parsed.longStop)) {
        return "there are 1 or 2 stop bits, 1 or 1.5 with five data bits";
    }
    settings = parsed;
    return {};
}

} // namespace kalvio::reference_host
