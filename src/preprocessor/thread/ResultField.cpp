#include "host/HostApplication.h"
#include "host/ResultCatalogue.h"
#include "preprocessor/SettledResult.h"

double* GetResultFieldFromID(int resultID, int detector) {
    const kalvio::ResultRow* row = kalvio::FindResultRow(resultID);
    return row == nullptr ? nullptr : row->field(GetHostApplication(), detector);
}
