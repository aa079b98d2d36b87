#include "regulation/Document.h"

namespace kalvio::test {
namespace {

using RegulationTreesTest = DocumentTest;

constexpr std::size_t kFlagOfDirection = 17 * 5 + 7 * 9 - 5;

} // namespace

TEST_F(RegulationTreesTest, SaveTable) {
    CConfigTreeCtrl tree;
    const HTREEITEM parent = tree.AddCheckItem(nullptr, "Regulation", 1, true);
    document.PopulateConfigTreeCtrl(&tree, parent);
    const HTREEITEM result = tree.GetChildItem(parent);
    const HTREEITEM source = tree.GetNextSiblingItem(result);
    EXPECT_EQ(std::tuple(result->id, result->ticked, source->id, source->ticked),
              std::tuple(901, true, 920, true));
    EXPECT_EQ(tree.GetChildItem(source)->text, "Source to vary");
    tree.SetTicked(result, false);
    tree.SetTicked(source, false);
    document.PopulateSaveTable(&tree, parent);
    EXPECT_EQ(Stored().front(), 0);
    EXPECT_EQ(Stored()[kFlagOfDirection], 0);
    tree.SetTicked(source, true);
    document.PopulateSaveTable(&tree, nullptr); // the whole tree is looked through
    EXPECT_EQ(Stored()[kFlagOfDirection], 1);
    tree.SetTicked(source, false);
    document.PopulateSaveTable(&tree, parent);
    document.PopulateSaveTable(nullptr, nullptr); // without a tree only the result group
    EXPECT_EQ(Stored().front(), 1);
    EXPECT_EQ(Stored()[kFlagOfDirection], 0);
}

TEST_F(RegulationTreesTest, ANewDocumentStartsFromTheHostsReferences) {
    host.analyser.references.reference = 3.0 * kStepsPerVolt;
    host.generator.SetReferences({.ohms = 75.0});
    CRegulationSettings fresh;
    EXPECT_EQ(fresh.ResultReferences().reference, 3.0 * kStepsPerVolt);
    EXPECT_EQ(fresh.SourceReferences().ohms, 75.0);
}

TEST_F(RegulationTreesTest, TheHostFindsTheDocumentByItsControls) {
    for (int ctrlID = 2639; ctrlID <= 2667; ++ctrlID) { // the document's own, not the gaps
        const bool own = ctrlID >= 2640 && ctrlID <= 2666 && ctrlID != 2648;
        EXPECT_EQ(host.application.GetDocForID(ctrlID), own ? &document : nullptr) << ctrlID;
    }
    { const CRegulationSettings later; }
    EXPECT_EQ(host.application.GetDocForID(kCtrlResult), nullptr); // the later one took it and is gone
    for (const kalvio::FieldRow& field : Fields()) {
        if (field.ctrlID != kCtrlTolerance) {
            EXPECT_EQ(document.GetFieldIndexForCtrlID(field.ctrlID, kUnitNone), field.id);
        }
        const bool hasControl = field.id != kResultFftDetector && field.id != kSourceFftDetector;
        EXPECT_EQ(!LoadText(static_cast<unsigned>(field.ctrlID)).empty(), hasControl) << field.ctrlID;
    }
    CComboBox combo;
    EXPECT_EQ(document.FillCombo(&combo, 2639) + document.FillCombo(&combo, 2664) +
                  document.FillCombo(nullptr, kCtrlResult),
              0);
}

} // namespace kalvio::test
