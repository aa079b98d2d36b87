#include "host/Units.h"

#include "host/HostTexts.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

// How a unit's value grows with the storage value.
enum class Law { Linear, Level, Power };

// What the unit's size depends on besides its scale.
enum class Of { Fixed, Reference, FullScale, RootOhms };

constexpr double kRootMilli = 0.031622776601683794; // square root of 0.001
constexpr double kSmallestRatio = 1e-10;            // kLowestLevel as a ratio

struct UnitDetails {
    int unit;
    Law law;
    double scale; // storage units at 1, or at 0 dB
    Of of;
    bool amplitude;
    int decimals;
};

constexpr UnitDetails kUnits[] = {
    {kUnitVolt, Law::Linear, kStepsPerVolt, Of::Fixed, true, 4},
    {kUnitSecond, Law::Linear, 1e6, Of::Fixed, false, 3},
    {kUnitHertz, Law::Linear, 1e3, Of::Fixed, false, 2},
    {kUnitMillivolt, Law::Linear, kStepsPerVolt * 1e-3, Of::Fixed, true, 2},
    {kUnitMicrovolt, Law::Linear, kStepsPerVolt * 1e-6, Of::Fixed, true, 0},
    {kUnitKilohertz, Law::Linear, 1e6, Of::Fixed, false, 5},
    {kUnitDbu, Law::Level, kStepsPerVolt* kDbuVolts, Of::Fixed, true, 2},
    {kUnitDbv, Law::Level, kStepsPerVolt, Of::Fixed, true, 2},
    {kUnitDbm, Law::Level, kStepsPerVolt* kRootMilli, Of::RootOhms, true, 2},
    {kUnitWatt, Law::Power, kStepsPerVolt, Of::RootOhms, true, 4},
    {kUnitCarrierVolt, Law::Linear, kStepsPerPeakVolt / 2.0, Of::Fixed, false, 3},
    {kUnitFullScale, Law::Linear, 1.0, Of::FullScale, true, 5},
    {kUnitDbfs, Law::Level, 1.0, Of::FullScale, true, 2},
    {kUnitDb, Law::Level, 1.0, Of::Reference, true, 2},
    {kUnitPercent, Law::Linear, 0.01, Of::Reference, true, 3},
    {kUnitUi, Law::Linear, 1e6, Of::Fixed, false, 4},
    {kUnitDegree, Law::Linear, 1.0, Of::Fixed, false, 2},
    {kUnitPpm, Law::Linear, 1.0, Of::Fixed, false, 1},
    {kUnitRatio, Law::Linear, 1.0, Of::Reference, false, 5},
};

// Spellings that keyboards make easier than the unit's own text.
struct Alias {
    const char* text;
    int unit;
};
constexpr Alias kAliases[] = {{"uV", kUnitMicrovolt}, {"deg", kUnitDegree}, {"ratio", kUnitRatio}};

const UnitDetails* Find(int unit) {
    const auto* found = std::find_if(std::begin(kUnits), std::end(kUnits),
                                     [unit](const UnitDetails& details) { return details.unit == unit; });
    return found == std::end(kUnits) ? nullptr : found;
}

double Positive(double value, double otherwise) {
    return value > 0.0 && std::isfinite(value) ? value : otherwise;
}

double Reference(const SReferences& references) {
    return references.unit == kUnitRatio ? 1.0 : Positive(references.reference, SReferences{}.reference);
}

// Storage units at a value of 1, or at 0 dB.
double Size(const UnitDetails& details, const SReferences& references) {
    switch (details.of) {
    case Of::Reference:
        return details.scale * Reference(references);
    case Of::FullScale:
        return details.scale * Positive(references.fullScale, SReferences{}.fullScale);
    case Of::RootOhms:
        return details.scale * std::sqrt(Positive(references.ohms, SReferences{}.ohms));
    case Of::Fixed:
        break;
    }
    return details.scale;
}

