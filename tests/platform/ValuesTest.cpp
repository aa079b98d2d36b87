// Conversions of automation values, texts in JSON and the distance of names, line by line.

#include "platform/Automation.h"
#include "platform/Json.h"
#include "platform/Text.h"
#include "support/Golden.h"

#include <cmath>
#include <limits>

namespace kalvio::test {
namespace {

template<typename Type>
CString As(const char* name, const VARIANT& value, Type out, CString (*show)(const Type&)) {
    return value.Get(out) ? Format(" %s %s", name, show(out).c_str()) : CString();
}

template<typename Number>
CString ShowNumber(const Number& number) {
    return VARIANT::Double(static_cast<double>(number)).ToText();
}

CString Conversions(const VARIANT& value) {
    return Format("%s %s:", NameOf(value.Type()), value.ToText().c_str()) +
           As<std::uint8_t>("byte", value, 0, ShowNumber) + As<std::int16_t>("short", value, 0, ShowNumber) +
           As<std::int32_t>("long", value, 0, ShowNumber) + As<double>("double", value, 0, ShowNumber) +
           As<bool>("bool", value, false, [](const bool& on) { return CString(on ? "true" : "false"); }) +
           As<CString>("text", value, "", [](const CString& text) { return "'" + text + "'"; }) + " json " +
           value.ToJson() + "\n";
}

CString OfAllKinds() {
    CString text;
    for (const double number :
         {-2147483649.0, -2147483648.0, -32769.0,     -32768.0,
          -1.0,          -0.5,          0.0,          0.5,
          1.0,           1.5,           2.5,          254.5,
          255.0,         255.5,         256.0,        32767.0,
          32767.5,       32768.0,       2147483647.0, 2147483647.5,
          2147483648.0,  1e300,         0.1,          std::numeric_limits<double>::infinity(),
          std::nan("")}) {
        text += Conversions(VARIANT::Double(number));
    }
    for (const int number : {-32768, -1, 0, 1, 255, 256, 32767}) {
        text += Conversions(VARIANT::Short(static_cast<std::int16_t>(number)));
        text += Conversions(VARIANT::Long(number * 2));
    }
    text += Conversions(VARIANT::Byte(0)) + Conversions(VARIANT::Byte(255));
    text += Conversions(VARIANT::Bool(true)) + Conversions(VARIANT::Bool(false)) + Conversions(VARIANT());
    for (const char* word : {"", " ", "1", "-1", " 7 ", "0x10", "1e2", "1.5", "300", "99999999999", "true",
                             "TRUE", "False", "yes", "inf", "nan", "1 2", "+3", "é"}) {
        text += Conversions(VARIANT::String(word));
    }
    static VARIANT ring;
    ring = VARIANT::Reference(&ring);
    text += Conversions(ring);
    VARIANT inner = VARIANT::Short(3);
    VARIANT outer = VARIANT::Reference(&inner);
    text += Conversions(VARIANT::Reference(&outer)) + Conversions(VARIANT::Reference(nullptr));
    return text + Conversions(VARIANT::FromArray({VARIANT::Short(1), VARIANT::String("a")})) +
           Conversions(VARIANT::FromArray({}));
}

// The first bytes of sequences of two, three and four bytes, with the second bytes that may follow.
CString SequencesOfBytes() {
    CString text;
    for (int first = 0x7F; first <= 0xFF; ++first) {
        for (std::size_t more = 0; more < 3; ++more) {
            std::vector<unsigned> seconds;
            for (unsigned second = 0x70; second <= 0xFF; ++second) {
                const CString start{static_cast<char>(first), static_cast<char>(second)};
                const CString whole = start + CString("\x80\xBF").substr(0, more);
                if (JsonText(whole) == "\"" + whole + "\"") {
                    seconds.push_back(second);
                }
            }
            if (!seconds.empty()) {
                text += Format("%02X, %zu more: %zu seconds, %02X to %02X\n", static_cast<unsigned>(first),
                               more, seconds.size(), seconds.front(), seconds.back());
            }
        }
    }
    return text;
}

// The first and last of each kind of sequence, and their neighbours that are none.
CString TextsInJson() {
    CString text;
    for (const char* bytes : {"plain",
                              "a\"b\\c/d",
                              "\b\f\n\r\t\x01\x1f\x7f",
                              "\xC2\x80",
                              "\xC1\xBF",
                              "\xC2\x7F",
                              "\xC2\xC0",
                              "\xDF\xBF",
                              "\xE0\xA0\x80",
                              "\xE0\x9F\xBF",
                              "\xE0\xBF\xBF",
                              "\xE1\x80\x80",
                              "\xEC\xBF\xBF",
                              "\xED\x80\x80",
                              "\xED\x9F\xBF",
                              "\xED\xA0\x80",
                              "\xEE\x80\x80",
                              "\xEF\xBF\xBF",
                              "\xEF\xBF\xC0",
                              "\xEF\x7F\x80",
                              "\xF0\x90\x80\x80",
                              "\xF0\x8F\xBF\xBF",
                              "\xF1\x80\x80\x80",
                              "\xF3\xBF\xBF\xBF",
                              "\xF4\x80\x80\x80",
                              "\xF4\x8F\xBF\xBF",
                              "\xF4\x90\x80\x80",
                              "\xF5\x80\x80\x80",
                              "\xE1\x80",
                              "\xF1\x80\x80",
                              "\xC2",
                              "\x80",
                              "\xFF",
                              "a\xC2"}) {
        text += JsonText(bytes) + "\n";
    }
    for (const double number : {0.0, -0.0, 1.0, -1.5, 1e21, 1e-7, 0.1}) {
        text += JsonNumber(number) + "\n";
    }
    return text;
}

CString Distances() {
    CString text;
    for (const auto& [a, b] :
         {std::pair("", ""), std::pair("", "ab"), std::pair("ab", ""), std::pair("abc", "abc"),
          std::pair("abc", "ABC"), std::pair("abc", "abd"), std::pair("abc", "acb"),
          std::pair("kitten", "sitting"), std::pair("REG_Timeoot", "REG_Timeout")}) {
        for (const std::size_t limit : {std::size_t{1}, std::size_t{2}, std::size_t{9}}) {
            text += Format("%s %s within %zu: %zu\n", a, b, limit, EditDistance(a, b, limit));
        }
    }
    return text;
}

} // namespace

TEST(Values, ConversionsTextsAndDistances) {
    ExpectGolden(__FILE__, "values.txt", OfAllKinds() + TextsInJson() + SequencesOfBytes() + Distances());
}

} // namespace kalvio::test
