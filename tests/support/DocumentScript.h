#pragma once

// The windows of a document, act by act. Below each act stand also the hints that it gave the views and the
// fields of the document that it changed. Further acts:
//   choose ID TEXT   set NAME VALUE and get NAME, as a script does   no, the answer to the next question
//   fresh            loads what the document stored at first         update HINT   tells the views
//   send MESSAGE ID  a message in hex about a control to its panel   others ID   the control in other windows
//   closing          the next hint closes the window                 print   what is printed

#include "support/WindowScript.h"

namespace kalvio::test {

class DocumentScript : public WindowScript {
public:
    DocumentScript(TestHost& host, CSettingsData& document, const char* source, const char* name)
        : WindowScript(host, source, name), m_host(host), m_document(document), m_kept(Kept()) {
        CArchive archive;
        document.Serialize(archive);
        m_fresh = archive.Bytes();
        m_observer = host.application.AddViewObserver([this](CView* sender, int hint, void*, int flag) {
            Note("hint " + HintText(sender, hint, flag));
            if (std::exchange(m_closing, false)) {
                dynamic_cast<CTypedFrameWnd&>(*window).Close();
            }
        });
        look = [this] { TellFields(); };
        words["choose"] = [this](const std::string& rest) { Choose(NumberIn(rest), TextIn(rest)); };
        words["set"] = [this](const std::string& rest) {
            const std::string value = rest.substr(rest.find(' '));
            Answer(m_document.SetProperty(rest.substr(0, rest.find(' ')), VARIANT::Double(std::stod(value))));
        };
        words["get"] = [this](const std::string& rest) { Note(m_document.GetProperty(rest).value.ToText()); };
        words["no"] = [this](const std::string&) { m_host.user.QueueAnswer(BoxAnswer::No); };
        words["fresh"] = [this](const std::string&) {
            CString error;
            EXPECT_TRUE(m_document.Load(m_fresh, error)) << error;
            UpdateViews(nullptr, -1, nullptr, 0);
        };
        words["update"] = [](const std::string& rest) { UpdateViews(nullptr, std::stoi(rest), nullptr, 0); };
        words["send"] = [this](const std::string& rest) {
            const auto message = static_cast<unsigned>(std::stoul(rest, nullptr, 16));
            const int id = std::stoi(rest.substr(rest.find(' ')));
            CWnd* const control = FindControl(*window, id);
            CWnd* const panel = control != nullptr ? control->GetParent() : window->Children()[0];
            if (const LRESULT answer = panel->Send(message, static_cast<WPARAM>(id), 0); answer != 0) {
                Note(Format("answers %ld", static_cast<long>(answer)));
            }
        };
        words["others"] = [this](const std::string& rest) {
            for (CTypedFrameWnd* frame : OpenFrames()) {
                if (frame != window) {
                    const CString line = DumpWindow(DescribeWindow(*FindControl(*frame, std::stoi(rest))));
                    Note(line.substr(0, line.size() - 1));
                }
            }
        };
        words["closing"] = [this](const std::string&) { m_closing = true; };
        words["print"] = [this](const std::string&) {
            NotePrint(*this, dynamic_cast<CPrintView&>(*window->Children()[0]));
        };
    }
    ~DocumentScript() { m_host.application.RemoveViewObserver(m_observer); }
    DocumentScript(const DocumentScript&) = delete;
    DocumentScript& operator=(const DocumentScript&) = delete;

private:
    static int NumberIn(const std::string& rest) { return std::stoi(rest); }
    static std::string TextIn(const std::string& rest) { return rest.substr(rest.find(' ') + 1); }

    void Answer(const AutomationResult& result) {
        if (!result.Ok()) {
            Note(result.text);
        }
    }

    void Choose(int id, const std::string& text) {
        const auto* items = dynamic_cast<const CItemControl*>(FindControl(*window, id));
        int index = 0;
        while (items != nullptr && index < items->GetCount() && items->GetLBText(index) != text) {
            ++index;
        }
        const ActOutcome outcome = PerformAct(*window, {ActKind::Choose, id, {}, index});
        if (!outcome.Ok()) {
            Note(outcome.text);
        }
    }

    [[nodiscard]] std::vector<double> Kept() const {
        std::vector<double> values;
        for (const FieldRow& row : m_document.FieldRows()) {
            values.push_back(GetKept(m_document, row));
        }
        return values;
    }

    void TellFields() {
        const std::vector<double> before = std::exchange(m_kept, Kept());
        for (std::size_t i = 0; i < before.size(); ++i) {
            if (m_kept[i] != before[i]) {
                const FieldRow& row = m_document.FieldRows()[i];
                Note(Format("%s = %.10g", row.script != nullptr ? row.script : "-", m_kept[i]));
            }
        }
    }

    TestHost& m_host;
    CSettingsData& m_document;
    std::vector<double> m_kept;
    std::vector<std::uint8_t> m_fresh;
    bool m_closing = false;
    int m_observer = 0;
};

} // namespace kalvio::test
