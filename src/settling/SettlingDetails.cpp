#include "settling/SettlingDetails.h"

#include "host/HostTexts.h"
#include "platform/Text.h"
#include "settling/SettlingFields.h"
#include "settling/SettlingTexts.h"
#include "settling/SettlingView.h"

#include <cmath>
#include <utility>

using namespace kalvio::settling;

namespace {

constexpr int kSaveItemBase = 301;
constexpr int kItemsPerGroup = 10;
constexpr int kWholeWindow = -1;
constexpr double kPercent = 100.0;

constexpr std::size_t FieldIndex(SettlingGroup group, SettlingField field) {
    return static_cast<std::size_t>(group) * kSettlingFieldsPerGroup + static_cast<std::size_t>(field);
}

CString TypeText(int type) {
    const bool known = type >= TOLERANCETYPE_NONE && type <= TOLERANCETYPE_EXPONENTIAL;
    return kalvio::LoadText(known ? kTextTypeNone + static_cast<unsigned>(type) : kalvio::kTextUnknown);
}

} // namespace

CSettlingDetails::CSettlingDetails(CHostApplication* host)
    : CSettingsData(host), m_viewFactory([] { return std::make_unique<CSettlingView>(); }) {
    for (const kalvio::FieldRow& row : kalvio::SettlingRows()) {
        kalvio::SetKept(*this, row, row.details.defaultValue);
    }
    m_saveFlags.fill(1);
}

std::span<const kalvio::FieldRow> CSettlingDetails::FieldRows() const {
    return kalvio::SettlingRows();
}

int CSettlingDetails::Initialise() {
    SetBaseSettings(this);
    return 1;
}

bool CSettlingDetails::OnNewDocument() {
    return CSettingsData::OnNewDocument();
}

void CSettlingDetails::UpdateHardware(int) {}

int CSettlingDetails::GetIndexForResultID(int resultID) {
    return kalvio::SettlingGroupOfResult(resultID);
}

const SettlingGroupDetails& CSettlingDetails::GroupOf(int resultID) const {
    return m_groups[static_cast<std::size_t>(GetIndexForResultID(resultID))];
}

unsigned long CSettlingDetails::GetSettlingTime(int resultID) const {
    return static_cast<unsigned long>(GroupOf(resultID).SettlingTime.Get());
}

int CSettlingDetails::GetNumResults(int resultID) const {
    return GroupOf(resultID).NumResults;
}

double CSettlingDetails::GetTolerance(int resultID) const {
    return GroupOf(resultID).Tolerance / kPercent;
}

int CSettlingDetails::GetToleranceType(int resultID) const {
    return GroupOf(resultID).ToleranceType;
}

int CSettlingDetails::GetAveraging(int resultID) const {
    const SettlingGroupDetails& group = GroupOf(resultID);
    return group.Average != 0 && group.ToleranceType != TOLERANCETYPE_EXPONENTIAL ? 1 : 0;
}

int CSettlingDetails::IsWithinTolerance(int resultID, double value, double reference, int distance) const {
    const int type = GetToleranceType(resultID);
    const bool compares = type == TOLERANCETYPE_NORMAL || type == TOLERANCETYPE_EXPONENTIAL;
    if (!compares || distance == 0) {
        return 1;
    }
    double allowance = GetTolerance(resultID);
    if (type == TOLERANCETYPE_EXPONENTIAL) {
        allowance *= std::pow(2.0, distance - 1);
    }
    return std::fabs(value - reference) <= std::fabs(allowance * reference) ? 1 : 0;
}

const kalvio::FieldRow& CSettlingDetails::RowOf(SettlingGroup group, SettlingField field) {
    return kalvio::SettlingRows()[FieldIndex(group, field)];
}

kalvio::SetOutcome CSettlingDetails::SetField(SettlingGroup group, SettlingField field, double value) {
    const kalvio::FieldRow& row = RowOf(group, field);
    if (row.real == nullptr) {
        return kalvio::SetOutcome::Refused("the field holds no real number");
    }
    return SetValue(row.real(*this, row), {&row.details, 1}, 0, {&row.ctrlID, 1}, value, 1, 1);
}

