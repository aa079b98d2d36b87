#include "hardware/bringup/InitialSettings.h"

#include "platform/DebugFile.h"

namespace kalvio {

namespace {

constexpr std::uint32_t kControlWordDC = 0x100;
constexpr std::uint32_t kControlWordAC = 0x900;
constexpr std::uint32_t kDspWordMask = 0xFFFFFF;

} // namespace

std::int16_t InitialSettings::Write(int& stepCode) {
    CDebugFile::Write("CHardware::InitialiseHardwareSettings\n");
    for (const BringUpStep& step : BringUpSteps()) {
        const std::int16_t status = Run(step);
        if (status != 0) {
            stepCode = step.stepCode;
            return status;
        }
        if (step.trace != nullptr) {
            CDebugFile::Write(CString("CHardware::InitialiseHardwareSettings - ") + step.trace + "\n");
        }
    }
    return 0;
}

std::int16_t InitialSettings::Run(const BringUpStep& step) {
    using enum BringUpAction;
    switch (step.action) {
    case PutAnalogue:
        return m_targets.analogue.Put(static_cast<std::uint8_t>(step.address), step.value);
    case BusyWait:
        BusyWaitSince(GetTickCount(), step.value);
        return 0;
    case StampConverters:
        m_targets.rate.StampConverters();
        return 0;
    case ReadLinks:
        return ReadLinkFit(static_cast<std::uint8_t>(step.address));
    case PutControl:
        return m_targets.mainBoard.WriteControl(step.address, step.value);
    case PutRelay:
        return m_targets.mainBoard.SetRelay(static_cast<std::uint8_t>(step.address), step.value);
    case PutMicro:
        return m_targets.commands.MicroPutMem(step.space, step.address, step.value, 0);
    case PutControlWord:
        return m_targets.controlWords.Put(step.dsp,
                                          m_targets.links.IsDcCoupled() ? kControlWordDC : kControlWordAC);
    case PutCalibration: {
        const auto value =
            static_cast<std::uint32_t>(m_targets.boards.WholeValue(Board::Analogue, step.value));
        return m_targets.commands.DSPPutMem24(step.dsp, kSpaceX, step.address, value & kDspWordMask);
    }
    }
    return 0;
}

std::int16_t InitialSettings::ReadLinkFit(std::uint8_t reg) {
    std::uint8_t links = 0;
    const std::int16_t status = m_targets.analogue.Get(reg, links);
    if (status == 0) {
        m_targets.links.Take(links);
    }
    return status;
}

} // namespace kalvio
