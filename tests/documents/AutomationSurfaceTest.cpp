// Every name that scripts know, in its order, with its kind and types.

#include "adapters/FormatConverterSettings.h"
#include "adapters/KEDAAdapterSettings.h"
#include "hardware/Hardware.h"
#include "peripheral_network/KvNetSettings.h"
#include "ports/Ports.h"
#include "regulation/RegulationSettings.h"
#include "settling/SettlingDetails.h"
#include "support/Golden.h"
#include "support/ScriptedDriver.h"
#include "support/TestHost.h"
#include "switching/IOSwitcherSettings.h"
#include "switching/SwitcherSettings.h"

namespace kalvio::test {
namespace {

CString LineOf(const CCmdTarget& target, const DispatchEntry& entry, bool withValue) {
    CString line = Format("%s %s", NameOf(entry.result), entry.name);
    if (entry.kind == DispatchKind::Method) {
        line += "(";
        for (const AutomationType parameter : entry.parameters) {
            line += CString(line.back() == '(' ? "" : ", ") + NameOf(parameter);
        }
        return line + ")\n";
    }
    const bool constant = entry.kind == DispatchKind::ReadOnlyProperty;
    return line + (constant ? " read only" : "") + (withValue ? " = " + entry.get(target).ToText() : "") +
           "\n";
}

CString NamesOf(const char* title, const CCmdTarget& target, bool withValues) {
    CString text = Format("# %s\n", title);
    for (const DispatchEntry& entry : target.GetDispatchMap()) {
        text += LineOf(target, entry, withValues);
    }
    return text;
}

} // namespace

TEST(AutomationSurface, NamesKindsTypesAndFreshValues) {
    TestHost host;
    ScriptedDriver driver;
    CKvNetSettings network;
    ASSERT_EQ(network.Initialise(), 1);
    const CSwitcherSettings& switchers = *network.GetSwitcherSettings();
    ExpectGolden(
        __FILE__, "automation.txt",
        NamesOf("hardware", CHardware(driver), false) + NamesOf("settling", CSettlingDetails(), true) +
            NamesOf("regulation", CRegulationSettings(), true) + NamesOf("network", network, true) +
            NamesOf("switchers", switchers, true) +
            NamesOf("input and output switchers", *switchers.GetIOSwitcherSettings(), false) +
            NamesOf("adapters", *network.GetFormatConverterSettings()->GetKEDAAdapterSettings(), false) +
            NamesOf("ports", CPorts(), true));
}

} // namespace kalvio::test
