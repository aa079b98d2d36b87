// What holds for every document whose fields stand in rows, whatever the fields are. A document joins by its
// line in `Documents`; what its fields are is looked at in fields.txt.

#include "regulation/RegulationSettings.h"
#include "settling/SettlingDetails.h"
#include "support/Golden.h"
#include "support/TestHost.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace kalvio::test {
namespace {

using Documents = ::testing::Types<CSettlingDetails, CRegulationSettings, CAnalyserSettings,
                                   CGeneratorSettings, CFFTParametersSettings>;

using Bytes = std::vector<std::uint8_t>;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

Bytes Stored(CSettingsData& document) {
    CArchive archive;
    document.Serialize(archive);
    return archive.Bytes();
}

std::vector<double> Kept(const CSettingsData& document) {
    std::vector<double> values;
    for (const FieldRow& row : document.FieldRows()) {
        values.push_back(GetKept(document, row));
    }
    return values;
}

bool LimitsBind(const FieldRow& row) {
    return !row.hostLimitsOnLoad && row.details.minimum < row.details.maximum;
}

// Every field with another value than it has, which an archive may hold.
void ChangeAll(CSettingsData& document) {
    for (const FieldRow& row : document.FieldRows()) {
        const double old = GetKept(document, row);
        const double other = old != row.details.maximum ? row.details.maximum : row.details.minimum;
        SetKept(document, row, LimitsBind(row) ? other : old + 1);
    }
}

// Puts flags before the stored values: `flag(row)`.
template<typename Flag>
Bytes WithFlags(Bytes bytes, const CSettingsData& document, Flag flag) {
    std::size_t at = 0;
    for (const FieldRow* row : RowsInArchiveOrder(document.FieldRows())) {
        bytes.at(at) = static_cast<std::uint8_t>(flag(*row));
        at += row->real != nullptr ? 9 : 5;
    }
    EXPECT_EQ(at, bytes.size());
    return bytes;
}

bool IsReal(const FieldRow& row) {
    return row.scriptType == AutomationType::Double;
}

VARIANT ScriptValue(const FieldRow& row, double value) {
    return IsReal(row) ? VARIANT::Double(value) : VARIANT::Long(static_cast<std::int32_t>(value));
}

// How far beyond a limit a value is outside of it.
double Beyond(const FieldRow& row, double limit) {
    return IsReal(row) ? 1e-3 * std::max(1.0, std::fabs(limit)) : 1.0;
}

template<typename Document>
class DocumentContractTest : public ::testing::Test {
protected:
    DocumentContractTest() { host.fftDetectors.Add("peak"); }

    double Get(const FieldRow& row) {
        double value = kNaN;
        EXPECT_TRUE(document->GetProperty(row.script).value.Get(value));
        return value;
    }

    void Fresh() {
        document = std::make_unique<Document>();
        host.user.Clear();
        host.hints.clear();
    }

    void ExpectTaken(const FieldRow& row, double value, double read) {
        SCOPED_TRACE(value);
        Fresh();
        const bool changes = Get(row) != read;
        const AutomationResult result = document->SetProperty(row.script, ScriptValue(row, value));
        EXPECT_TRUE(result.Ok()) << result.text;
        EXPECT_NEAR(Get(row), read, 1e-9 * std::max(1.0, std::fabs(read)));
        EXPECT_TRUE(!changes || document->IsModified());
        const auto tells = [&row](const ViewHint& hint) { return hint.hint == row.ctrlID && hint.flag == 1; };
        EXPECT_TRUE(!changes || std::any_of(host.hints.begin(), host.hints.end(), tells));
        EXPECT_TRUE(host.user.Boxes().empty());
    }

    // The answer to a value that must change nothing.
    CString Refusal(const FieldRow& row, double value) {
        Fresh();
        const std::vector<double> before = Kept(*document);
        const AutomationResult result = document->SetProperty(row.script, ScriptValue(row, value));
        EXPECT_EQ(result.fault, AutomationFault::Refused) << value;
        EXPECT_EQ(result.text.find(CString(row.script) + " refused the value: "), 0U) << result.text;
        EXPECT_EQ(Kept(*document), before) << value;
        EXPECT_FALSE(document->IsModified());
        return result.text.substr(std::strlen(row.script) + std::strlen(" refused the value: "));
    }

    void ExpectOutOfRange(const FieldRow& row, double value) {
        host.application.oleDisplay = 0;
        const CString silent = Refusal(row, value);
        EXPECT_TRUE(host.user.Boxes().empty());
        host.application.oleDisplay = 1;
        EXPECT_EQ(Refusal(row, value), silent);
        EXPECT_EQ(host.user.Texts(), std::vector<CString>{silent});
        EXPECT_EQ(silent.find(LoadText(row.details.stringId) + " is out of range."), 0U) << silent;
        EXPECT_TRUE(host.hints.empty());
    }

