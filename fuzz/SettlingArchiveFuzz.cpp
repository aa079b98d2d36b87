// The settling document's archive.

#include "ArchiveProperty.h"
#include "settling/SettlingDetails.h"

namespace {

void CheckFields(CSettlingDetails& document) {
    for (int group = 0; group < kSettlingGroups; ++group) {
        const SettlingGroupDetails& details = document.Group(static_cast<SettlingGroup>(group));
        const double values[kSettlingFieldsPerGroup] = {
            static_cast<double>(details.ToleranceType), details.Tolerance,
            static_cast<double>(details.SettlingTime), static_cast<double>(details.NumResults),
            static_cast<double>(details.Average)};
        for (int field = 0; field < kSettlingFieldsPerGroup; ++field) {
            const int index = kSettlingFieldsPerGroup * group + field;
            kalvio::fuzz::Require(values[field] >= document.GetMinValue(index) &&
                                      values[field] <= document.GetMaxValue(index),
                                  "a loaded field lies within its limits");
        }
    }
}

} // namespace

std::vector<kalvio::fuzz::Bytes> kalvio::fuzz::Seeds() {
    const test::TestHost host;
    CSettlingDetails document;
    return {ArchiveSeed(document, 0), ArchiveSeed(document, kApplyUnsaved),
            ArchiveSeed(document, kEarlierVersion), ArchiveSeed(document, kDiscard)};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kalvio::fuzz::LoadsOrRefuses<CSettlingDetails>(data, size, CheckFields);
    return 0;
}
