// run, and scripts for every command that runs one.

#include "bench/commands/ScriptCommands.h"

#include "bench/commands/ScriptExecution.h"
#include "bench/commands/WithUnit.h"

#include <array>
#include <fstream>

namespace kalvio::bench {

namespace {

constexpr std::size_t kLargestScript = 0x4000000;

// The whole of a stream, which may be a pipe; false when it cannot be read or is no script by its size.
bool ReadAll(std::istream& stream, std::string& text) {
    std::array<char, 0x10000> part{};
    while (stream.read(part.data(), part.size()) || stream.gcount() != 0) {
        text.append(part.data(), static_cast<std::size_t>(stream.gcount()));
        if (text.size() > kLargestScript) {
            return false;
        }
    }
    return stream.eof() && !stream.bad();
}

bool ReadScript(const std::string& file, std::string& text, Terminal& terminal) {
    if (file == kStandardInput && ReadAll(terminal.in, text)) {
        return true;
    }
    std::ifstream stream(file, std::ios::binary);
    if (file != kStandardInput && ReadAll(stream, text)) {
        return true;
    }
    terminal.err << "kalvio-bench: cannot read " << NameOfPlace(file) << std::endl;
    return false;
}

} // namespace

std::optional<ParsedScript> LoadScript(const BenchOptions& options, const ScriptOptions& script,
                                       Terminal& terminal) {
    std::string text;
    if (!ReadScript(script.file, text, terminal)) {
        return std::nullopt;
    }
    ParsedScript parsed = ParseScript(text);
    ScriptAnswers answers({terminal.out, options.json});
    for (const ScriptError& error : parsed.errors) {
        Complain(error, NameOfPlace(script.file), answers, terminal);
    }
    return parsed.errors.empty() ? std::optional(std::move(parsed)) : std::nullopt;
}

int RunParsedScript(BenchApplication& application, const BenchOptions& options, const ScriptOptions& script,
                    const ParsedScript& parsed, Terminal& terminal) {
    return ScriptExecution(application, options, script, terminal).RunAll(parsed);
}

int RunScript(const BenchOptions& options, const ScriptOptions& script, Terminal& terminal) {
    const std::optional<ParsedScript> parsed = LoadScript(options, script, terminal);
    if (!parsed) {
        return kExitScript;
    }
    return WithUnit(options, terminal, {.run = [&](BenchApplication& application) {
                        return RunParsedScript(application, options, script, *parsed, terminal);
                    }});
}

} // namespace kalvio::bench
