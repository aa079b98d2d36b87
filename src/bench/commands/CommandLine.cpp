#include "bench/commands/CommandLine.h"

#include "bench/commands/Commands.h"
#include "bench/commands/ExitCode.h"
#include "bench/commands/Version.h"
#include "platform/Automation.h"
#include "reference_host/regulation/RegulationSetup.h"
#include "reference_host/unit/DeviceOption.h"
#include "reference_host/windows/WindowSession.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <functional>

namespace kalvio::bench {

namespace {

constexpr std::size_t kNearestDistance = 2;   // letters that a mistyped command may differ by
constexpr double kLongestSeconds = 4000000.0; // what a 32-bit tick can count

constexpr const char* kFooter = R"(
Examples:
  kalvio-bench demo
  kalvio-bench --unit none info
  kalvio-bench --trace - --trace-bytes info
  kalvio-bench watch rms freq --dut time=100,noise=0.001 --keep-trying --plot settling.svg
  kalvio-bench regulate --result rms --to 1.0 --in V --source gen-ampl --min 0.1 --max 5
  kalvio-bench run examples/regulate-level.kvs
  kalvio-bench network
  kalvio-bench arrays examples/switch-array.kvs
  kalvio-bench --serial echo run examples/serial.kvs
  echo HW_GetMainTemp | kalvio-bench console --json

Exit codes:
  0    ok
  1    the run failed: not settled, timed out, not regulated, not as expected, a file could not be written
  2    the command line was wrong
  3    the unit did not come up
  4    a script could not be read, or a line of it was wrong or failed
  5    another file could not be read, or was refused for what it holds
  130  interrupted)";

std::string Join(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : ", ") + word;
    }
    return text;
}

struct UnitWord {
    const char* word;
    UnitKind kind;
};

constexpr std::array kUnitWords{UnitWord{"simulated", UnitKind::Simulated}, UnitWord{"none", UnitKind::None},
                                UnitWord{"absent", UnitKind::Absent}};

class CommandLine {
public:
    CommandLine(Terminal& terminal, bool threaded) : m_terminal(terminal) {
        m_options.host.threaded = threaded;
        m_app.require_subcommand(1);
        m_app.set_version_flag("--version", std::string("kalvio-bench ") + kVersion);
        m_app.footer(kFooter);
        AddCommon(m_app);
        AddUnit(m_app);
        AddDemo();
        AddInfo();
        AddAdapter();
        AddRun();
        AddConsole();
        AddWatch();
        AddRegulate();
        AddWindow();
        AddNetwork();
        AddArrays();
        AddFirmware();
        AddDownload();
        AddConfig();
    }

    int Run(std::vector<std::string> arguments) {
        std::reverse(arguments.begin(), arguments.end()); // the parser takes them from the back
        try {
            m_app.parse(arguments);
        } catch (const CLI::RequiredError& error) {
            // The parser asks for a command before it looks at words that are none.
            const std::vector<std::string> unknown = m_app.remaining();
            if (unknown.empty()) {
                return TellUsage(error);
            }
            m_terminal.err << "kalvio-bench: unknown command \"" << unknown.front() << "\"; there are "
                           << Join(CommandNames()) << Nearest(unknown.front()) << std::endl;
            return kExitUsage;
        } catch (const CLI::ParseError& error) {
            return TellUsage(error);
        }
        ApplySeed();
        return m_command();
    }

private:
    int TellUsage(const CLI::ParseError& error) {
        return m_app.exit(error, m_terminal.out, m_terminal.err) == 0 ? kExitOk : kExitUsage;
    }

    [[nodiscard]] std::vector<std::string> CommandNames() const {
        std::vector<std::string> names;
        for (const CLI::App* command : m_app.get_subcommands(nullptr)) {
            names.push_back(command->get_name());
        }
        return names;
    }

    // "; did you mean network?" when a command is near.
    [[nodiscard]] std::string Nearest(const std::string& word) const {
        std::size_t best = kNearestDistance + 1;
        std::string nearest;
        for (const std::string& name : CommandNames()) {
            if (const std::size_t distance = EditDistance(word, name, best); distance < best) {
                best = distance;
                nearest = "; did you mean " + name + "?";
            }
        }
        return nearest;
    }

    void AddUnit(CLI::App& app) {
        app.add_option_function<std::string>(
               "--unit", [this](const std::string& word) { TakeUnit(word); },
               "simulated (default); none: go on without hardware; absent: not plugged in, the access "
               "dialog asks")
            ->type_name("KIND");
    }

