#pragma once

// What the regulation window knows of each of its controls.

#include <span>

class CRegulationSettings;

namespace kalvio::regulation {

// Detector: a choice whose items carry the choice and its detector.
enum class ControlContent { Detector, Choice, Flag, Integer, Real, Button, Status };

// When a control can be used; all but the last two not while a regulation runs.
enum class ControlRule {
    Idle,
    Absolute,
    Extremum,
    BothChannels,
    GeneratorSource,
    Steps,
    OwnStep,
    Running,
    Always
};

struct ViewControl {
    int ctrlID;
    ControlContent content;
    ControlRule rule;
    bool inStorage = false; // the field's default is in storage units
};

// What a change of a field does to the control of another: its choices are others, or its value reads
// otherwise.
struct Consequence {
    int hint;
    int ctrlID;
    bool refill = false;
};

[[nodiscard]] std::span<const ViewControl> ViewControls();
[[nodiscard]] const ViewControl* FindViewControl(int ctrlID); // null: none of the window's
[[nodiscard]] std::span<const Consequence> Consequences();
[[nodiscard]] bool IsChoice(const ViewControl& control);
[[nodiscard]] bool Applies(ControlRule rule, CRegulationSettings& document);
// The index of a control's field as it is shown just now: the tolerance has three.
[[nodiscard]] int ShownFieldIndex(CRegulationSettings& document, int ctrlID);

} // namespace kalvio::regulation