double Finite(double value) {
    constexpr double kLargest = std::numeric_limits<double>::max();
    return std::isnan(value) ? 0.0 : std::clamp(value, -kLargest, kLargest);
}

double RatioOfLevel(double decibels) {
    return decibels <= kLowestLevel ? 0.0 : std::pow(10.0, decibels / 20.0);
}

double LevelOfRatio(double ratio) {
    const double magnitude = std::fabs(ratio);
    return magnitude <= kSmallestRatio ? kLowestLevel : 20.0 * std::log10(magnitude);
}

double RatioOfPower(double power) {
    return std::copysign(std::sqrt(std::fabs(power)), power);
}

} // namespace

double CPhysicalValue::UnitToStorage(double value, int unit, const SReferences& references) {
    const UnitDetails* details = Find(unit);
    if (details == nullptr || std::isnan(value)) {
        return Finite(value);
    }
    const double size = Size(*details, references);
    switch (details->law) {
    case Law::Level:
        return Finite(RatioOfLevel(value) * size);
    case Law::Power:
        return Finite(RatioOfPower(value) * size);
    case Law::Linear:
        break;
    }
    return Finite(value * size);
}

double CPhysicalValue::StorageToUnit(double value, int unit, const SReferences& references) {
    const UnitDetails* details = Find(unit);
    if (details == nullptr || std::isnan(value)) {
        return Finite(value);
    }
    const double ratio = value / Size(*details, references);
    switch (details->law) {
    case Law::Level:
        return Finite(LevelOfRatio(ratio));
    case Law::Power:
        return Finite(ratio * std::fabs(ratio));
    case Law::Linear:
        break;
    }
    return Finite(ratio);
}

double CPhysicalValue::Convert(double value, int from, int to, const SReferences& references) {
    return from == to ? value : StorageToUnit(UnitToStorage(value, from, references), to, references);
}

bool IsdBUnit(int unit) {
    const UnitDetails* details = Find(unit);
    return details != nullptr && details->law == Law::Level;
}

bool IsAmplitudeUnit(int unit) {
    const UnitDetails* details = Find(unit);
    return details != nullptr && details->amplitude;
}

bool IsRelativeUnit(int unit) {
    return unit == kUnitDb || unit == kUnitPercent;
}

int GetNumDPsForUnit(int unit) {
    const UnitDetails* details = Find(unit);
    return details == nullptr ? 0 : details->decimals;
}

unsigned GetStringIDForUnit(int unit, int shortForm) {
    if (Find(unit) == nullptr) {
        return 0;
    }
    return (shortForm != 0 ? kalvio::kTextUnitShort : kalvio::kTextUnitLong) + static_cast<unsigned>(unit);
}

CString GetStringForUnit(int unit) {
    const unsigned id = GetStringIDForUnit(unit, 1);
    return id == 0 ? CString() : kalvio::LoadText(id);
}

int GetUnitForString(const CString& text) {
    const CString typed = kalvio::Trim(text);
    if (typed.empty()) {
        return kUnitNone;
    }
    for (const UnitDetails& details : kUnits) {
        if (kalvio::CompareNoCase(typed, GetStringForUnit(details.unit)) == 0) {
            return details.unit;
        }
    }
    for (const Alias& alias : kAliases) {
        if (kalvio::CompareNoCase(typed, alias.text) == 0) {
            return alias.unit;
        }
    }
    return kUnitNone;
}

double SigFig(double value, int figures) {
    if (!std::isfinite(value) || value == 0.0) {
        return value;
    }
    constexpr int kMostFigures = std::numeric_limits<double>::digits10;
    char text[40];
    const auto written = std::to_chars(std::begin(text), std::end(text), value, std::chars_format::scientific,
                                       std::clamp(figures, 1, kMostFigures) - 1);
    double rounded = value;
    std::from_chars(text, written.ptr, rounded);
    return rounded;
}
