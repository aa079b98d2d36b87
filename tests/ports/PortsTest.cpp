#include "ports/Ports.h"

#include "host/HostApplication.h"
#include "platform/Window.h"
#include "support/Golden.h"
#include "testing/ScriptedUserInterface.h"

#include <gtest/gtest.h>

namespace kalvio {
namespace {

// Writes down what it is asked for; one property may fail.
class LoggedControl final : public CommunicationsControl {
public:
    LoggedControl(std::vector<CString>& log, int failing) : m_log(log), m_failing(failing) {}
    ~LoggedControl() override { m_log.emplace_back("gone"); }

    AutomationResult GetProperty(CommProperty property) override {
        const int id = static_cast<int>(property);
        m_log.push_back(Format("get %d", id));
        if (id == m_failing) {
            return {AutomationFault::Failed, Format("no %d", id), {}};
        }
        return {AutomationFault::None, {}, m_values[id]};
    }
    AutomationResult SetProperty(CommProperty property, const VARIANT& value) override {
        const int id = static_cast<int>(property);
        m_log.push_back(Format("set %d to ", id) + value.ToJson());
        if (id == m_failing) {
            return {AutomationFault::Refused, Format("no %d", id), {}};
        }
        m_values[id] = value;
        return {};
    }

private:
    std::vector<CString>& m_log;
    int m_failing;
    std::map<int, VARIANT> m_values;
};

class Application final : public CHostApplication {
public:
    Application() : m_previous(InstallHostApplication(this)) {}
    ~Application() override { InstallHostApplication(m_previous); }

    int GetOLEDisplay() override { return display; }
    int GetWindowsVersion() override { return version; }
    std::unique_ptr<CommunicationsControl> CreateCommunicationsControl(CWnd& parent, int id) override {
        log.push_back(Format("\"%s\" %d in %p, control %d, %s", parent.GetText().c_str(),
                             parent.GetDlgCtrlID(), static_cast<void*>(parent.GetParent()), id,
                             parent.IsWindowVisible() ? "visible" : "invisible"));
        return hasControl ? std::make_unique<LoggedControl>(log, failing) : nullptr;
    }

    int display = 1;
    int version = 5;
    bool hasControl = true;
    int failing = 0; // dispatch id
    std::vector<CString> log;

private:
    CHostApplication* m_previous;
};

class Writes final : public PortOutput {
public:
    bool Write(const PortWrite& write) override { return Note("wrote", write); }
    void Refused(const PortWrite& write) override { Note("refused", write); }
    std::vector<CString> log;
    bool works = true;

private:
    bool Note(const char* what, const PortWrite& write) {
        log.push_back(Format("%s %04X %X %d", what, write.port, write.value, write.bytes));
        return works;
    }
};

class PortsTest : public testing::Test {
protected:
    bool Call(const char* name, std::int16_t port) {
        bool answer = false;
        m_ports.Invoke(name, std::array{VARIANT::Short(port)}).value.Get(answer);
        return answer;
    }

