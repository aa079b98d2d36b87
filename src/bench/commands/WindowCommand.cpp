#include "bench/commands/Commands.h"
#include "bench/commands/WithUnit.h"
#include "bench/output/OutputFile.h"
#include "reference_host/windows/WindowPictures.h"
#include "reference_host/windows/WindowSession.h"

#include <sstream>

namespace kalvio::bench {
namespace {

// "2810 type 0.5": the first word, the second, and the rest.
ActWords SplitAct(const std::string& text) {
    std::istringstream words(text);
    ActWords act;
    words >> act.control >> act.act >> std::ws;
    std::getline(words, act.value);
    return act;
}

std::string RefuseWindowOptions(const WindowOptions& window) {
    if (CString refusal = WindowSession::RefuseName(window.name); !refusal.empty()) {
        return refusal;
    }
    for (const std::string& act : window.acts) {
        if (CString refusal = WindowSession::RefuseAct(SplitAct(act)); !refusal.empty()) {
            return refusal;
        }
    }
    return {};
}

class WindowRun {
public:
    WindowRun(const BenchOptions& options, const WindowOptions& window, Terminal& terminal)
        : m_options(options), m_window(window), m_terminal(terminal), m_svg(window.svgFile) {}

    int Run(BenchApplication& application) {
        if (!m_svg.Open(m_terminal.err)) {
            return kExitRunFailed;
        }
        ReferenceHost& host = application.Host();
        host.Network().FillDeviceList(); // the windows offer the devices that were found
        if (!Succeeded(host.WindowsByName().Open(m_window.name))) {
            return kExitRunFailed;
        }
        for (const std::string& act : m_window.acts) {
            const CString fault = host.WindowsByName().Act(m_window.name, SplitAct(act));
            host.DoMessageLoop();
            if (!Succeeded(fault)) {
                return kExitRunFailed;
            }
        }
        return m_window.print ? Print(host) : Show(host);
    }

private:
    bool Succeeded(const CString& fault) {
        if (!fault.empty()) {
            m_terminal.err << "kalvio-bench: " << fault << std::endl;
        }
        return fault.empty();
    }

    int Print(ReferenceHost& host) {
        std::vector<CString> lines;
        host.WindowsByName().Print(m_window.name, lines);
        for (const CString& line : lines) {
            m_terminal.out << line << '\n';
        }
        return kExitOk;
    }

    int Show(ReferenceHost& host) {
        ControlState state;
        if (!Succeeded(host.WindowsByName().Show(m_window.name, state))) {
            return kExitRunFailed;
        }
        if (m_svg.IsWanted()) {
            m_svg.Stream() << DrawWindowSvg(state);
        }
        if (!m_svg.Close(m_terminal.err)) {
            return kExitRunFailed;
        }
        if (m_options.json) {
            m_terminal.out << WindowJson(state) << std::endl;
        } else {
            m_terminal.out << DrawWindowText(state) << std::flush;
        }
        return kExitOk;
    }

    const BenchOptions& m_options;
    const WindowOptions& m_window;
    Terminal& m_terminal;
    OutputFile m_svg;
};

} // namespace

int RunWindow(const BenchOptions& options, const WindowOptions& window, Terminal& terminal) {
    return WithUnit(options, terminal,
                    {.prepare = [&](ReferenceHost&) { return RefuseWindowOptions(window); },
                     .run =
                         [&](BenchApplication& application) {
                             return WindowRun(options, window, terminal).Run(application);
                         }});
}

} // namespace kalvio::bench
