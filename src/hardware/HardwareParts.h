#pragma once

// What the hardware object is made of. Every part stands on the command set or below it, is given what it
// needs, and knows nothing of the object.

#include "hardware/Hardware.h"
#include "hardware/PeripheralExchange.h"
#include "hardware/bringup/BringUp.h"
#include "hardware/bringup/UnitLife.h"
#include "hardware/calibration/BoardTables.h"
#include "hardware/calibration/UnitMemory.h"
#include "hardware/generator/AutoRange.h"
#include "hardware/generator/GeneratorCommands.h"
#include "hardware/measurement/AnalogueRate.h"
#include "hardware/measurement/AnalyserInput.h"
#include "hardware/measurement/DspClock.h"
#include "hardware/measurement/Hf2Flags.h"
#include "hardware/measurement/Readings.h"
#include "hardware/measurement/Trigger.h"
#include "hardware/registers/AnalogueRegisters.h"
#include "hardware/registers/ControlWords.h"
#include "hardware/registers/LinkFit.h"
#include "hardware/registers/MainBoard.h"
#include "hardware/registers/RelayGuard.h"
#include "hardware/results/ResultArrivals.h"
#include "hardware/results/SampleStore.h"

struct CHardware::Parts {
    explicit Parts(kalvio::DeviceDriver& driver) : transport(driver) {}

    kalvio::UsbTransport transport;
    kalvio::CommandSet commands{transport};
    kalvio::PeripheralExchange peripherals{commands};

    kalvio::RelayGuard relays;
    kalvio::AnalogueRegisters analogue{commands, relays};
    kalvio::MainBoard mainBoard{commands};
    kalvio::ControlWords controlWords{commands};
    kalvio::LinkFit links;

    kalvio::UnitMemory memory{commands};
    kalvio::BoardTables boards{memory};

    kalvio::ResultArrivals results;
    kalvio::SampleStore samples{commands};

    kalvio::AnalogueRate rate{commands, analogue, links};
    kalvio::AnalyserInput input{rate};
    kalvio::Trigger trigger{commands, input};
    kalvio::Hf2Flags hf2{commands};
    kalvio::Readings readings{commands};
    kalvio::DspClock clock;

    kalvio::GeneratorCommands generator{commands, relays};
    kalvio::AutoRange autoRange{commands, relays};

    kalvio::BringUp bringUp{{transport, commands, mainBoard, boards, samples, results, clock},
                            {commands, analogue, mainBoard, controlWords, rate, links, boards}};
    kalvio::UnitLife life{transport, commands, samples, boards};
    WindowHandle messageWindow = WindowHandle::None; // set at bring-up
};
