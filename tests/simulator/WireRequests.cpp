#include "simulator/WireRequests.h"

#include "simulator/RequestTools.h"

namespace kalvio::simulator {

namespace {

const Request* Find(const std::string& name) {
    for (const Requests* requests : {&OfTheDriver(), &OfTheUnit(), &OfTheSignals(), &OfPeripherals()}) {
        if (const auto found = requests->find(name); found != requests->end()) {
            return &found->second;
        }
    }
    return nullptr;
}

std::string WithNames(std::string line, const std::map<std::string, std::string>& names) {
    for (const auto& [name, bytes] : names) {
        const std::string place = "{" + name + "}";
        for (std::size_t at; (at = line.find(place)) != std::string::npos;) {
            line.replace(at, place.size(), bytes);
        }
    }
    return line;
}

} // namespace

std::string PlayRequest(Bench& bench, std::string_view request) {
    Words words(WithNames(std::string(request), bench.names));
    const std::string name = words.Next();
    const Request* const found = Find(name);
    if (found == nullptr) {
        return "no such request\n";
    }
    const std::uint32_t start = name == "unit" || name == "now" || name == "route" ? 0 : bench.wire->now;
    std::string result = (*found)(bench, words);
    std::string text;
    for (const std::string& error : bench.wire->unit.ProtocolErrors()) {
        text += "! " + error + "\n";
    }
    bench.wire->unit.ClearProtocolErrors();
    const auto violations = bench.wire->unit.RelayViolations();
    for (; bench.violations < violations.size(); ++bench.violations) {
        text += "!! " + violations[bench.violations] + "\n";
    }
    if (start != 0 && bench.wire->now != start) {
        result += Format(" (%u ms)", bench.wire->now - start);
    }
    if (result.starts_with("- ") || result.empty()) {
        return text + result;
    }
    return text + "= " + result + "\n" + (words.More() ? "too many words\n" : "");
}

} // namespace kalvio::simulator
