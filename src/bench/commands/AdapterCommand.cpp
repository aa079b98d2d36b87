#include "adapters/FormatConverterSettings.h"
#include "adapters/KEDAAdapterSettings.h"
#include "bench/commands/Commands.h"
#include "bench/commands/WithUnit.h"
#include "bench/output/AdapterReport.h"
#include "bench/output/JsonOutput.h"
#include "peripheral_network/bus/KvNetErrors.h"

#include <optional>

namespace kalvio::bench {

namespace {

int TellAdapter(ReferenceHost& host, const BenchOptions& options, const AdapterOptions& wanted,
                Terminal& terminal) {
    const auto address = static_cast<std::uint8_t>(wanted.address);
    CKEDAAdapter* adapter =
        host.Network().GetFormatConverterSettings()->GetKEDAAdapterSettings()->GetKEDAAdapter(address);
    if (adapter == nullptr) {
        terminal.err << "kalvio-bench: no KEDA adapter answers at " << wanted.address << std::endl;
        return kExitRunFailed;
    }
    std::optional<CKEDAAdapter> image;
    short status = adapter->ReadFrameClockFreq();
    if (wanted.fromUnit && status == KVNET_OK) {
        image = *adapter;
        status = adapter->GetUnitStatus();
    }
    if (status != KVNET_OK) {
        terminal.err << "kalvio-bench: the adapter at " << wanted.address
                     << " could not be read, peripheral network error " << status << std::endl;
        return kExitRunFailed;
    }
    CKEDAAdapter* compared = image ? &*image : nullptr;
    if (options.json) {
        terminal.out << DumpJson(AdapterJson(*adapter, compared)) << std::endl;
    } else {
        terminal.out << AdapterTable(*adapter, compared) << std::flush;
    }
    return kExitOk;
}

} // namespace

int RunAdapter(const BenchOptions& options, const AdapterOptions& adapter, Terminal& terminal) {
    return WithUnit(options, terminal, {.run = [&](BenchApplication& application) {
                        return TellAdapter(application.Host(), options, adapter, terminal);
                    }});
}

} // namespace kalvio::bench