    test::ScriptedUserInterface m_user;
    Application m_application;
    CPorts m_ports;
};

TEST_F(PortsTest, CreationOpensOnceAndAReplacedPortGoesFirst) {
    CWnd mainWindow;
    m_application.mainWindow = &mainWindow;
    EXPECT_TRUE(Call("PORTS_CreateSerialPort", 3));
    EXPECT_EQ(m_application.log,
              (std::vector<CString>{Format("\"MSComm Parent Window\" 997 in %p, control 997, invisible",
                                           static_cast<void*>(&mainWindow)),
                                    "set 4 to 3", "set 20 to true", "set 20 to false"}));
    CSerialPort* first = m_ports.GetCurrentSerialPort();
    EXPECT_EQ(m_ports.GetSerialPortDispatchInterface(1), first);
    EXPECT_TRUE(first->SetProperty("sp_portopen", VARIANT::Bool(true)).Ok());
    m_application.log.clear();
    EXPECT_TRUE(Call("PORTS_CreateSerialPort", 3));
    EXPECT_EQ(m_application.log[0], "get 20");
    EXPECT_EQ(m_application.log[1], "set 20 to false");
    EXPECT_EQ(m_application.log[2], "gone");
    EXPECT_EQ(mainWindow.Children().size(), 1U);
    EXPECT_TRUE(m_user.Texts().empty());
    m_ports.OLEDeleteSerialPort(3);
    m_application.mainWindow = nullptr;
}

TEST_F(PortsTest, FailuresLeaveNoPortAndAreToldAsTheyShould) {
    const struct {
        bool hasControl;
        int failing;
        int display;
        std::vector<CString> told;
    } rows[] = {
        {true,
         20,
         1,
         {"Failed to create the Serial port object for port 7 - this is not a valid port number."}},
        {true, 4, 0, {}},
        {false,
         0,
         1,
         {"Failed to create the Serial port object for port 7 - this is not a valid port number."}},
    };
    for (const auto& row : rows) {
        m_application.hasControl = true;
        m_application.failing = 0;
        ASSERT_TRUE(Call("PORTS_CreateSerialPort", 7));
        m_application.hasControl = row.hasControl;
        m_application.failing = row.failing;
        m_application.display = row.display;
        EXPECT_FALSE(Call("PORTS_CreateSerialPort", 7));
        EXPECT_EQ(m_user.Texts(), row.told);
        EXPECT_EQ(m_ports.GetCurrentSerialPort(), nullptr);
        m_user.Clear();
        m_application.display = 0;
        EXPECT_FALSE(Call("PORTS_SetSerialPort", 7)) << "the one before is gone as well";
        EXPECT_EQ(m_user.Texts(),
                  (std::vector<CString>{"Failed to set the Serial port to port 7 - you must use the "
                                        "PORTS_CreateSerialPort method before trying to set the port."}));
        m_user.Clear();
    }
}

TEST_F(PortsTest, TheCurrentPortIsTheOneThatWasSet) {
    ASSERT_TRUE(Call("PORTS_CreateSerialPort", 1));
    ASSERT_TRUE(Call("PORTS_CreateSerialPort", 2));
    EXPECT_EQ(m_ports.GetCurrentSerialPort()->GetPort(), 2);
    EXPECT_TRUE(Call("PORTS_SetSerialPort", 1));
    EXPECT_FALSE(Call("PORTS_SetSerialPort", 3));
    EXPECT_EQ(m_ports.GetCurrentSerialPort()->GetPort(), 1);
    Call("PORTS_DeleteSerialPort", 2);
    EXPECT_EQ(m_ports.GetCurrentSerialPort()->GetPort(), 1);
    Call("PORTS_DeleteSerialPort", 1);
    EXPECT_EQ(m_ports.GetSerialPortDispatchInterface(0), nullptr);
}

TEST_F(PortsTest, PortsAreWrittenWhereTheSystemLetsThem) {
    Writes writes;
    m_application.portOutput = &writes;
    EXPECT_EQ(m_ports.Initialise(), 1);
    EXPECT_EQ(m_ports.PortsEnabled(), 0);
    const std::array arguments{VARIANT::Short(0x378), VARIANT::Short(0x1FF)};
    EXPECT_EQ(m_ports.Invoke("PORTS_WriteValue", arguments).value.ToText(), "false");
    m_application.version = 4;
    m_ports.Initialise();
    EXPECT_EQ(m_ports.Invoke("PORTS_WriteValue", arguments).value.ToText(), "true");
    EXPECT_EQ(m_ports.WriteValue(-1, -2), 1);
    EXPECT_EQ(m_ports.OutputWord(0x80, 0xBEEF), 1);
    writes.works = false;
    EXPECT_EQ(m_ports.OutputDWord(0x80, 0xDEADBEEF), 0);
    EXPECT_EQ(writes.log, (std::vector<CString>{"refused 0378 FF 1", "wrote 0378 FF 1", "wrote FFFF FE 1",
                                                "wrote 0080 BEEF 2", "wrote 0080 DEADBEEF 4"}));
    m_application.portOutput = nullptr;
    EXPECT_EQ(m_ports.OutputByte(0x80, 1), 0);
    EXPECT_TRUE(m_user.Texts().empty());
}

// Each name reaches its property; the browser lists them in the same order.
TEST_F(PortsTest, NamesReachTheirProperties) {
    COLETreeCtrl tree;
    m_ports.PopulateOLETreeCtrl(&tree, nullptr);
    CString text;
    HTREEITEM item = tree.GetChildItem(tree.GetRootItem());
    for (; item->firstChild == nullptr; item = item->nextSibling) {
        text += Format("%s, %d %d\n", item->text.c_str(), item->id, item->flags[1]);
    }
    text += Format("%s, %d\n", item->text.c_str(), item->id);
    item = item->firstChild;
    ASSERT_TRUE(Call("PORTS_CreateSerialPort", 1));
    CSerialPort& port = *m_ports.GetCurrentSerialPort();
    for (const DispatchEntry& entry : port.GetDispatchMap()) {
        m_application.log.clear();
        if (entry.kind == DispatchKind::Property) {
            EXPECT_TRUE(port.SetProperty(entry.name, VARIANT::Short(1)).Ok());
        }
        EXPECT_TRUE(port.GetProperty(entry.name).Ok());
        ASSERT_NE(item, nullptr);
        text += Format("%s, %d: %s %s", item->text.c_str(), item->id, NameOf(entry.result), entry.name);
        for (const CString& line : m_application.log) {
            text += ", " + line;
        }
        text += "\n";
        item = item->nextSibling;
    }
    EXPECT_EQ(item, nullptr);
    test::ExpectGolden(__FILE__, "properties.txt", text);
}

TEST_F(PortsTest, ErrorsOfTheControlReachTheScript) {
    m_application.failing = 23;
    ASSERT_TRUE(Call("PORTS_CreateSerialPort", 1));
    CSerialPort& port = *m_ports.GetCurrentSerialPort();
    EXPECT_EQ(port.SetProperty("SP_Settings", VARIANT::String("x")).text,
              "SP_Settings refused the value: no 23.");
    EXPECT_EQ(port.GetProperty("SP_Settings").text, "\"SP_Settings\" failed: no 23.");
    EXPECT_EQ(port.SetProperty("SP_InBufferSize", VARIANT::Long(70000)).text,
              "\"SP_InBufferSize\" must be of type short, but the value is long 70000.");
}

} // namespace
} // namespace kalvio
