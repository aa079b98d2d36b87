#pragma once

// The words that a console understands besides the statements of scripts.

#include <string>
#include <string_view>

namespace kalvio::bench {

inline constexpr std::string_view kWordHelp = "help";
inline constexpr std::string_view kWordNames = "names";
inline constexpr std::string_view kWordQuit = "quit";
inline constexpr std::string_view kConsoleWords[] = {kWordHelp, kWordNames, kWordQuit};

// A line of what can be typed.
struct WordHelp {
    const char* usage;
    const char* meaning;
};

inline constexpr WordHelp kWordHelps[] = {
    {"help", "shows this"},
    {"help NAME", "shows a name's type, limits and choices"},
    {"names [PATTERN]", "lists names: those that hold a text, or match * and ?"},
    {"quit", "ends the console, as the end of input does"},
    {"NAME", "reads a property or calls a method"},
    {"NAME = VALUE", "sets a property"},
    {"NAME(VALUE, ...)", "calls a method"},
    {"print VALUE, ...", "shows texts and values on a line"},
    {"read RESULT", "measures a result, as rms, in its usual unit"},
    {"source SOURCE", "what a source, as gen-ampl, is set to"},
    {"expect VALUE within A B", "complains unless the value lies there"},
    {"sweep \"ARRAY\", read RESULT", "lets a result settle at every channel of an array"},
    {"wait MS", "waits so many milliseconds; Ctrl-C ends the wait"},
    {"wait-regulation", "waits for the end of the regulation"},
    {"window VERB NAME ...", "opens, acts on, shows, prints or closes a window"},
};

// The lines as one text.
std::string WordHelpText();

} // namespace kalvio::bench