kalvio::SetOutcome CSettlingDetails::SetField(SettlingGroup group, SettlingField field, std::int32_t value) {
    const kalvio::FieldRow& row = RowOf(group, field);
    if (row.integer == nullptr) {
        return SetField(group, field, static_cast<double>(value));
    }
    return SetValue(row.integer(*this, row), {&row.details, 1}, 0, {&row.ctrlID, 1}, value, 1, 1);
}

CTypedFrameWnd* CSettlingDetails::OpenSettingsWindow(int, int show, int, const CPoint* where) {
    return OpenSettlingDetails(show, where);
}

CTypedFrameWnd* CSettlingDetails::OpenSettlingDetails(int show, const CPoint* where) {
    CTypedFrameWnd* const open = kalvio::MoveOpenWindow(CSettlingView::kWindowType, kWholeWindow, where);
    return open != nullptr ? open : m_windows.Open(m_viewFactory, kTextTitle, {kWholeWindow, show, where});
}

void CSettlingDetails::PrintDetails(CPrintView* view) {
    const auto table = kalvio::SettlingFieldTable();
    view->PrintTitle(kalvio::LoadText(kTextTitle));
    view->PrintEmptyLine();
    for (int index = 0; index < kSettlingGroups; ++index) {
        const auto group = static_cast<SettlingGroup>(index);
        const SettlingGroupDetails& details = Group(group);
        const auto print = [&](SettlingField field, const CString& value, const char* unit) {
            view->PrintField(kalvio::LoadText(table[FieldIndex(group, field)].stringId), value, unit);
        };
        const int decimals = table[FieldIndex(group, SettlingField::Tolerance)].decimals;
        print(SettlingField::ToleranceType, TypeText(details.ToleranceType), "");
        print(SettlingField::Tolerance, kalvio::Format("%.*f", decimals, details.Tolerance.Get()), "%");
        print(SettlingField::SettlingTime, kalvio::Format("%d", details.SettlingTime.Get()), "ms");
        print(SettlingField::NumResults, kalvio::Format("%d", details.NumResults.Get()), "");
        print(SettlingField::Average, GetYesNoText(details.Average != 0), "");
    }
}

void CSettlingDetails::PopulateConfigTreeCtrl(CConfigTreeCtrl* tree, HTREEITEM parent) {
    for (int group = 0; group < kSettlingGroups; ++group) {
        tree->AddCheckItem(parent, kalvio::LoadText(kalvio::SettlingCaption(group)),
                           kSaveItemBase + kItemsPerGroup * group,
                           m_saveFlags[static_cast<std::size_t>(group)] != 0);
    }
}

void CSettlingDetails::PopulateSaveTable(CConfigTreeCtrl* tree, HTREEITEM parent) {
    if (tree == nullptr) {
        m_saveFlags.fill(1);
        return;
    }
    for (HTREEITEM item = tree->GetChildItem(parent); item != nullptr;
         item = tree->GetNextSiblingItem(item)) {
        int id = 0;
        bool ticked = false;
        tree->GetItemDetails(item, id, ticked);
        const int offset = id - kSaveItemBase;
        if (offset >= 0 && offset < kItemsPerGroup * kSettlingGroups && offset % kItemsPerGroup == 0) {
            m_saveFlags[static_cast<std::size_t>(offset / kItemsPerGroup)] = ticked ? 1 : 0;
        }
    }
}

void CSettlingDetails::PopulateOLETreeCtrl(COLETreeCtrl* tree, HTREEITEM parent) {
    for (const kalvio::FieldRow& row : kalvio::SettlingRows()) {
        tree->AddEntry(parent, kalvio::LoadText(row.details.stringId), row.treeItem,
                       kalvio::BrowserKind::Field);
    }
}
