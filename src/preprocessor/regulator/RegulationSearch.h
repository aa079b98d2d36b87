#pragma once

// A search for the source value that gives the wanted result: takes the points measured one by one and gives
// the next source. No thread, no lock, no host.

#include "preprocessor/RegulationDetails.h"
#include "preprocessor/regulator/RegulationPoint.h"
#include "preprocessor/regulator/StepLimiter.h"

#include <memory>

namespace kalvio::preprocessor {

class RegulationSearch {
public:
    explicit RegulationSearch(const NPreProcessor::RegulationDetails& details);
    virtual ~RegulationSearch() = default;
    RegulationSearch(const RegulationSearch&) = delete;
    RegulationSearch& operator=(const RegulationSearch&) = delete;

    // Judges the point just measured. `error` is how far its result lies outside the window (see
    // ErrorChoice); the searches for a maximum or minimum do not look at it.
    RegulationDecision Next(const RegulationPoint& measured, double error);

    [[nodiscard]] int Phase() const { return m_phase; } // from 1

protected:
    // With m_current set and m_iteration counted.
    virtual RegulationDecision Decide(double error) = 0;

    // The step that a march begins with: the details', or an even part of the span when that is automatic (of
    // the whole range when the span is 0).
    [[nodiscard]] double InitialStep(double span, double parts) const;
    // Moves by a step as far as the limits allow; m_step is then what is left of it.
    void Apply(double step);
    // Working with the step applied, or what too small a step means.
    [[nodiscard]] RegulationDecision CheckedStep(NPreProcessor::RegulationRule rule) const;
    [[nodiscard]] RegulationDecision Finish(NPreProcessor::EResult outcome,
                                            NPreProcessor::RegulationRule rule) const;
    // Since the point before. The target itself counts as crossed from above only.
    [[nodiscard]] bool HasCrossedTarget() const;

    const NPreProcessor::RegulationDetails m_details;
    RegulationPoint m_current;
    RegulationPoint m_previous;
    double m_next = 0.0;
    double m_step = 0.0; // the last step as applied
    int m_iteration = 0;
    int m_phase = 1;
    int m_direction; // NPreProcessor::RegulationDirection
};

// The search for an algorithm (NPreProcessor::RegulationAlgorithm).
[[nodiscard]] std::unique_ptr<RegulationSearch> MakeSearch(const NPreProcessor::RegulationDetails& details);

} // namespace kalvio::preprocessor