    void TakeUnit(const std::string& word) {
        const auto* found = std::find_if(kUnitWords.begin(), kUnitWords.end(),
                                         [&word](const UnitWord& each) { return each.word == word; });
        if (found == kUnitWords.end()) {
            throw CLI::ValidationError("--unit", "\"" + word + "\" is neither simulated, none nor absent");
        }
        m_options.host.unit = found->kind;
    }

    void AddCommon(CLI::App& app) {
        app.add_option("--trace", m_options.traceFile,
                       "Write every exchange with the unit to a file, one line each; - for standard error");
        app.add_flag("--trace-bytes", m_options.traceBytes,
                     "Add the bytes in hex to the trace (to standard error without --trace)");
        auto* yes = app.add_flag_callback(
            "--yes", [this] { m_options.answers = Answers::Yes; },
            "Answer questions with yes; the access dialog with continue without hardware");
        auto* no = app.add_flag_callback(
            "--no", [this] { m_options.answers = Answers::No; },
            "Answer questions with no; the access dialog with exit");
        yes->excludes(no);
        app.add_option("--registry", m_options.host.registryFile,
                       "Keep the registry in this file (default: memory only)");
        app.add_flag("--json", m_options.json, "Answer in JSON");
        app.add_option_function<std::string>(
               "--dut", [this](const std::string& text) { TakeDevice(text); },
               "Device under test of the simulated unit: " + DeviceOptionHelp())
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
        app.add_option_function<std::string>(
               "--peripherals", [this](const std::string& text) { TakePeripherals(text); },
               "On the simulated unit's bus, for example switcher@3,keda@8:rate=96000, or none (default " +
                   m_options.host.peripherals + ")")
            ->type_name("LIST");
        app.add_option_function<std::vector<std::string>>(
               "--serial", [this](const std::vector<std::string>& texts) { TakeSerial(texts); },
               "Serial port N is this device, as 1=/dev/ttyUSB0, or the built-in instrument, as 1=echo; echo "
               "alone for port 1. May be given again (default: the N-th device of the computer)")
            ->type_name("N=DEVICE")
            ->allow_extra_args(false);
        app.add_flag_callback(
            "--port-device", [this] { m_options.host.ports.portDevice = kSystemPortDevice; },
            "Write to I/O ports through " + std::string(kSystemPortDevice) +
                ", which takes the rights for it (default: writes are not made, only traced)");
        app.add_option("--load", m_options.loadFile, "Load a configuration once the unit is up")
            ->type_name("FILE");
        app.add_flag("--discard", m_options.discardStored,
                     "Drop the values of configurations that are loaded");
        app.add_flag("--apply-unsaved", m_options.applyUnsaved,
                     "Apply also the values of groups that a configuration was saved without");
        app.add_option("--seed", m_seed, "Seed of the device's noise");
        app.add_option("--security", m_options.host.securityLevel,
                       "The user's security level, 0 to 4 (default 4); 3 and 4 may write calibration")
            ->check(CLI::Range(0, 4));
    }

    void TakeSerial(const std::vector<std::string>& texts) {
        for (const std::string& text : texts) {
            if (const std::string error = ParseSerialOption(text, m_options.host.ports); !error.empty()) {
                throw CLI::ValidationError("--serial", error);
            }
        }
    }

    void TakePeripherals(const std::string& text) {
        if (const std::string error = simulator::ParsePeripherals(text).error; !error.empty()) {
            throw CLI::ValidationError("--peripherals", error);
        }
        m_options.host.peripherals = text;
    }

    void TakeDevice(const std::string& text) {
        if (const std::string error = ParseDeviceOption(text, m_options.host.device); !error.empty()) {
            throw CLI::ValidationError("--dut", error);
        }
    }

    void ApplySeed() {
        m_options.host.device.seed = m_seed;
        if (m_options.traceBytes && m_options.traceFile.empty()) {
            m_options.traceFile = "-";
        }
    }

    CLI::App& AddCommand(const char* name, const char* help, std::function<int()> command) {
        CLI::App& app = *m_app.add_subcommand(name, help);
        AddCommon(app);
        AddUnit(app);
        app.callback([this, command = std::move(command)] { m_command = command; });
        return app;
    }

    void AddDemo() {
        CLI::App& app = AddCommand(
            "demo", "Bring a unit up, watch a result settle, regulate a level, find a peak, switch an array",
            [this] { return RunDemo(m_options, m_demo, m_terminal); });
        app.add_option("--out", m_demo.directory, "Directory for the plots (default ./demo)");
        app.footer("\nExample:\n  kalvio-bench demo --out plots --trace trace.txt");
    }

