// What scripts reach of the hardware object, and its entries in the automation browser.

#include "hardware/HardwareParts.h"
#include "hardware/HardwareTexts.h"
#include "host/HostApplication.h"
#include "platform/AutomationTable.h"

#include <utility>

using namespace kalvio;

namespace {

using Short = std::int16_t;
using Long = std::int32_t;
using CalibDate = bool(VARIANT*, VARIANT*, VARIANT*, VARIANT*, VARIANT*, VARIANT*);

// Calls an operation with a script's arguments, each cast to the operation's own type, and casts the answer
// to the script's type: bytes and words become shorts, statuses BOOLs, and a long gives its low 16 bits.
template<typename Signature>
struct ScriptCall;

template<typename Result, typename... Types>
struct ScriptCall<Result(Types...)> {
    template<typename Native, typename... Parameters>
    static auto Of(Native (CHardware::*operation)(Parameters...)) {
        return Caller<Parameters...>(operation, std::index_sequence_for<Types...>{});
    }

    template<typename Native, typename... Parameters>
    static auto Of(Native (CHardware::*operation)(Parameters...) const) {
        return Caller<Parameters...>(operation, std::index_sequence_for<Types...>{});
    }

    static constexpr AutomationType kResult = automation::TypeOf<Result>::value;
    static std::vector<AutomationType> Parameters() { return {automation::TypeOf<Types>::value...}; }

private:
    template<typename... Parameters, typename Operation, std::size_t... Index>
    static auto Caller(Operation operation, std::index_sequence<Index...>) {
        return [operation](CCmdTarget& object, [[maybe_unused]] std::span<const VARIANT> arguments) {
            auto& hardware = static_cast<CHardware&>(object);
            return automation::TypeOf<Result>::Make(static_cast<Result>((hardware.*operation)(
                static_cast<Parameters>(automation::Take<Types>(arguments[Index]))...)));
        };
    }
};

// A method with the signature that scripts see.
template<typename Signature, typename Operation>
DispatchEntry Script(const char* name, Operation operation) {
    DispatchEntry entry;
    entry.name = name;
    entry.result = ScriptCall<Signature>::kResult;
    entry.parameters = ScriptCall<Signature>::Parameters();
    entry.call = ScriptCall<Signature>::Of(operation);
    return entry;
}

DispatchTable MakeTable() {
    return {
        Script<double()>("HW_GetMainTemp", &CHardware::GetMainBoardTemperature),
        Script<double()>("HW_GetAnalogueTemp", &CHardware::GetAnalogueBoardTemperature),
        Script<Short()>("HW_GetMainUnitSerialNum", &CHardware::GetMainBoardUnitSerialNum),
        Script<Short()>("HW_GetAnalogueUnitSerialNum", &CHardware::GetAnalogueUnitSerialNum),
        Script<bool(Long)>("HW_SetMainUnitSerialNum", &CHardware::SetMainBoardUnitSerialNum),
        Script<bool(Long)>("HW_SetAnalogueUnitSerialNum", &CHardware::SetAnalogueUnitSerialNum),
        Script<bool(Short, Short)>("HW_SetMainCalibByte", &CHardware::SetMainBoardCalibrationByte),
        Script<bool(Short, double)>("HW_SetMainCalibValue", &CHardware::SetMainBoardCalibrationValue),
        Script<bool(Short, Short, CString)>("HW_SetMainCalibString",
                                            &CHardware::SetMainBoardCalibrationString),
        Script<bool(Short, Short)>("HW_SetAnalogueCalibByte", &CHardware::SetAnalogueCalibrationByte),
        Script<bool(Short, double)>("HW_SetAnalogueCalibValue", &CHardware::SetAnalogueCalibrationValue),
        Script<bool(Short, Short, CString)>("HW_SetAnalogueCalibString",
                                            &CHardware::SetAnalogueCalibrationString),
        Script<Short(Short)>("HW_GetMainCalibByte", &CHardware::GetMainBoardCalibrationByte),
        Script<double(Short)>("HW_GetMainCalibValue", &CHardware::GetMainBoardCalibrationValue),
        Script<CString(Short, Short)>("HW_GetMainCalibString", &CHardware::GetMainBoardCalibrationString),
        Script<Short(Short)>("HW_GetAnalogueCalibByte", &CHardware::GetAnalogueCalibrationByte),
        Script<double(Short)>("HW_GetAnalogueCalibValue", &CHardware::GetAnalogueCalibrationValue),
        Script<CString(Short, Short)>("HW_GetAnalogueCalibString", &CHardware::GetAnalogueCalibrationString),
        Script<bool()>("HW_WriteMainTable", &CHardware::WriteMainBoardTable),
        Script<bool()>("HW_WriteAnalogueTable", &CHardware::WriteAnalogueTable),
        Script<bool()>("HW_WriteMainMasterTable", &CHardware::WriteMainBoardMasterTable),
        Script<bool()>("HW_WriteAnalogueMasterTable", &CHardware::WriteAnalogueMasterTable),
        Script<CalibDate>("HW_GetMainCalibDate", &CHardware::GetMainBoardCalibrationDate),
        Script<CalibDate>("HW_GetAnalogueCalibDate", &CHardware::GetAnalogueCalibrationDate),
        Script<Short()>("HW_GetMainCalibVersion", &CHardware::GetMainBoardCalibrationVersion),
        Script<Short()>("HW_GetAnalogueCalibVersion", &CHardware::GetAnalogueCalibrationVersion),
        Script<bool(Short)>("HW_SetMainCalibVersion", &CHardware::SetMainBoardCalibrationVersion),
        Script<bool(Short)>("HW_SetAnalogueCalibVersion", &CHardware::SetAnalogueCalibrationVersion),
        Script<CString()>("HW_GetMainCalibOrganisation", &CHardware::GetMainBoardCalibrationOrganisation),
        Script<CString()>("HW_GetMainCalibOperator", &CHardware::GetMainBoardCalibrationOperator),
        Script<CString()>("HW_GetAnalogueCalibOrganisation", &CHardware::GetAnalogueCalibrationOrganisation),
        Script<CString()>("HW_GetAnalogueCalibOperator", &CHardware::GetAnalogueCalibrationOperator),
        Script<bool(CString)>("HW_SetMainCalibOrganisation", &CHardware::SetMainBoardCalibrationOrganisation),
        Script<bool(CString)>("HW_SetMainCalibOperator", &CHardware::SetMainBoardCalibrationOperator),
        Script<bool(CString)>("HW_SetAnalogueCalibOrganisation",
                              &CHardware::SetAnalogueCalibrationOrganisation),
        Script<bool(CString)>("HW_SetAnalogueCalibOperator", &CHardware::SetAnalogueCalibrationOperator),
        Script<Short()>("HW_GetMainHWVersion", &CHardware::GetMainBoardHardwareVersion),
        Script<Short()>("HW_GetMainHWOptions", &CHardware::GetMainBoardHardwareOptions),
        Script<Short()>("HW_GetMainSWVersion", &CHardware::GetMainBoardSoftwareVersion),
        Script<CString()>("HW_GetMainSWVersionLetter", &CHardware::GetMainBoardSoftwareVersionLetter),
        Script<Short()>("HW_GetAnalogueHWVersion", &CHardware::GetAnalogueHardwareVersion),
        Script<Short()>("HW_GetAnalogueHWOptions", &CHardware::GetAnalogueHardwareOptions),
        Script<Short()>("HW_GetAnalogueSWVersion", &CHardware::GetAnalogueSoftwareVersion),
        Script<CString()>("HW_GetAnalogueSWVersionLetter", &CHardware::GetAnalogueSoftwareVersionLetter),
        Script<Short(Short, Short)>("HW_MicroGetMem", &CHardware::OLEMicroGetMem),
        Script<bool(Short, Short, Short)>("HW_MicroPutMem", &CHardware::OLEMicroPutMem),
        Script<bool(Short, Short, Long, Long)>("HW_DSPPutMem", &CHardware::OLEDSPPutMem),
        Script<Long(Short, Short, Long)>("HW_DSPGetMem", &CHardware::OLEDSPGetMem),
        automation::ReadOnly("HW_TDACJitterStart", &CHardware::GetTDACJitterStart),
        automation::ReadOnly("HW_TDACJitterEnd", &CHardware::GetTDACJitterEnd),
        automation::ReadOnly("HW_TDACHalfUI", &CHardware::GetTDACHalfUI),
    };
}

// Scripts number the memory spaces and the DSPs from 1.
constexpr std::array<std::uint8_t, 3> kMicroSpaces{kSpaceX, kSpaceS, kSpaceI2c};
constexpr std::array<std::uint8_t, 2> kDspSpaces{kSpaceX, kSpaceY};
constexpr std::array<std::uint8_t, 2> kDsps{0, 1};

template<std::size_t Count>
const std::uint8_t* Numbered(const std::array<std::uint8_t, Count>& choices, Short number) {
    const bool exists = number >= 1 && static_cast<std::size_t>(number) <= Count;
    return exists ? &choices[static_cast<std::size_t>(number) - 1] : nullptr;
}

constexpr BrowserEntry kOpenEntries[] = {
    {kTextHelpGetMainTemp, 10162}, {kTextHelpGetAnalogueTemp, 10163}, {kTextHelpGetMainUnitSerialNum, 10136}};
constexpr BrowserEntry kGuardedEntries[] = {
    {kTextHelpGetMainCalibDate, 10131},
    {kTextHelpGetMainCalibVersion, 10132},
    {kTextHelpGetMainHWVersion, 10150},
    {kTextHelpGetMainHWOptions, 10151},
    {kTextHelpGetMainSWVersion, 10152},
    {kTextHelpGetMainSWVersionLetter, 10153},
    {kTextHelpGetMainCalibOrganisation, 10140},
    {kTextHelpGetMainCalibOperator, 10141},
    {kTextHelpGetAnalogueCalibDate, 10130},
    {kTextHelpGetAnalogueCalibVersion, 10133},
    {kTextHelpGetAnalogueUnitSerialNum, 10137},
    {kTextHelpGetAnalogueHWVersion, 10154},
    {kTextHelpGetAnalogueHWOptions, 10155},
    {kTextHelpGetAnalogueSWVersion, 10156},
    {kTextHelpGetAnalogueSWVersionLetter, 10157},
    {kTextHelpGetAnalogueCalibOrganisation, 10142},
    {kTextHelpGetAnalogueCalibOperator, 10143},
    {kTextHelpTDACHalfUI, 10170, BrowserKind::Property},
    {kTextHelpTDACJitterStart, 10171, BrowserKind::Property},
    {kTextHelpTDACJitterEnd, 10172, BrowserKind::Property},
    {kTextHelpMicroGetMem, 10158},
    {kTextHelpMicroPutMem, 10159},
    {kTextHelpDSPGetMem, 10161},
    {kTextHelpDSPPutMem, 10160},
    {kTextHelpSetMainCalibVersion, 10134},
    {kTextHelpSetMainUnitSerialNum, 10138},
    {kTextHelpSetMainCalibOrganisation, 10144},
    {kTextHelpSetMainCalibOperator, 10145},
    {kTextHelpSetAnalogueCalibVersion, 10135},
    {kTextHelpSetAnalogueUnitSerialNum, 10139},
    {kTextHelpSetAnalogueCalibOrganisation, 10146},
    {kTextHelpSetAnalogueCalibOperator, 10147},
    {kTextHelpGetAnalogueCalibByte, 10107},
    {kTextHelpGetAnalogueCalibValue, 10108},
    {kTextHelpGetAnalogueCalibString, 10109},
    {kTextHelpSetAnalogueCalibByte, 10110},
    {kTextHelpSetAnalogueCalibValue, 10111},
    {kTextHelpSetAnalogueCalibString, 10112},
    {kTextHelpGetMainCalibByte, 10101},
    {kTextHelpGetMainCalibValue, 10102},
    {kTextHelpGetMainCalibString, 10103},
    {kTextHelpSetMainCalibByte, 10104},
    {kTextHelpSetMainCalibValue, 10105},
    {kTextHelpSetMainCalibString, 10106},
    {kTextHelpWriteMainTable, 10120},
    {kTextHelpWriteMainMasterTable, 10122},
    {kTextHelpWriteAnalogueTable, 10121},
    {kTextHelpWriteAnalogueMasterTable, 10123},
};
constexpr int kLevelForGuardedEntries = 4;
} // namespace

