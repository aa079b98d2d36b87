#include "settling/SettlingViewLayout.h"

#include "platform/Text.h"
#include "settling/SettlingFields.h"

#include <array>
#include <vector>

namespace kalvio {

namespace {

// One column, in dialog units; `first` is the control id of the first group, 0 for the captions.
struct Column {
    ControlKind kind;
    int first;
    const char* heading; // null: that of the column before
    const char* text;
    int left;
    int width;
    int drop; // from the top of the line
    int height;
};

constexpr int kLineHeight = 12;
constexpr int kTextHeight = 8;
constexpr int kTextDrop = 2;
constexpr int kDropDown = 60; // of a combo with its list

constexpr Column kColumns[] = {
    {ControlKind::Static, 0, "Result", nullptr, 9, 162, kTextDrop, kTextHeight},
    {ControlKind::ComboBox, kCtrlSettlingType, "Convergence", "", 174, 66, 0, kDropDown},
    {ControlKind::Edit, kCtrlSettlingTolerance, "Tolerance (%)", "", 246, 52, 0, kLineHeight},
    {ControlKind::Edit, kCtrlSettlingTime, "Time (ms)", "", 304, 44, 0, kLineHeight},
    {ControlKind::Edit, kCtrlSettlingCount, "Results", "", 354, 26, 0, kLineHeight},
    {ControlKind::Spin, kCtrlSettlingCountSpin, nullptr, "", 380, 10, 0, kLineHeight},
    {ControlKind::CheckBox, kCtrlSettlingAverage, nullptr, "Average", 400, 46, 1, 10},
};

constexpr int kWidth = 454;
constexpr int kHeadingTop = 7;
constexpr int kFirstLine = 20;
constexpr int kLinePitch = 16;
constexpr int kBottomMargin = 6;

struct Panel {
    std::array<CString, kSettlingGroups> captions;
    std::vector<ControlTemplate> controls;
    DialogTemplate layout;

    Panel() {
        for (const Column& column : kColumns) {
            if (column.heading != nullptr) {
                controls.push_back({ControlKind::Static, 0, column.heading,
                                    Area(column.left, kHeadingTop, column.width, kTextHeight)});
            }
        }
        for (int group = 0; group < kSettlingGroups; ++group) {
            AddLine(group);
        }
        constexpr int kHeight = kFirstLine + kSettlingGroups * kLinePitch + kBottomMargin;
        layout = {kSettlingPanel, "Sweep Settling", Area(0, 0, kWidth, kHeight), controls};
    }

    void AddLine(int group) {
        CString& caption = captions[static_cast<std::size_t>(group)];
        caption = LoadText(SettlingCaption(group));
        const int top = kFirstLine + group * kLinePitch;
        for (const Column& column : kColumns) {
            controls.push_back({column.kind, column.first != 0 ? column.first + group : 0,
                                column.text != nullptr ? column.text : caption.c_str(),
                                Area(column.left, top + column.drop, column.width, column.height)});
        }
    }
};

} // namespace

const DialogTemplate& SettlingPanelLayout() {
    static const Panel kPanel;
    return kPanel.layout;
}

} // namespace kalvio
