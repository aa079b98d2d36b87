#pragma once

// The states of watches and regulations by the names that scenarios use.

#include "preprocessor/EResult.h"

#include <map>
#include <string>

namespace kalvio::test {

inline NPreProcessor::EResult StateNamed(const std::string& name) {
    using namespace NPreProcessor;
    static const std::map<std::string, EResult> kStates{{"None", None},
                                                        {"Working", Working},
                                                        {"Settled", Settled},
                                                        {"NotSettled", NotSettled},
                                                        {"NoData", NoData},
                                                        {"Aborted", Aborted},
                                                        {"Succeeded", Succeeded},
                                                        {"Failed", Failed},
                                                        {"SourceLimit", SourceLimit},
                                                        {"StepTooSmall", StepTooSmall},
                                                        {"MonotonicFailed", MonotonicFailed},
                                                        {"NotConverged", NotConverged},
                                                        {"TimedOut", TimedOut}};
    return kStates.at(name);
}

} // namespace kalvio::test
