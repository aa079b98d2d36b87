#include "ports/Ports.h"

#include "host/HostApplication.h"
#include "platform/AutomationTable.h"
#include "platform/UserInterface.h"
#include "ports/PortsTexts.h"

namespace {

constexpr int kFirstProtectedVersion = 5;

constexpr kalvio::BrowserEntry kMethods[] = {
    {kalvio::kTextCreateSerialPort, 10202},
    {kalvio::kTextSetSerialPort, 10203},
    {kalvio::kTextDeleteSerialPort, 10204},
};

constexpr int kFolderSerialPort = 10300;
// In the order of the serial port's names; the items follow the folder.
constexpr unsigned kPropertyTexts[] = {12830, 12831, 12832, 12833, 12834, 12835, 12836,
                                       12837, 12838, 12839, 12840, 12841, 12842, 12843,
                                       12845, 12846, 12848, 12849, 12850, 12851, 12852};

void Tell(unsigned text, std::int16_t port) {
    kalvio::ShowMessage(kalvio::FormatText(kalvio::LoadText(text), port));
}

} // namespace

CPorts::~CPorts() {
    m_current = nullptr;
}

int CPorts::Initialise() {
    m_portsEnabled = GetHostApplication().GetWindowsVersion() < kFirstProtectedVersion ? 1 : 0;
    return 1;
}

int CPorts::Write(const kalvio::PortWrite& write) const {
    kalvio::PortOutput* output = GetHostApplication().portOutput;
    if (output == nullptr) {
        return 0;
    }
    if (m_portsEnabled == 0) {
        output->Refused(write);
        return 0;
    }
    return output->Write(write) ? 1 : 0;
}

int CPorts::WriteValue(std::int16_t port, std::int16_t value) const {
    return OutputByte(static_cast<std::uint16_t>(port), static_cast<std::uint8_t>(value & 0xFF));
}

CCmdTarget* CPorts::GetSerialPortDispatchInterface(int) const {
    return m_current;
}

bool CPorts::OLECreateSerialPort(std::int16_t port) {
    OLEDeleteSerialPort(port);
    m_current = nullptr;
    auto created = std::make_unique<CSerialPort>(port);
    if (created->Create() == 0) {
        created.reset(); // before the user is asked anything
        if (GetHostApplication().GetOLEDisplay() != 0) {
            Tell(kalvio::kTextSerialPortNotCreated, port);
        }
        return false;
    }
    m_current = created.get();
    m_serialPorts[port] = std::move(created);
    return true;
}

bool CPorts::OLESetSerialPort(std::int16_t port) {
    const auto found = m_serialPorts.find(port);
    if (found == m_serialPorts.end()) {
        Tell(kalvio::kTextSerialPortNotSet, port);
        return false;
    }
    m_current = found->second.get();
    return true;
}

void CPorts::OLEDeleteSerialPort(std::int16_t port) {
    const auto found = m_serialPorts.find(port);
    if (found == m_serialPorts.end()) {
        return;
    }
    if (m_current == found->second.get()) {
        m_current = nullptr;
    }
    m_serialPorts.erase(found);
}

void CPorts::PopulateOLETreeCtrl(COLETreeCtrl* tree, HTREEITEM parent) const {
    tree->AddEntries(parent, kMethods);
    HTREEITEM folder = tree->AddFolder(parent, kalvio::kTextSerialPort, kFolderSerialPort);
    int id = kFolderSerialPort;
    for (const unsigned text : kPropertyTexts) {
        tree->AddEntry(folder, kalvio::LoadText(text), ++id, kalvio::BrowserKind::Property);
    }
}

const kalvio::DispatchTable& CPorts::GetDispatchMap() const {
    using kalvio::automation::Method;
    static const kalvio::DispatchTable table{
        Method("PORTS_WriteValue", &CPorts::OLEWriteValue),
        Method("PORTS_CreateSerialPort", &CPorts::OLECreateSerialPort),
        Method("PORTS_SetSerialPort", &CPorts::OLESetSerialPort),
        Method("PORTS_DeleteSerialPort", &CPorts::OLEDeleteSerialPort),
    };
    return table;
}
