// What windows look like as characters, as JSON and as a drawing.

#include "reference_host/windows/WindowPictures.h"
#include "support/Golden.h"

namespace kalvio::reference_host {
namespace {

ControlState Control(int id, ControlRole role, const char* text, CRect rect) {
    ControlState state;
    state.id = id;
    state.role = role;
    state.name = state.text = text;
    state.rect = rect;
    return state;
}

// One control of each sort.
ControlState Everything() {
    ControlState window = Control(0, ControlRole::Window, "Every <sort>", {0, 0, 200, 120});
    window.templateId = 5;
    auto& all = window.children;
    all.push_back(Control(1, ControlRole::Group, " Group ", {2, 2, 198, 60}));
    all.push_back(Control(2, ControlRole::Text, "Two\nlines", {8, 12, 40, 28}));
    all.push_back(Control(3, ControlRole::Edit, "typed", {48, 12, 88, 24}));
    all.push_back(Control(4, ControlRole::ComboBox, "", {96, 12, 140, 112}));
    all.back().items = {{"one", 1}, {"two", 2, 0xFF}};
    all.back().selected = 1;
    all.push_back(Control(5, ControlRole::CheckBox, "Tick", {8, 34, 48, 44}));
    all.back().checked = 1;
    all.push_back(Control(6, ControlRole::RadioButton, "Radio", {56, 34, 100, 44}));
    all.back().greyed = true;
    all.push_back(Control(7, ControlRole::Button, "Push", {108, 32, 148, 46}));
    all.back().enabled = false;
    all.push_back(Control(8, ControlRole::Spin, "", {152, 34, 162, 46}));
    all.push_back(Control(9, ControlRole::ScrollBar, "", {8, 50, 88, 58}));
    all.back().high = 31;
    all.back().page = 16;
    all.back().position = 8;
    all.push_back(Control(10, ControlRole::Progress, "", {96, 50, 176, 58}));
    all.back().high = 100;
    all.back().position = 25;
    all.push_back(Control(11, ControlRole::Tabs, "", {8, 64, 100, 74}));
    all.back().items = {{"First", 0}, {"Second", 1}};
    all.back().selected = 0;
    all.push_back(Control(12, ControlRole::ListBox, "", {8, 78, 88, 112}));
    all.back().items = {{"8\tadapter", 8}, {"9\tother", 9}};
    for (int more = 10; more < 16; ++more) { // than there is room for
        all.back().items.push_back({std::to_string(more) + "\tfurther", more});
    }
    all.back().selected = 0;
    all.push_back(Control(13, ControlRole::Picture, "", {96, 80, 180, 112}));
    all.back().drawing = {{DrawnItem::Kind::Box, {0, 0, 40, 10}, {}, 0x0000FF},
                          {DrawnItem::Kind::Text, {44, 0, 80, 10}, "scale", 0},
                          {DrawnItem::Kind::Line, {0, 20, 80, 20}, {}, 0}};
    all.push_back(Control(14, ControlRole::Button, "unseen", {8, 78, 88, 112}));
    all.back().visible = false;
    return window;
}

TEST(WindowPictures, ShowEverySortOfControl) {
    std::string text = DrawWindowText(Everything()) + WindowJson(Everything()) + "\n";
    test::ExpectGolden(__FILE__, "windows.txt", text + DrawWindowSvg(Everything()));
}

} // namespace
} // namespace kalvio::reference_host
