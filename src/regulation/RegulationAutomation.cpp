// The names that scripts use: the fields with the constants of their choices, the states, the operations.

#include "platform/AutomationTable.h"
#include "regulation/RegulationSettings.h"

using namespace kalvio::regulation;
using kalvio::automation::Constant;
using kalvio::automation::Method;

const kalvio::DispatchTable& CRegulationSettings::GetDispatchMap() const {
    using Self = CRegulationSettings;
    static const kalvio::DispatchTable kTable = [] {
        kalvio::DispatchTable table;
        kalvio::AppendFieldNames(table, Rows());
        table.push_back(Constant("REG_STATUS_NONE", kStatusNone));
        table.push_back(Constant("REG_STATUS_INPROGRESS", kStatusInProgress));
        table.push_back(Constant("REG_STATUS_OK", kStatusOk));
        table.push_back(Constant("REG_STATUS_FAILED", kStatusFailed));
        table.push_back(Method("REG_Start", &Self::StartByScript));
        table.push_back(Method("REG_Stop", &Self::OLEStop));
        table.push_back(Method("REG_GetStatus", &Self::OLEGetStatus));
        return table;
    }();
    return kTable;
}
