#pragma once

// What a running script asks of the program around it.

#include "platform/Automation.h"
#include "platform/Text.h"
#include "reference_host/script/Script.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace kalvio::reference_host {

enum class PauseEnd { Done, Interrupted };

// How a regulation ended that a script waited for.
struct RegulationEnd {
    bool interrupted = false;
    bool succeeded = false;
    CString text;
};

// What a quantity is just now.
struct QuantityReading {
    std::optional<double> value; // none: there is no value
    CString unit;                // that the value is in
    CString text;                // with its unit, for people: "0.9987 V", "no value"
};

// What a window statement asks for: its verb, the window's name (not of "dialog") and an act's words.
struct WindowRequest {
    std::string verb;
    std::string window;
    std::string control;
    std::string act;
    std::string value;
};

struct WindowAnswer {
    CString fault; // empty: done
    CString text;  // for people
    CString json;  // empty: no value of its own
};

// One step of a sweep over a channel array.
struct SweepRow {
    int channel = 0; // counted from 1
    CString place;   // device, bus, group and channel of the device
    QuantityReading reading;
    CString outcome; // of the wait for the result to settle
    bool settled = false;
};

struct SweepEnd {
    CString error; // why it went no further; empty: all channels were stepped through, or it was interrupted
    bool interrupted = false;
    std::vector<SweepRow> rows;
};

// User-interface thread.
class ScriptHost {
public:
    virtual ~ScriptHost() = default;
    // Lets the program go on for so long.
    virtual PauseEnd Pause(std::uint32_t milliseconds) = 0;
    virtual RegulationEnd WaitForRegulation() = 0;
    // Why a quantity cannot be asked for; empty when it can. A host knows none unless it says so.
    [[nodiscard]] virtual CString RefuseQuantity(const ScriptQuantity& quantity) const {
        return Format("there is no \"%s\"", quantity.name.c_str());
    }
    // A quantity that is not refused: a source's setting, or a result that is measured after the call.
    virtual QuantityReading Measure(const ScriptQuantity&) { return {{}, {}, "no value"}; }
    // Why a window statement cannot be carried out whatever is open; empty when it can. Then the statement.
    [[nodiscard]] virtual CString RefuseWindow(const WindowRequest&) const { return "there are no windows"; }
    virtual WindowAnswer Window(const WindowRequest&) { return {}; }
    // Steps through a channel array and lets a result, which is not refused, settle at each channel. A host
    // has no arrays unless it says so.
    virtual SweepEnd Sweep(const CString& array, const ScriptQuantity&) {
        return {Format("there is no channel array \"%s\"", array.c_str()), false, {}};
    }
    // Keeps all settings in a file, or takes them from one, whole or not at all. The fault is a sentence
    // without its full stop; empty when all is well. `remark` is what could not be sent to devices.
    struct FileAnswer {
        CString fault;
        CString remark;
    };
    virtual FileAnswer SaveConfiguration(const CString&) { return {"there are no configurations here", {}}; }
    virtual FileAnswer LoadConfiguration(const CString&) { return {"there are no configurations here", {}}; }
};

} // namespace kalvio::reference_host
