#pragma once

// What is fixed about a field of a settings document, and the range checks that face the user.

#include "platform/Export.h"
#include "platform/Text.h"

struct FieldDetails {
    unsigned stringId = 0; // description
    double minimum = 0.0;
    double maximum = 0.0;
    double defaultValue = 0.0;
    int numberType = 0; // 0 enumeration or flag, 1 and 2 integer, 4, 5 and 7 real
    int decimals = 0;

    // The printf format of the number type: "%d", which takes an int, or "%.Nf" with the decimals filled in,
    // which takes a double. Any thread.
    [[nodiscard]] KALVIO_API CString GetFormat() const;
};

// Whether a number type is one of the integers.
[[nodiscard]] KALVIO_API bool IsIntegerType(int numberType);

// Checks a value against limits. Outside, an exclamation box names the field and the range, each limit
// followed by the unit text whose string id is `code` (no unit when there is no such text), and the answer
// is false. NaN is outside. User-interface thread; hold no lock.
KALVIO_API bool CheckMinMax(const CString& description, int numberType, double minimum, double maximum,
                            int code, double value);

// Shows the range of a field in an information box. User-interface thread; hold no lock.
KALVIO_API void ShowRange(int numberType, double minimum, double maximum, const CString& unitText);

namespace kalvio {

// "%s is out of range.\nThe valid range is %s." with the field and its limits. Any thread.
[[nodiscard]] KALVIO_API CString OutOfRangeText(const CString& description, int numberType, double minimum,
                                                double maximum, const CString& unitText);
// Tells the user so. Hold no lock.
KALVIO_API void TellOutOfRange(const CString& description, int numberType, double minimum, double maximum,
                               const CString& unitText);

// Whether a value lies within limits, give or take the rounding of a conversion between units (10^-9 of the
// larger limit). NaN does not.
[[nodiscard]] KALVIO_API bool IsWithinLimits(double value, double minimum, double maximum);

} // namespace kalvio
