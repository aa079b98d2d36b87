// The SETT_ names: the fields of each group, then the constants of the convergence types.

#include "platform/AutomationTable.h"
#include "settling/SettlingDetails.h"

const kalvio::DispatchTable& CSettlingDetails::GetDispatchMap() const {
    using kalvio::automation::ReadOnly;
    static const kalvio::DispatchTable kTable = [this] {
        kalvio::DispatchTable table;
        kalvio::AppendFieldNames(table, FieldRows());
        table.push_back(ReadOnly("SW_CONVERGENCE_NONE", &CSettlingDetails::GetTOLERANCETYPE_NONE));
        table.push_back(ReadOnly("SW_CONVERGENCE_NORMAL", &CSettlingDetails::GetTOLERANCETYPE_NORMAL));
        table.push_back(
            ReadOnly("SW_CONVERGENCE_EXPONENTIAL", &CSettlingDetails::GetTOLERANCETYPE_EXPONENTIAL));
        return table;
    }();
    return kTable;
}
