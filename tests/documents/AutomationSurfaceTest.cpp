// Every name that scripts know, in its order, with its kind and types.

#include "hardware/Hardware.h"
#include "regulation/RegulationSettings.h"
#include "settling/SettlingDetails.h"
#include "support/Golden.h"
#include "support/ScriptedDriver.h"
#include "support/TestHost.h"

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

CString NamesOf(const CCmdTarget& target, bool withValues) {
    CString text;
    for (const DispatchEntry& entry : target.GetDispatchMap()) {
        text += LineOf(target, entry, withValues);
    }
    return text;
}

} // namespace

TEST(AutomationSurface, NamesKindsTypesAndFreshValues) {
    TestHost host;
    ScriptedDriver driver;
    ExpectGolden(__FILE__, "automation.txt",
                 "# hardware\n" + NamesOf(CHardware(driver), false) + "# settling\n" +
                     NamesOf(CSettlingDetails(), true) + "# regulation\n" +
                     NamesOf(CRegulationSettings(), true));
}

} // namespace kalvio::test
