// Configurations: refused and nothing has changed, or loaded and equal when saved again.

#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "reference_host/application/ReferenceHost.h"
#include "testing/ManualClock.h"

#include <memory>

namespace {

using namespace kalvio;
using namespace kalvio::reference_host;

struct Versions {
    std::uint16_t version, revision, configuration;
};
constexpr Versions kVersions[] = {{101, 99, 21}, {101, 99, 20}, {101, 99, 19}, {101, 99, 18},
                                  {101, 99, 17}, {101, 98, 17}, {100, 98, 10}};

class QuietHost {
public:
    ReferenceHost host{{.unit = UnitKind::None, .peripherals = "none", .threaded = false}};

private:
    test::ManualClock m_clock;
};

// The switches, which of the versions, whether the bytes are a file as they are, then the sections.
ConfigurationFile FileOf(fuzz::FuzzInput& input) {
    const Versions& versions = kVersions[input.Byte() % std::size(kVersions)];
    ConfigurationFile file{versions.version, versions.revision, versions.configuration, {}};
    for (const SectionKind& kind : SectionKinds()) {
        const auto bytes = input.Take(input.Word());
        file.sections.push_back({CString(kind.name), {bytes.begin(), bytes.end()}});
    }
    return file;
}

void LoadsOrRefuses(ReferenceHost& host, const fuzz::Bytes& bytes) {
    const Configuration configuration = host.MakeConfiguration();
    const fuzz::Bytes before = configuration.Store();
    const LoadOutcome outcome = configuration.LoadBytes(bytes);
    const fuzz::Bytes after = configuration.Store();
    if (!outcome.Ok()) {
        for (const Problem& problem : outcome.problems) {
            fuzz::Require(!problem.what.empty() && !problem.ToText().empty(), "a problem says what is wrong");
        }
        fuzz::Require(after == before, "a refused file changes nothing");
        return;
    }
    host.discardStoredValues = false;
    host.applyUnsavedGroups = true;
    fuzz::Require(configuration.LoadBytes(after).Ok(), "what was saved can be loaded");
    fuzz::Require(configuration.Store() == after, "what was loaded is saved as it was");
}

} // namespace

std::vector<fuzz::Bytes> kalvio::fuzz::Seeds() {
    const auto quiet = std::make_unique<QuietHost>();
    ReferenceHost& host = quiet->host;
    host.Network().DefineArray("outputs", 0, 0);
    for (std::uint8_t channel = 0; channel < 8; ++channel) {
        host.Network().AddChannelToArray("outputs", 3, kClassTypeIOSwitcher, 0, 1, channel, 0);
    }
    for (const char* window : {"settling", "arrays", "switcher", "adapter"}) {
        host.WindowsByName().Open(window);
    }
    const Bytes whole = host.MakeConfiguration().Store();
    std::vector<Problem> problems;
    const ConfigurationFile file = Decode(whole, problems);
    std::vector<Bytes> seeds{whole};
    seeds.front().insert(seeds.front().begin(), 4);
    for (std::uint8_t switches = 0; switches < 4; ++switches) {
        Bytes& seed = seeds.emplace_back(Bytes{switches, 0});
        for (const FileSection& section : file.sections) {
            seed.push_back(static_cast<std::uint8_t>(section.bytes.size() & 0xFF));
            seed.push_back(static_cast<std::uint8_t>(section.bytes.size() >> 8));
            seed.insert(seed.end(), section.bytes.begin(), section.bytes.end());
        }
    }
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto quiet = std::make_unique<QuietHost>();
    fuzz::FuzzInput input(data, size);
    const std::uint8_t switches = input.Byte();
    quiet->host.discardStoredValues = (switches & 1) != 0;
    quiet->host.applyUnsavedGroups = (switches & 2) != 0;
    if ((switches & 4) != 0) {
        const auto rest = input.Rest();
        LoadsOrRefuses(quiet->host, {rest.begin(), rest.end()});
    } else {
        LoadsOrRefuses(quiet->host, Encode(FileOf(input)));
    }
    return 0;
}
