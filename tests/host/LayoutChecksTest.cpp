#include "support/LayoutChecks.h"

#include "platform/Dialog.h"
#include "support/TestHost.h"

namespace kalvio::test {
namespace {

TEST(LayoutChecksTest, EveryKindOfFaultIsFound) {
    static constexpr ControlTemplate kControls[] = {
        {ControlKind::Edit, 1, "", Area(10, 20, 20, 12)},
        {ControlKind::Static, 0, "Level", Area(10, 0, 20, 8)},
        {ControlKind::ComboBox, 2, "", Area(10, 8, 20, 90)},
        {ControlKind::Spin, 3, "", Area(30, 20, 8, 12)},
        {ControlKind::Edit, 4, "", Area(90, 20, 20, 12)},
        {ControlKind::GroupBox, 0, "Box", Area(5, 15, 40, 20)},
    };
    static constexpr DialogTemplate kLayout{9, "", Area(0, 0, 100, 40), kControls};
    TestHost host;
    CDialog dialog;
    ASSERT_TRUE(dialog.Create(kLayout));
    const std::vector<std::string> expected{"1 \"\" has no name", "4 \"\" is not inside",
                                            "0 \"Box\" overlaps 2 \"\"", "2 \"\" comes too late after 1"};
    EXPECT_EQ(LayoutCheck::FaultsOf(DescribeWindow(dialog)), expected);
}

} // namespace
} // namespace kalvio::test