    void AddInfo() {
        AddCommand("info", "Versions, serial numbers, calibration, temperatures", [this] {
            return RunInfo(m_options, m_terminal);
        }).footer("\nExample:\n  kalvio-bench info --json");
    }

    void AddAdapter() {
        CLI::App& app = AddCommand("adapter", "The whole state of a KEDA adapter",
                                   [this] { return RunAdapter(m_options, m_adapter, m_terminal); });
        app.add_option("--address", m_adapter.address, "Its address on the bus, 0 to 63 (default 8)")
            ->check(CLI::Range(0, 63));
        app.add_flag("--from-unit", m_adapter.fromUnit,
                     "Read the registers back and mark what differs from the image");
        app.footer("\nExample:\n  kalvio-bench adapter --address 8 --from-unit");
    }

    void AddRun() {
        CLI::App& app = AddCommand("run", "Run a script of automation calls",
                                   [this] { return RunScript(m_options, m_script, m_terminal); });
        app.add_option("file", m_script.file, "The script; - for standard input")->required();
        app.add_flag("--quiet", m_script.quiet, "Show only what the script prints");
        app.footer("\nOne call a line: Name(argument, ...) or Name argument, ...; a name alone reads a\n"
                   "property or calls a method; Name = value sets; # begins a comment. Words:\n"
                   "  print \"text\", NAME, ...     texts and values on a line\n"
                   "  read RESULT                 measures a result, as rms, in its usual unit\n"
                   "  source SOURCE               what a source, as gen-ampl, is set to\n"
                   "  expect VALUE within A B     ends the script with code 1 unless it lies there\n"
                   "  sweep \"ARRAY\", read RESULT  lets a result settle at every channel of an array;\n"
                   "                              a table, and code 1 when it did not settle everywhere\n"
                   "  wait MS, wait-regulation\n"
                   "  save FILE, load FILE        all settings in a file and from one\n"
                   "read and source stand for values too, as in print. The whole file is checked first.\n"
                   "\nExample:\n  kalvio-bench run examples/calibration.kvs");
    }

    void AddConsole() {
        CLI::App& app = AddCommand("console", "The same lines from standard input or a terminal",
                                   [this] { return RunConsole(m_options, m_script, m_terminal); });
        app.add_flag("--strict", m_script.strict, "End with code 4 when a line was faulty");
        app.footer(
            "\nOn a terminal lines are edited, with a history and completion of names by the tab key, and "
            "Ctrl-C\n"
            "ends a wait. Words besides those of run:\n"
            "  help, help NAME             what can be typed; a name's type, limits and choices\n"
            "  names [PATTERN]             the names, those that hold a text or match * and ?\n"
            "  quit\n"
            "With --json every line gives one record.\n"
            "\nExample:\n  printf 'HW_GetMainTemp\\nREG_Timeout = 20\\n' | kalvio-bench console --json");
    }

    static void AddGenerator(CLI::App& app, GeneratorOptions& generator) {
        app.add_option("--level", generator.volts, "Generator level at the start, volts (default 1)");
        app.add_option("--frequency", generator.hertz,
                       "Generator frequency at the start, hertz (default 1000)");
    }

    void TakeResults(const std::vector<std::string>& names) {
        for (const std::string& name : names) {
            const std::optional<ResultChoice> choice = FindResult(name);
            if (!choice) {
                throw CLI::ValidationError("RESULT",
                                           "\"" + name + "\" is no result; there are " + Join(ResultNames()));
            }
            m_watch.results.push_back(*choice);
        }
    }

    void AddWatch() {
        CLI::App& app = AddCommand("watch", "Watch results until they settle, and say why",
                                   [this] { return RunWatch(m_options, m_watch, m_terminal); });
        app.add_option_function<std::vector<std::string>>(
               "RESULT", [this](const std::vector<std::string>& names) { TakeResults(names); },
               "Results to watch: " + Join(ResultNames()))
            ->required();
        app.add_option("--in", m_watch.unit, "Unit to show the values in (default: each result's own)");
        app.add_option("--csv", m_watch.csvFile, "Write the samples to this file");
        app.add_option("--plot", m_watch.plotFile,
                       "Draw values, tolerance and the moment of settling into this SVG file");
        app.add_flag("--keep-trying", m_watch.keepTrying,
                     "Start again when results do not settle, until the time-out");
        app.add_flag("--follow", m_watch.follow,
                     "Go on after the verdict, until Ctrl-C (code 130) or the time-out (code 1)");
        AddSeconds(app, "--timeout", "Give up after so many seconds (default 10)");
        AddSettling(app);
        AddGenerator(app, m_watch.generator);
        app.footer(
            "\nExamples:\n  kalvio-bench watch rms freq --csv samples.csv\n"
            "  kalvio-bench watch rms --dut time=200 --type normal --tolerance 0.5 --in dBu --keep-trying\n"
            "  kalvio-bench watch fft:2 frame-rate");
    }

