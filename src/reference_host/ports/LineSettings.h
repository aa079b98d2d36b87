#pragma once

// Speed and character format of a serial line, as "9600,n,8,1".

#include <string>
#include <string_view>

namespace kalvio::reference_host {

enum class Parity { None, Even, Odd, Mark, Space };

struct LineSettings {
    unsigned baud = 9600;
    Parity parity = Parity::None;
    int dataBits = 8;      // 5 to 8
    bool longStop = false; // two stop bits, one and a half with five data bits
};

inline constexpr unsigned kFastestBaud = 4000000;

// Takes "BAUD,PARITY,DATA,STOP" into the settings: 1 to 4000000 baud, parity n, e, o, m or s, 5 to 8 data
// bits, 1 or 2 stop bits or, with five data bits, 1.5. Empty when all was well, else why not; the settings
// are then unchanged.
std::string ParseLineSettings(std::string_view text, LineSettings& settings);

} // namespace kalvio::reference_host
