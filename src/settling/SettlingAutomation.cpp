// The SETT_ names: five properties for each group, then the constants of the convergence types.

#include "platform/AutomationTable.h"
#include "settling/SettlingDetails.h"
#include "settling/SettlingFields.h"

#include <deque>

namespace {

using kalvio::DispatchEntry;
using kalvio::DispatchTable;
using kalvio::automation::ReadOnly;

template<typename Value>
DispatchEntry FieldEntry(const char* name, SettlingGroup group, SettlingField field) {
    DispatchEntry entry;
    entry.name = name;
    entry.kind = kalvio::DispatchKind::Property;
    entry.result = kalvio::automation::TypeOf<Value>::value;
    entry.get = [group, field](void* object) {
        return kalvio::automation::TypeOf<Value>::Make(
            static_cast<CSettlingDetails*>(object)->GetField<Value>(group, field));
    };
    entry.set = [group, field](void* object, const VARIANT& value) {
        const auto taken = kalvio::automation::Take<Value>(value);
        static_cast<CSettlingDetails*>(object)->SetField(group, field, taken);
    };
    return entry;
}

using EntryMaker = DispatchEntry (*)(const char*, SettlingGroup, SettlingField);
constexpr std::array<EntryMaker, kSettlingFieldsPerGroup> kMakers{
    FieldEntry<std::int16_t>, FieldEntry<double>, FieldEntry<std::int32_t>, FieldEntry<std::int16_t>,
    FieldEntry<bool>};

DispatchTable MakeTable() {
    static std::deque<CString> names; // what the entries point at; a deque moves none of its elements
    DispatchTable table;
    for (int group = 0; group < kSettlingGroups; ++group) {
        for (int field = 0; field < kSettlingFieldsPerGroup; ++field) {
            names.push_back(CString(kalvio::InfoOf(group).automationStem) +
                            kalvio::AutomationSuffixOf(field));
            table.push_back(kMakers[static_cast<std::size_t>(field)](
                names.back().c_str(), static_cast<SettlingGroup>(group), static_cast<SettlingField>(field)));
        }
    }
    table.push_back(ReadOnly("SW_CONVERGENCE_NONE", &CSettlingDetails::GetTOLERANCETYPE_NONE));
    table.push_back(ReadOnly("SW_CONVERGENCE_NORMAL", &CSettlingDetails::GetTOLERANCETYPE_NORMAL));
    table.push_back(ReadOnly("SW_CONVERGENCE_EXPONENTIAL", &CSettlingDetails::GetTOLERANCETYPE_EXPONENTIAL));
    return table;
}

} // namespace

const kalvio::DispatchTable& CSettlingDetails::GetDispatchMap() const {
    static const DispatchTable table = MakeTable();
    return table;
}
