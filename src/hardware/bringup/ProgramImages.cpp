#include "hardware/bringup/ProgramImages.h"

#include "host/HostTexts.h"
#include "platform/DebugFile.h"
#include "platform/Files.h"
#include "platform/Registry.h"
#include "platform/UserInterface.h"

#include <array>

namespace kalvio {

namespace {

constexpr int kDspLoadAttempts = 3;
constexpr int kDspLoadFlag = 1;

// Where the registry (machine, "Hardware") names an image, and which file it is otherwise.
struct ImageSetting {
    const char* registryName;
    const char* defaultPath;
};

constexpr ImageSetting kGateArray{"FPGAFile", R"(C:\Kalvio\Main1.bin)"};
constexpr std::array<ImageSetting, 2> kDsps{
    {{"DSPAFile", R"(C:\Kalvio3A.bin)"}, {"DSPBFile", R"(C:\Kalvio3B.bin)"}}};

void Trace(const CString& line) {
    CDebugFile::Write("CHardware::LoadHardware" + line + "\n");
}

CString PathOf(const ImageSetting& setting) {
    return CRegistry::GetRegistryValue(RegistryKeyType::Machine, "Hardware", setting.registryName,
                                       CString(setting.defaultPath));
}

// Says which file could not be used, and where its name comes from.
void TraceFailure(std::int16_t status, const ImageSetting& setting, const CString& path) {
    const char* what = "was not loaded";
    if (status == kImageNotOpened) {
        what = "cannot be read";
    } else if (status == kImageNoMemory) {
        what = "does not fit into the memory";
    }
    Trace(Format(" - \"%s\" %s (registry: Hardware, %s)", path.c_str(), what, setting.registryName));
}

} // namespace

std::int16_t ProgramImages::Load() {
    Trace("");
    std::int16_t status = LoadGateArray();
    for (std::uint8_t dsp = 0; status == 0 && dsp < kDsps.size(); ++dsp) {
        status = LoadDsp(dsp);
    }
    return status;
}

std::int16_t ProgramImages::LoadGateArray() {
    const CString path = PathOf(kGateArray);
    const std::int16_t status = m_commands.FPGALoad(path);
    if (status != 0) {
        TraceFailure(status, kGateArray, path);
        Trace(" - FPGA load failed");
        ShowMessage(LoadText(kTextGateArrayFailed));
        return status;
    }
    Trace(" - FPGA file downloaded");
    return 0;
}

std::int16_t ProgramImages::LoadDsp(std::uint8_t dsp) {
    const int letter = 'A' + dsp;
    const CString path = GetFullPathName(PathOf(kDsps[dsp]));
    std::int16_t status = 1;
    for (int attempt = 0; attempt < kDspLoadAttempts && status != 0; ++attempt) {
        status = m_commands.DSPLoad(dsp, path, kDspLoadFlag);
    }
    if (status != 0) {
        TraceFailure(status, kDsps[dsp], path);
        Trace(Format(" - DSP %c load failed", letter));
        ShowMessage(FormatText(LoadText(kTextDspFailed), dsp + 1));
        return status;
    }
    Trace(Format(" - DSP %c file downloaded (%X)", letter, static_cast<unsigned>(status)));
    return 0;
}

} // namespace kalvio