const DispatchTable& CHardware::GetDispatchMap() const {
    static const DispatchTable table = MakeTable();
    return table;
}

void CHardware::PopulateOLETreeCtrl(COLETreeCtrl* tree, HTREEITEM parent) {
    tree->AddEntries(parent, kOpenEntries);
    if (GetHostApplication().CheckSecurityLevel(kLevelForGuardedEntries)) {
        tree->AddEntries(parent, kGuardedEntries);
    }
}

std::int16_t CHardware::OLEMicroGetMem(std::int16_t space, std::int16_t address) {
    const std::uint8_t* memory = Numbered(kMicroSpaces, space);
    std::uint8_t data = 0;
    const bool read = memory != nullptr &&
                      m_parts->commands.MicroGetMem(*memory, static_cast<std::uint16_t>(address), data) == 0;
    return read ? Short{data} : Short{0};
}

bool CHardware::OLEMicroPutMem(std::int16_t space, std::int16_t address, std::int16_t data) {
    const std::uint8_t* memory = Numbered(kMicroSpaces, space);
    return memory != nullptr &&
           m_parts->commands.MicroPutMem(*memory, static_cast<std::uint16_t>(address),
                                         static_cast<std::uint8_t>(data), *memory == kSpaceI2c ? 1 : 0) == 0;
}

std::int32_t CHardware::OLEDSPGetMem(std::int16_t dsp, std::int16_t space, std::int32_t address) {
    const std::uint8_t* processor = Numbered(kDsps, dsp);
    const std::uint8_t* memory = Numbered(kDspSpaces, space);
    std::uint32_t data = 0;
    const bool read =
        processor != nullptr && memory != nullptr &&
        m_parts->commands.DSPGetMem24(*processor, *memory, static_cast<std::uint32_t>(address), data) == 0;
    return read ? static_cast<std::int32_t>(data) : 0;
}

bool CHardware::OLEDSPPutMem(std::int16_t dsp, std::int16_t space, std::int32_t address, std::int32_t data) {
    const std::uint8_t* processor = Numbered(kDsps, dsp);
    const std::uint8_t* memory = Numbered(kDspSpaces, space);
    return processor != nullptr && memory != nullptr &&
           m_parts->commands.DSPPutMem24(*processor, *memory, static_cast<std::uint32_t>(address),
                                         static_cast<std::uint32_t>(data)) == 0;
}
