#include "reference_host/script/ArraySweep.h"

#include "reference_host/measurement/SettlingRun.h"
#include "reference_host/results/OutcomeTexts.h"
#include "reference_host/script/ChannelPlace.h"
#include "switching/ChannelArray.h"

namespace kalvio::reference_host {

namespace {

constexpr std::uint32_t kSettleTimeoutMs = 5000;

class Sweep {
public:
    Sweep(ReferenceHost& host, const CString& array, const ResultChoice& choice)
        : m_host(host), m_name(array), m_choice(choice) {}

    SweepEnd Run() {
        if (Array() == nullptr) {
            return {Format("there is no channel array \"%s\"", m_name.c_str()), false, {}};
        }
        const int step = Array()->IsStereoArray() != 0 ? 2 : 1;
        // Whoever is told of a frame may take channels or the array itself away.
        for (int channel = 1; Array() != nullptr && channel <= Array()->GetNumChannels(); channel += step) {
            if (!StepTo(static_cast<short>(channel))) {
                break;
            }
        }
        return std::move(m_end);
    }

private:
    [[nodiscard]] CChannelArray* Array() const { return m_host.Network().GetChannelArray(m_name.c_str()); }

    // False: the sweep is over.
    bool StepTo(short channel) {
        const CString place = PlaceOfStep(channel);
        if (const short code = Array()->ExclusiveChannel(channel, 1); code != KVNET_OK) {
            m_end.error = Format("channel %d: %s", channel, LoadText(GetErrorMessageID(code)).c_str());
            return false;
        }
        SettlingRun run(m_host, {m_choice});
        m_end.error = run.Prepare();
        if (!m_end.error.empty()) {
            return false;
        }
        const NPreProcessor::EResult outcome = run.Run(kSettleTimeoutMs);
        m_end.interrupted = outcome == NPreProcessor::Aborted;
        if (!m_end.interrupted) {
            m_end.rows.push_back(RowOf(channel, place, run, outcome));
        }
        return !m_end.interrupted;
    }

    // Of the channel, or of both of a pair.
    [[nodiscard]] CString PlaceOfStep(short channel) const {
        CString text;
        ChannelDetails details;
        const short end = Array()->IsStereoArray() != 0 ? short{2} : short{1};
        for (short place = 0; place < end; ++place) {
            if (Array()->GetChannelDetails(static_cast<short>(channel - 1 + place), details) != 0) {
                text += (text.empty() ? "" : ", ") + PlaceText(details);
            }
        }
        return text;
    }

    [[nodiscard]] SweepRow RowOf(int channel, const CString& place, const SettlingRun& run,
                                 NPreProcessor::EResult outcome) const {
        const bool settled = outcome == NPreProcessor::Settled;
        const double storage = settled ? run.Judgements().front().value : kInvalidResult;
        const SReferences& references = m_host.analyser->references;
        return {channel,
                place,
                {ShownValue(storage, m_choice.unit, references), GetStringForUnit(m_choice.unit),
                 FormatValue(storage, m_choice.unit, references)},
                WordOf(outcome),
                settled};
    }

    ReferenceHost& m_host;
    const CString m_name;
    const ResultChoice m_choice;
    SweepEnd m_end;
};

} // namespace

SweepEnd SweepArray(ReferenceHost& host, const CString& array, const CString& result) {
    return Sweep(host, array, *FindResult(result)).Run();
}

} // namespace kalvio::reference_host
