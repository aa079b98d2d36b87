#include "simulator/UnitBoards.h"

namespace kalvio::simulator {

UnitBoards::UnitBoards(const UnitOptions& options, std::uint32_t tick)
    : analogue(options.analogueVersion, options.linkFit),
      i2c(analogue, faults, options.mainTemperatureHalfDegrees, options.analogueTemperatureHalfDegrees),
      measurement(micro, dsps,
                  {options.resultCadenceMs, options.digitalFrameRateHz, options.referenceFrameRateHz}, tick),
      peripherals(faults, protocolErrors) {
    micro.Write('X', kStatusVersion, {&options.mainBoardVersion, 1});
    micro.Write('X', kStatusOptions, {&options.mainBoardOptions, 1});
}

} // namespace kalvio::simulator