    TestHost host;
    std::unique_ptr<Document> document = std::make_unique<Document>();
};
TYPED_TEST_SUITE(DocumentContractTest, Documents);

} // namespace

TYPED_TEST(DocumentContractTest, DefaultsAreWhatAFreshDocumentHolds) {
    std::set<std::pair<bool, int>> places; // no two fields share one
    for (const FieldRow& row : this->document->FieldRows()) {
        EXPECT_TRUE(row.archivePlace == kNoPlace || places.emplace(true, row.archivePlace).second)
            << row.ctrlID;
        EXPECT_TRUE(row.scriptPlace == kNoPlace || places.emplace(false, row.scriptPlace).second)
            << row.ctrlID;
        if (row.integer != nullptr || row.real != nullptr) {
            EXPECT_EQ(GetKept(*this->document, row), this->document->GetDefaultValue(row.id)) << row.ctrlID;
        }
        EXPECT_EQ(this->document->GetFieldIndexForCtrlID(row.ctrlID, kUnitNone) >= 0, true) << row.ctrlID;
    }
    EXPECT_FALSE(this->document->IsModified());
}

TYPED_TEST(DocumentContractTest, ScriptsSetEveryFieldWithinItsLimitsAndNotBeyond) {
    for (const FieldRow& row : this->document->FieldRows()) {
        if (row.script == nullptr) {
            continue;
        }
        SCOPED_TRACE(row.script);
        this->Fresh();
        const DispatchEntry* entry = this->document->FindName(row.script);
        ASSERT_NE(entry, nullptr);
        const ValueDescription field = this->document->DescribeProperty(*entry);
        if (row.kind == FieldKind::Flag) {
            this->ExpectTaken(row, 1, -1); // a BOOL is -1 to a script
            this->ExpectTaken(row, -1, -1);
            this->ExpectTaken(row, 0, 0);
        } else if (row.kind == FieldKind::Number) {
            this->ExpectTaken(row, field.minimum, field.minimum);
            this->ExpectTaken(row, field.maximum, field.maximum);
            this->ExpectOutOfRange(row, field.minimum - Beyond(row, field.minimum));
            this->ExpectOutOfRange(row, field.maximum + Beyond(row, field.maximum));
            if (IsReal(row)) {
                this->ExpectOutOfRange(row, kNaN);
            }
        }
    }
}

TYPED_TEST(DocumentContractTest, ChoicesAreTakenAndOthersRefusedWithTheChoicesInTheAnswer) {
    for (const FieldRow& row : this->document->FieldRows()) {
        if (row.script == nullptr || row.kind != FieldKind::Choice) {
            continue;
        }
        SCOPED_TRACE(row.script);
        this->Fresh();
        const ValueDescription field =
            this->document->DescribeProperty(*this->document->FindName(row.script));
        const CString refusal = this->Refusal(row, 9999);
        for (const ValueChoice& choice : field.choices) {
            EXPECT_FALSE(choice.text.empty());
            if (row.door == ScriptDoor::Messenger) {
                EXPECT_NE(refusal.find(std::to_string(choice.value) + " (" + choice.text + ")"),
                          CString::npos);
            }
            if (choice.value != kResultFftDetectorA) { // wants its detector first
                this->ExpectTaken(row, choice.value, choice.value);
            }
        }
    }
}

TYPED_TEST(DocumentContractTest, ArchivesGoRoundAndAreTakenWholeOrNotAtAll) {
    TypeParam changed;
    ChangeAll(changed);
    const Bytes bytes = Stored(changed);
    const Bytes flagged = WithFlags(bytes, changed, [](const FieldRow&) { return 0x55; });
    const Bytes before = Stored(*this->document);
    CString error;
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        error.clear();
        EXPECT_FALSE(this->document->Load(std::span(flagged).first(length), error)) << length;
        EXPECT_EQ(error.find("The settings could not be loaded: "), 0U);
        EXPECT_EQ(Stored(*this->document), before) << length; // the groups' flags too
    }
    this->document->SetModifiedFlag();
    ASSERT_TRUE(this->document->Load(std::span(bytes), error)) << error;
    EXPECT_EQ(Kept(*this->document), Kept(changed));
    EXPECT_EQ(Stored(*this->document), bytes);
    EXPECT_FALSE(this->document->IsModified());
}

