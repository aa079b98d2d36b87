#pragma once

// One row a field: all that is known of a field of a settings document stands in its row, and messengers,
// limits, defaults, archives, trees, automation entries and descriptions follow from the rows.

#include "host/Field.h"
#include "host/FieldDetails.h"
#include "host/Messengers.h"
#include "host/Trees.h"
#include "platform/Archive.h"
#include "platform/Automation.h"
#include "platform/Export.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

class CSettingsData;

namespace kalvio {

struct FieldRow;

using IntMember = Field<std::int32_t>& (*)(CSettingsData& document, const FieldRow& row);
using RealMember = Field<double>& (*)(CSettingsData& document, const FieldRow& row);

// How scripts reach a field: not at all, with a value in the unit that the field shows through the messenger
// handler, or straight to the member after a check against the row's limits.
enum class ScriptDoor { None, Messenger, Checked };

enum class FieldKind { Number, Choice, Flag };

// One value of a choice: its text, and the constant that scripts know it by (null: none).
struct FieldChoice {
    std::int32_t value;
    unsigned textId;
    const char* constant = nullptr;
};

inline constexpr int kNoPlace = -1;

struct FieldRow {
    int id = 0;     // the document's index of the field
    int ctrlID = 0; // its control, which is also the hint of its change
    // The description's string id; limits and default where they are fixed, in the unit that the field shows;
    // number type and decimals.
    FieldDetails details;
    FieldKind kind = FieldKind::Number;
    IntMember integer = nullptr; // where the value is kept: one of the two, or none
    RealMember real = nullptr;

    // What is not fixed, asked when it is needed; null where the row's own details hold.
    const FieldDetails* (*hostDetails)(CSettingsData& document) = nullptr; // null answer: the row's own
    double (*initial)(CSettingsData& document) = nullptr;                  // as the field keeps it
    int (*unit)(const CSettingsData& document) = nullptr;                  // that the field shows
    std::span<const FieldChoice> choices = {};
    int (*valid)(CSettingsData& document, int value) = nullptr;       // 1 for a choice that holds now
    std::span<const int> (*units)(CSettingsData& document) = nullptr; // of a field that chooses a unit

    // Archive and trees.
    int archivePlace = kNoPlace;   // the order in which fields are stored
    int group = 0;                 // the save group
    bool hostLimitsOnLoad = false; // the row's own limits do not bind what an archive holds
    int treeItem = kNoPlace;       // its item in the save table and the automation tree

    // Automation.
    const char* script = nullptr;
    int scriptPlace = kNoPlace; // the order of the names; its constants follow a field's name
    ScriptDoor door = ScriptDoor::None;
    AutomationType scriptType = AutomationType::Long;
    const char* help = "";

    // The reaction: takes or fills the messenger and does what a change asks for. Null: stored as its kind
    // says, and views are told.
    void (*takeInt)(CSettingsData& document, CIntValueMessenger* messenger) = nullptr;
    void (*takeReal)(CSettingsData& document, CPhyValueMessenger* messenger) = nullptr;
};

template<typename Pointer>
struct MemberOfClass;
template<typename Class, typename Value>
struct MemberOfClass<Value Class::*> {
    using Document = Class;
};

// `KeptIn<&CRegulationSettings::m_timeout>` for a row's member.
template<auto Pointer>
auto& KeptIn(CSettingsData& document, const FieldRow&) {
    return static_cast<typename MemberOfClass<decltype(Pointer)>::Document&>(document).*Pointer;
}

// `Reaction<&CRegulationSettings::OnTimeout>` for a row's reaction.
template<auto Handler, typename Document, typename Messenger>
void CallReaction(CSettingsData& document, Messenger* messenger) {
    (static_cast<Document&>(document).*Handler)(messenger);
}

// The row of an index or of a control; null when there is none.
[[nodiscard]] KALVIO_API const FieldRow* FindRow(std::span<const FieldRow> rows, int id);
[[nodiscard]] KALVIO_API const FieldRow* FindControl(std::span<const FieldRow> rows, int ctrlID);

// Whether a value that an archive holds goes into its field, by the save flag and the host's load switches.
[[nodiscard]] KALVIO_API bool AppliesOnLoad(std::uint8_t saveFlag);

// A field's value as it stands in an archive: 32 bits, or 64 bits of real; a BOOL and a choice are 32 bits.
KALVIO_API void StoreField(CArchive& archive, CSettingsData& document, const FieldRow& row);
struct LoadedField {
    std::uint8_t saveFlag = 0;
    double value = 0.0;
};
// Reads the save flag and the value.
[[nodiscard]] KALVIO_API LoadedField ReadField(CArchive& archive, const FieldRow& row);
// Throws CArchiveException for a value that would be applied and that the row's own limits do not admit. Rows
// with equal limits, or whose limits are the host's, admit every finite value.
KALVIO_API void CheckLoadedField(const LoadedField& loaded, const FieldRow& row);
// Puts the value into its field when it applies.
KALVIO_API void ApplyLoadedField(CSettingsData& document, const LoadedField& loaded, const FieldRow& row);

// The save flags of a document's groups; they are on until an archive or the save table says otherwise.
template<std::size_t Groups>
struct GroupFlags {
    std::array<std::uint8_t, Groups> flags;
    GroupFlags() { flags.fill(1); }
};

// Stores or loads every row with a place in the archive, in that order: one byte, the flag of the row's save
// group, then the value. Loading reads and checks everything before anything is applied, and throws
// CArchiveException when it is not to be; the flags read are the groups' afterwards.
KALVIO_API void SerializeRows(CArchive& archive, CSettingsData& document, std::span<std::uint8_t> groupFlags);

// The value as the field keeps it; 0 for a row without a member. SetKept neither checks nor tells.
[[nodiscard]] KALVIO_API double GetKept(const CSettingsData& document, const FieldRow& row);
KALVIO_API void SetKept(CSettingsData& document, const FieldRow& row, double value);

// The rows that have a place in the archive, or in the automation names, in that order.
[[nodiscard]] KALVIO_API std::vector<const FieldRow*> RowsInArchiveOrder(std::span<const FieldRow> rows);
[[nodiscard]] KALVIO_API std::vector<const FieldRow*> RowsInScriptOrder(std::span<const FieldRow> rows);

// Calls `add(text, item id)` for the fields of a save group that have an item, in archive order.
template<typename Add>
void ForEachTreeField(std::span<const FieldRow> rows, int group, Add add) {
    for (const FieldRow* row : RowsInArchiveOrder(rows)) {
        if (row->group == group && row->treeItem != kNoPlace) {
            add(LoadText(row->details.stringId), row->treeItem);
        }
    }
}

// Adds the automation properties of the rows to a table, each followed by the constants of its choices. The
// rows must outlive the table.
KALVIO_API void AppendFieldNames(DispatchTable& table, std::span<const FieldRow> rows);

// What a field holds just now.
[[nodiscard]] KALVIO_API ValueDescription DescribeField(const CSettingsData& document, const FieldRow& row);

} // namespace kalvio
