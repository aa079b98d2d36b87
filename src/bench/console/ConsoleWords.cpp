#include "bench/console/ConsoleWords.h"

#include "platform/Text.h"

namespace kalvio::bench {

std::string WordHelpText() {
    std::string text;
    for (const WordHelp& word : kWordHelps) {
        text += (text.empty() ? "" : "\n") + Format("  %-26s  %s", word.usage, word.meaning);
    }
    return text;
}

} // namespace kalvio::bench
