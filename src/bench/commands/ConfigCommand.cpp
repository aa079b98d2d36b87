// config: configurations as files.

#include "bench/commands/Commands.h"

#include "bench/commands/WithUnit.h"
#include "platform/Json.h"
#include "reference_host/configuration/Listing.h"
#include "reference_host/configuration/SaveTable.h"

namespace kalvio::bench {

namespace {

void Complain(Terminal& terminal, const CString& file, const std::vector<Problem>& problems) {
    for (const Problem& problem : problems) {
        terminal.err << "kalvio-bench: " << file << ": " << problem.ToText() << std::endl;
    }
}

CString ProblemsJson(const CString& file, const std::vector<Problem>& problems) {
    CString text;
    for (const Problem& problem : problems) {
        text += (text.empty() ? "" : ",") +
                ("{\"section\":" + JsonText(problem.section) + ",\"field\":" + JsonText(problem.field) +
                 ",\"what\":" + JsonText(problem.what) + "}");
    }
    return "{\"file\":" + JsonText(file) + ",\"problems\":[" + text + "]}";
}

// A host without a unit, for what is only looked at.
class QuietHost {
public:
    explicit QuietHost(const BenchOptions& options) : m_host(Options(options)) {
        m_host.applyUnsavedGroups = true; // all that the file holds is shown
    }
    ReferenceHost* operator->() { return &m_host; }

private:
    static ReferenceHostOptions Options(const BenchOptions& options) {
        ReferenceHostOptions host;
        host.unit = UnitKind::None;
        host.peripherals = "none";
        host.threaded = options.host.threaded;
        return host;
    }

    ReferenceHost m_host;
};

// The file's fields; none when it was refused, which is told.
std::optional<std::vector<ListedField>> ListFile(const BenchOptions& options, const CString& file,
                                                 Terminal& terminal) {
    QuietHost host(options);
    KeptLayouts layouts; // windows without a unit would forget what they were about
    Documents documents = host->MakeConfiguration().Parts();
    documents.windows = &layouts;
    const Configuration configuration(documents);
    if (const LoadOutcome outcome = configuration.Load(file); !outcome.Ok()) {
        Complain(terminal, file, outcome.problems);
        return std::nullopt;
    }
    return ListFields(configuration.Parts());
}

int ShowFields(const BenchOptions& options, const std::vector<ListedField>& fields, Terminal& terminal) {
    terminal.out << (options.json ? ListingJson(fields) + "\n" : ListingText(fields)) << std::flush;
    return kExitOk;
}

int Show(const BenchOptions& options, const ConfigOptions& config, Terminal& terminal) {
    if (!config.files.empty()) {
        const auto fields = ListFile(options, config.files.front(), terminal);
        return fields ? ShowFields(options, *fields, terminal) : kExitFile;
    }
    return WithUnit(options, terminal, {.run = [&](BenchApplication& application) {
                        return ShowFields(options, ListFields(application.Host().MakeConfiguration().Parts()),
                                          terminal);
                    }});
}

int Check(const BenchOptions& options, const ConfigOptions& config, Terminal& terminal) {
    QuietHost host(options);
    int code = kExitOk;
    for (const std::string& file : config.files) {
        std::vector<std::uint8_t> bytes;
        std::vector<Problem> problems;
        if (ReadConfigurationFile(file, bytes, problems)) {
            problems = host->MakeConfiguration().Check(bytes);
        }
        code = problems.empty() ? code : kExitFile;
        if (options.json) {
            terminal.out << ProblemsJson(file, problems) << std::endl;
        } else if (problems.empty()) {
            terminal.out << file << ": ok" << std::endl;
        } else {
            Complain(terminal, file, problems);
        }
    }
    return code;
}

int Diff(const BenchOptions& options, const ConfigOptions& config, Terminal& terminal) {
    const auto before = ListFile(options, config.files[0], terminal);
    const auto after = ListFile(options, config.files[1], terminal);
    if (!before || !after) {
        return kExitFile;
    }
    const std::vector<Difference> differences = Compare(*before, *after);
    terminal.out << (options.json ? DifferencesJson(differences) + "\n" : DifferencesText(differences))
                 << std::flush;
    return differences.empty() ? kExitOk : kExitRunFailed;
}

int Save(const BenchOptions& options, const ConfigOptions& config, Terminal& terminal) {
    return WithUnit(options, terminal, {.run = [&](BenchApplication& application) -> int {
                        const Configuration configuration = application.Host().MakeConfiguration();
                        const CString& file = config.files.front();
                        const std::vector<Problem> problems = configuration.Save(file);
                        Complain(terminal, file, problems);
                        if (!problems.empty()) {
                            return kExitRunFailed;
                        }
                        if (config.showGroups) {
                            terminal.out << SaveTableText(configuration.Parts());
                        }
                        terminal.out << (options.json ? "{\"saved\":" + JsonText(file) + "}"
                                                      : "saved " + file)
                                     << std::endl;
                        return kExitOk;
                    }});
}

struct Action {
    const char* name;
    std::size_t fewest; // files
    std::size_t most;
    int (*run)(const BenchOptions&, const ConfigOptions&, Terminal&);
};

constexpr Action kActions[] = {
    {"show", 0, 1, Show}, {"check", 1, 1000, Check}, {"diff", 2, 2, Diff}, {"save", 1, 1, Save}};

} // namespace

int RunConfig(const BenchOptions& options, const ConfigOptions& config, Terminal& terminal) {
    for (const Action& action : kActions) {
        if (config.action != action.name) {
            continue;
        }
        if (config.files.size() >= action.fewest && config.files.size() <= action.most) {
            return action.run(options, config, terminal);
        }
        terminal.err << "kalvio-bench: config " << action.name << " takes "
                     << (action.fewest == action.most ? Format("%zu", action.most)
                                                      : Format("%zu to %zu", action.fewest, action.most))
                     << " files" << std::endl;
    }
    return kExitUsage;
}

int LoadConfiguration(const BenchOptions& options, ReferenceHost& host, Terminal& terminal) {
    host.discardStoredValues = options.discardStored;
    host.applyUnsavedGroups = options.applyUnsaved;
    const Configuration configuration = host.MakeConfiguration();
    if (!options.loadFile.empty()) {
        const LoadOutcome outcome = configuration.Load(options.loadFile);
        Complain(terminal, options.loadFile, outcome.problems);
        if (!outcome.Ok()) {
            return kExitFile;
        }
        for (const CString& each : outcome.notSent) {
            terminal.err << "kalvio-bench: " << options.loadFile << ": loaded, but not sent: " << each
                         << std::endl;
        }
    }
    if (const CString refusal = ChangeSaveTable(configuration.Parts(), options.groups); !refusal.empty()) {
        terminal.err << "kalvio-bench: --groups: " << refusal << std::endl;
        return kExitUsage;
    }
    return kExitOk;
}

} // namespace kalvio::bench
