// What the host's browser and save table show of each document, and the catalogue of results, line by line.

#include "hardware/Hardware.h"
#include "host/ResultCatalogue.h"
#include "peripheral_network/KvNetSettings.h"
#include "ports/Ports.h"
#include "regulation/RegulationSettings.h"
#include "settling/SettlingDetails.h"
#include "support/Golden.h"
#include "support/ScriptedDriver.h"
#include "support/TestHost.h"

namespace kalvio::test {
namespace {

CString Lines(const CTreeCtrl& tree, HTREEITEM parent, bool flags, std::size_t depth) {
    CString text;
    for (HTREEITEM item = tree.GetChildItem(parent); item != nullptr; item = tree.GetNextSiblingItem(item)) {
        text += CString(2 * depth, ' ') + Format("%d ", item->id) + item->text;
        text += flags ? Format(" (%d, %d)\n", item->flags[0], item->flags[1])
                      : CString(item->ticked ? " ticked\n" : "\n");
        text += Lines(tree, item, flags, depth + 1);
    }
    return text;
}

template<typename Document>
CString Browser(const char* title, Document& document) {
    COLETreeCtrl tree;
    document.PopulateOLETreeCtrl(&tree, tree.GetRootItem());
    return Format("# %s\n", title) + Lines(tree, tree.GetRootItem(), true, 0);
}

CString SaveTable(const char* title, CSettingsData& document) {
    CConfigTreeCtrl tree;
    document.PopulateConfigTreeCtrl(&tree, tree.GetRootItem());
    return Format("# %s, saved\n", title) + Lines(tree, tree.GetRootItem(), false, 0);
}

} // namespace

TEST(Trees, EveryDocument) {
    TestHost host;
    ScriptedDriver driver;
    CHardware hardware(driver);
    CSettlingDetails settling;
    CRegulationSettings regulation;
    CPorts ports;
    CKvNetSettings network;
    ASSERT_EQ(network.Initialise(), 1);
    ExpectGolden(__FILE__, "trees.txt",
                 Browser("hardware", hardware) + Browser("settling", settling) +
                     Browser("regulation", regulation) + Browser("ports", ports) +
                     Browser("network", network) + SaveTable("settling", settling) +
                     SaveTable("regulation", regulation) + SaveTable("network", network));
}

TEST(ResultCatalogue, EveryRow) {
    CString text;
    for (const ResultRow& row : Results()) {
        text += Format("%d %s '%s' flag %d, %s, other %d, %s%s, unit %d of %zu units, group %d\n", row.id,
                       row.name != nullptr ? row.name : "-", LoadText(row.textId).c_str(), row.readyFlag,
                       row.list == ResultList::Block ? "block" : "single", row.channelB,
                       row.side == ResultSide::Generator ? "generator" : "analyser",
                       row.usesDetector ? ", detector's" : "", row.usualUnit,
                       row.quantity != nullptr ? row.quantity->units.size() : 0, row.settlingGroup);
    }
    ExpectGolden(__FILE__, "results.txt", text);
}

} // namespace kalvio::test
