#include "hardware/Transcript.h"

#include "hardware/NotificationProbe.h"
#include "platform/DebugFile.h"
#include "support/ScriptedDriver.h"

namespace kalvio::test {

namespace {

constexpr const char* kCommandNames[] = {
    "?",           "Initialise",       "Terminate",        "MicroGetMem",      "MicroGetBit",
    "DSPGetMem24", "DSPGetBit",        "MicroPutMem",      "MicroPutBit",      "DSPPutMem24",
    "DSPPutBit",   "MicroGetMemBlock", "DSPGetMemBlock24", "MicroPutMemBlock", "DSPPutMemBlock24",
    "MicroFill",   "DSPFill",          "MicroWaitBit",     "DSPWaitBit",       "MicroLoad",
    "FPGALoad",    "DSPLoad",          "DoCommand",        "DSPSendCommand",   "MicroPutBits"};

std::string Replaced(std::string text, const std::string& what, const std::string& by) {
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
        text.replace(at, what.size(), by);
    }
    return text;
}

std::string Shown(const simulator::Exchange& exchange) {
    std::string line = kCommandNames[exchange.command];
    for (std::size_t at = 0; at < exchange.parameters.size(); at += 4) {
        line += " " + ToHex(std::span(exchange.parameters).subspan(at, 4));
    }
    line += exchange.outData.empty() ? "" : " : " + ToHex(exchange.outData);
    line += exchange.expectedInLength == 0 ? "" : Format(" < %u", exchange.expectedInLength);
    return line + (exchange.refused ? Format(" refused %04X", unsigned{exchange.error}) : "");
}

// What one request causes.
class Recorder {
public:
    Recorder(Stage& stage, const std::string& mode) : m_stage(stage), m_mode(mode) {
        if (m_stage.rig != nullptr) {
            Follow();
        }
    }
    ~Recorder() { CDebugFile::SetSink(nullptr); }
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    std::string Finish(std::string result) {
        if (m_followed != nullptr && m_rigs == m_stage.rigs) {
            TakeCommands();
            TakeHostEvents();
            for (const auto& [name, count] : m_counts) {
                m_text += m_mode == "briefly" ? Format("> %s x%d\n", name.c_str(), count) : "";
            }
            const std::uint32_t passed = m_followed->host.clock.TickCount() - m_start;
            result += passed == 0 || m_mode == "advance" ? "" : Format(" (%u ms)", passed);
        }
        return result.empty() ? m_text : WithResult(result.starts_with(' ') ? "=" + result : "= " + result);
    }

private:
    // On the last line if there is room.
    std::string WithResult(const std::string& result) const {
        const std::size_t lastLine = m_text.size() - (m_text.rfind('\n', m_text.size() - 2) + 1);
        const bool joins = !m_text.empty() && lastLine + result.size() <= kReplayLine;
        return (joins ? m_text.substr(0, m_text.size() - 1) + " " : m_text) + result + "\n";
    }

    void Follow() {
        UnitRig& rig = *m_stage.rig;
        m_followed = &rig;
        m_rigs = m_stage.rigs;
        m_start = rig.host.clock.TickCount();
        m_boxes = rig.host.user.Boxes().size();
        rig.unit.ClearLogs();
        rig.host.hints.clear();
        rig.host.mainWindow.messages.clear();
        rig.host.mainWindow.bringUpFailures.clear();
        static_cast<void>(TakeNotifications());
        CDebugFile::SetSink([this](const CString& line) {
            TakeCommands();
            m_text += m_mode.empty() || m_mode == "tracing"
                          ? "trace " + Replaced(line, m_followed->directory.File(""), "@")
                          : "";
        });
    }

    void TakeCommands() {
        const auto exchanges = m_followed->unit.Exchanges();
        std::string line;
        for (; m_taken < exchanges.size(); ++m_taken) {
            const simulator::Exchange& exchange = exchanges[m_taken];
            ++m_counts[kCommandNames[exchange.command]];
            const std::string start = Format("> +%u ", exchange.tick - m_start);
            const std::string shown = Shown(exchange);
            const bool joins = line.starts_with(start) && line.size() + shown.size() + 2 <= kReplayLine;
            m_text += joins || line.empty() || !m_mode.empty() ? "" : line + "\n";
            line = joins ? line + "; " + shown : start + shown;
        }
        m_text += line.empty() || !m_mode.empty() ? "" : line + "\n";
    }

    void TakeHostEvents() {
        TestHost& host = m_followed->host;
        PumpMessages();
        for (const auto& message : host.mainWindow.messages) {
            const bool failure = message.id == kMessageBringUpFailed;
            m_text += Format("message 0x%X %u ", message.id, static_cast<unsigned>(message.wParam)) +
                      (failure ? host.mainWindow.bringUpFailures.at(0) : std::to_string(message.lParam)) +
                      "\n";
        }
        const auto boxes = host.user.Boxes();
        for (; m_boxes < boxes.size(); ++m_boxes) {
            const auto& box = boxes[m_boxes];
            m_text += CString(box.buttons == BoxButtons::YesNo ? "ask" : "box") +
                      (box.icon == BoxIcon::Exclamation ? "! " : " ") + Replaced(box.text, "\n", "\\n") +
                      "\n";
        }
        for (const ViewHint& hint : host.hints) {
            m_text += Format("hint %d\n", hint.hint);
        }
        for (const std::string& notice : TakeNotifications()) {
            m_text += "notice " + notice + "\n";
        }
    }

    Stage& m_stage;
    std::string m_mode;
    std::string m_text;
    UnitRig* m_followed = nullptr;
    int m_rigs = 0;
    std::uint32_t m_start = 0;
    std::map<std::string, int> m_counts;
    std::size_t m_taken = 0;
    std::size_t m_boxes = 0;
};

} // namespace

std::string PlayRequest(Stage& stage, std::string_view request) {
    RequestWords words(request, stage.rig == nullptr ? "" : stage.rig->directory.File(""));
    std::string name = words.Next();
    std::string mode;
    if (name == "quietly" || name == "briefly" || name == "tracing") {
        mode = std::exchange(name, words.Next());
    }
    const auto found = Requests().find(name);
    if (found == Requests().end()) {
        return "no such request\n";
    }
    Recorder recorder(stage, name == "advance" ? name : mode);
    const std::string result = found->second(stage, words);
    return recorder.Finish(result) + (words.More() ? "too many words\n" : "");
}

} // namespace kalvio::test