    void AddSeconds(CLI::App& app, const char* name, const char* help) {
        app.add_option_function<double>(
               name,
               [this](double seconds) { m_watch.timeoutMs = static_cast<std::uint32_t>(seconds * 1000.0); },
               help)
            ->check([](const std::string& text) {
                double seconds = 0.0;
                const bool fits =
                    CLI::detail::lexical_cast(text, seconds) && seconds >= 0.0 && seconds <= kLongestSeconds;
                return fits ? std::string() : Format("takes 0 to %.0f seconds", kLongestSeconds);
            });
    }

    void AddSettling(CLI::App& app) {
        SettlingOptions& settling = m_watch.settling;
        app.add_option("--tolerance", settling.tolerance, "Settling tolerance in percent");
        app.add_option("--type", settling.type, "Settling test")
            ->check(CLI::IsMember({"none", "normal", "exponential"}));
        app.add_option("--count", settling.count, "How many results must agree, 1 to 10");
        app.add_option("--time", settling.time, "Dead time after the start in milliseconds, 0 to 5000");
        app.add_flag("--average", settling.average, "The settled value is the mean");
    }

    static void AddWords(CLI::App& app, const char* option, std::string& value, const char* help) {
        app.add_option(std::string("--") + option, value, help)->check(CLI::IsMember(ChoiceWords(option)));
    }

    void AddRegulate() {
        RegulationSetup& setup = m_regulate.setup;
        CLI::App& app = AddCommand("regulate", "Bring a result to a value by varying a source",
                                   [this] { return RunRegulate(m_options, m_regulate, m_terminal); });
        app.add_option("--result", setup.result, "rms (default), freq, phase, ct or fft:N");
        app.add_option("--to", setup.to, "The value to reach");
        app.add_option("--in", setup.unit, "Unit of the value, as V, dBu, Hz");
        app.add_option("--tolerance", setup.tolerance, "How near is near enough; its unit follows the type");
        AddWords(app, "tolerance-type", setup.toleranceType, "In the result's unit, or in percent");
        AddWords(app, "channel", setup.channel, "Channel of the result");
        AddWords(app, "type", setup.type, "A value, the largest or the smallest value");
        AddWords(app, "trend", setup.trend, "How the result varies with the source");
        AddWords(app, "source", setup.source, "What to vary (default gen-ampl)");
        app.add_option("--source-in", setup.sourceUnit, "Unit of the source's limits and step");
        app.add_option("--min", setup.minimum, "Lower limit of the source");
        app.add_option("--max", setup.maximum, "Upper limit of the source");
        app.add_option("--step", setup.step, "Size of the first step (default: automatic)");
        AddWords(app, "direction", setup.direction, "Direction of the first step");
        app.add_option("--sensitivity", setup.sensitivity, "Sensitivity of max and min in percent");
        app.add_option("--timeout", setup.timeout, "Give up after so many seconds, 1 to 3600 (default 10)")
            ->check(CLI::Range(1, 3600));
        app.add_option("--plot", m_regulate.plotFile, "Draw the steps into this SVG file");
        AddGenerator(app, m_regulate.generator);
        app.footer(
            "\nExamples:\n"
            "  kalvio-bench regulate --result rms --to 1.0 --in V --source gen-ampl --min 0.1 --max 5 \\\n"
            "      --dut gain=0.5,noise=0.001 --tolerance 0.01\n"
            "  kalvio-bench regulate --type max --source gen-freq --min 500 --max 10000 --dut "
            "resonance=3200:4\n"
            "\nThe exit code is 0 when the regulation succeeded and 1 when it ended otherwise.");
    }