TYPED_TEST(DocumentContractTest, AnArchivesValueOutOfItsLimitsIsRefusedWithItsName) {
    const std::vector<double> before = Kept(*this->document);
    for (const FieldRow* row : RowsInArchiveOrder(this->document->FieldRows())) {
        std::vector<double> wrong;
        if (LimitsBind(*row)) {
            wrong = {row->details.minimum - 1, row->details.maximum + 1};
        }
        if (row->real != nullptr) {
            wrong.push_back(kNaN);
        }
        for (const double value : wrong) {
            SCOPED_TRACE(Format("%d: %g", row->ctrlID, value));
            TypeParam damaged;
            SetKept(damaged, *row, value);
            const Bytes bytes = Stored(damaged);
            CString error;
            EXPECT_FALSE(this->document->Load(std::span(bytes), error));
            EXPECT_NE(error.find(LoadText(row->details.stringId)), CString::npos) << error;
            EXPECT_EQ(Kept(*this->document), before);
            this->host.application.discardStoredValues = true; // nobody looks at what is dropped
            EXPECT_TRUE(this->document->Load(std::span(bytes), error));
            EXPECT_EQ(Kept(*this->document), before);
            this->host.application.discardStoredValues = false;
        }
    }
}

TYPED_TEST(DocumentContractTest, FlagsAndTheHostsSwitchesSayWhichGroupsAreApplied) {
    TypeParam changed;
    ChangeAll(changed);
    const int groups = this->document->FieldRows().back().group + 1;
    for (int dropped = 0; dropped < groups; ++dropped) {
        const auto flag = [dropped](const FieldRow& row) { return row.group == dropped ? 0 : 1; };
        const Bytes bytes = WithFlags(Stored(changed), changed, flag);
        for (const bool all : {false, true}) {
            TypeParam loaded;
            this->host.application.applyUnsavedGroups = all;
            CString error;
            ASSERT_TRUE(loaded.Load(std::span(bytes), error)) << error;
            for (const FieldRow& row : loaded.FieldRows()) {
                const CSettingsData& source = all || row.group != dropped ? changed : *this->document;
                EXPECT_EQ(GetKept(loaded, row), GetKept(source, row)) << row.ctrlID;
            }
            const Bytes again = Stored(loaded); // the flags read are the groups' now
            EXPECT_EQ(WithFlags(again, loaded, flag), again);
        }
    }
}

TYPED_TEST(DocumentContractTest, TheBrowserShowsEveryFieldOnce) {
    COLETreeCtrl tree;
    this->document->PopulateOLETreeCtrl(&tree, tree.GetRootItem());
    std::map<int, CString> shown;
    for (HTREEITEM item = tree.GetChildItem(tree.GetRootItem()); item != nullptr;
         item = tree.GetNextSiblingItem(item)) {
        EXPECT_TRUE(shown.emplace(item->id, item->text).second) << item->id;
    }
    for (const FieldRow& row : this->document->FieldRows()) {
        if (row.treeItem != kNoPlace) {
            EXPECT_EQ(shown[row.treeItem], LoadText(row.details.stringId));
        }
    }
}

namespace {

CString LineOf(const CSettingsData& document, const FieldRow& row) {
    const ValueDescription field = DescribeField(document, row);
    CString line =
        Format("%d: %d %s \"%s\" = %.10g", row.id, row.ctrlID, row.script != nullptr ? row.script : "-",
               field.title.c_str(), GetKept(document, row));
    if (row.kind == FieldKind::Number) {
        line += Format(", %.10g to %.10g %s", field.minimum, field.maximum, field.unit.c_str());
    }
    line += Format(", archive %d group %d item %d, type %d decimals %d", row.archivePlace, row.group,
                   row.treeItem, row.details.numberType, row.details.decimals);
    if (row.kind != FieldKind::Number) {
        line += Format(", row %g to %g", row.details.minimum, row.details.maximum);
    }
    for (const ValueChoice& choice : field.choices) {
        line += Format("\n    %d %s %s", choice.value, choice.text.c_str(), choice.constant.c_str());
    }
    return line + "\n    " + field.help + "\n";
}

} // namespace

TEST(DocumentFields, AreTheseWithTheseDefaultsLimitsAndChoices) {
    TestHost host;
    CString text;
    CSettlingDetails settling;
    CRegulationSettings regulation;
    CAnalyserSettings analyser;
    CGeneratorSettings generator;
    CFFTParametersSettings parameters;
    CFFTDetectorSettings detector(1, "peak");
    for (const CSettingsData* document : std::initializer_list<const CSettingsData*>{
             &settling, &regulation, &analyser, &generator, &parameters, &detector}) {
        for (const FieldRow& row : document->FieldRows()) {
            text += LineOf(*document, row);
        }
    }
    ExpectGolden(__FILE__, "fields.txt", text);
}

} // namespace kalvio::test
