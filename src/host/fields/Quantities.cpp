#include "host/Quantities.h"

#include <algorithm>

namespace kalvio {

bool Offers(const Quantity& quantity, int unit) {
    return std::find(quantity.units.begin(), quantity.units.end(), unit) != quantity.units.end();
}

std::span<const int> UnitsOf(const Quantity& amplitude, Relativity relativity) {
    switch (relativity) {
    case Relativity::Absolute:
        return amplitude.units.first(amplitude.units.size() - kRelativeUnitCount);
    case Relativity::Relative:
        return amplitude.units.last(kRelativeUnitCount);
    case Relativity::Either:
        break;
    }
    return amplitude.units;
}

FieldDetails MakeDetails(const Quantity& quantity, unsigned textId, int unit, const SReferences& references) {
    constexpr int kReal = 5;
    FieldDetails details;
    details.stringId = textId;
    details.minimum = CPhysicalValue::StorageToUnit(quantity.minimum, unit, references);
    details.maximum = CPhysicalValue::StorageToUnit(quantity.maximum, unit, references);
    details.defaultValue = CPhysicalValue::StorageToUnit(quantity.defaultValue, unit, references);
    details.numberType = kReal;
    details.decimals = GetNumDPsForUnit(unit);
    return details;
}

const FieldDetails* DetailsCache::Put(int ctrlID, int unit, const FieldDetails& details) {
    FieldDetails& kept = m_details[{ctrlID, unit}];
    kept = details;
    return &kept;
}

} // namespace kalvio