    void AddWindow() {
        CLI::App& app = AddCommand("window", "Show a window of the library",
                                   [this] { return RunWindow(m_options, m_window, m_terminal); });
        app.add_option("NAME", m_window.name, "One of " + Join(WindowSession::Names()))->required();
        app.add_option("--act", m_window.acts,
                       "Do what a user does before it is shown: \"CONTROL ACT VALUE\" with the control's id, "
                       "one of " +
                           Join(WindowSession::ActNames()) +
                           ", and a value where it takes one; may be repeated")
            ->allow_extra_args(false);
        app.add_option("--svg", m_window.svgFile, "Draw the window into this SVG file");
        app.add_flag("--print", m_window.print, "What the window prints instead of the window");
        app.footer("\nExamples:\n  kalvio-bench window settling\n"
                   "  kalvio-bench window adapter --act \"2555 choose 8\" --svg adapter.svg");
    }

    void AddConfig() {
        CLI::App& app = AddCommand("config", "Show, check, compare and save configurations",
                                   [this] { return RunConfig(m_options, m_config, m_terminal); });
        app.add_option(
               "ACTION", m_config.action,
               "show [FILE], check FILE..., diff FILE FILE, save FILE; show without a file shows what "
               "the host holds")
            ->required()
            ->check(CLI::IsMember({"show", "check", "diff", "save"}));
        app.add_option("FILE", m_config.files, "Configurations");
        app.add_option_function<std::string>(
               "--groups",
               [this](const std::string& changes) {
                   m_config.showGroups = true;
                   m_options.groups = changes == "show" ? std::string() : changes;
               },
               "Show the save table, or change it before saving: --groups=301=off,regulation=on,all=on")
            ->type_name("LIST|show");
        app.footer("\nExamples:\n  kalvio-bench config save bench.kvc --groups 301=off\n"
                   "  kalvio-bench config check bench.kvc\n"
                   "  kalvio-bench watch rms --load bench.kvc\n"
                   "\nThe exit code of check is 0 or 5; that of diff 0, 1 when there are differences, or 5.");
    }

    void AddNetwork() {
        AddCommand("network", "Scan the peripheral network and list what answers", [this] {
            return RunNetwork(m_options, m_terminal);
        }).footer("\nExample:\n  kalvio-bench network --peripherals switcher@3,switcher@4:hw=C,loader@9");
    }

    void AddArrays() {
        CLI::App& app = AddCommand("arrays", "Show the crosspoint table of the channel arrays",
                                   [this] { return RunArrays(m_options, m_arrays, m_terminal); });
        app.add_option("script", m_arrays.script,
                       "Runs first, to define arrays and switch them; - for standard input");
        app.add_flag("--csv", m_arrays.csv, "As comma-separated values, one line a channel");
        app.footer("\nExample:\n  kalvio-bench arrays examples/switch-array.kvs --csv");
    }

    void AddFirmware() {
        CLI::App& app = AddCommand("firmware", "Check a firmware file and tell what it holds; needs no unit",
                                   [this] { return RunFirmware(m_options, m_download.file, m_terminal); });
        app.add_option("file", m_download.file, "The firmware file")->required();
        app.footer("\nThe exit code is 5 for a file with a fault, whose offset is told.");
    }

    void AddDownload() {
        CLI::App& app = AddCommand("download", "Send a firmware file to a peripheral",
                                   [this] { return RunDownload(m_options, m_download, m_terminal); });
        app.add_option("file", m_download.file, "The firmware file")->required();
        app.add_option("--address", m_download.address, "Of the peripheral, 0 to 63")
            ->required()
            ->check(CLI::Range(0, 63));
        app.footer("\nCtrl-C cancels. Exit codes: 0 sent, 5 the file was refused before anything was sent,\n"
                   "1 the peripheral is not there or did not take it, 130 cancelled.\n"
                   "\nExample:\n  kalvio-bench download firmware.bin --address 9 --peripherals loader@9");
    }

    Terminal& m_terminal;
    CLI::App m_app{"Reference host of the Kalvio audio analyser's hardware library", "kalvio-bench"};
    BenchOptions m_options;
    std::uint32_t m_seed = 1;
    AdapterOptions m_adapter;
    DemoOptions m_demo;
    ScriptOptions m_script;
    WatchOptions m_watch;
    RegulateOptions m_regulate;
    ConfigOptions m_config;
    WindowOptions m_window;
    ArraysOptions m_arrays;
    DownloadOptions m_download;
    std::function<int()> m_command;
};

} // namespace

int RunCommandLine(const std::vector<std::string>& arguments, Terminal& terminal, bool threaded) {
    return CommandLine(terminal, threaded).Run(arguments);
}

} // namespace kalvio::bench
