// The modern front end for browsers and node: executes one line at a time. Its answers go to
// standard output.

#include "search/engineParameters.h"
#include "search/hashTable.h"
#include "uci/modernPolicy.h"
#include "uci/uciEngine.h"

#include <memory>

namespace {

std::unique_ptr<EngineConfig> makeConfig() {
    auto config = EngineConfig::getProdConfig();
    config->hashTableSize = entriesOf(ModernOptions::DEFAULT_HASH);
    return config;
}

UciEngine& getEngine() {
    static const auto config = makeConfig();
    static UciEngine engine(*config, std::make_unique<ModernPolicy>());
    return engine;
}

} // namespace

// Returns when the line is executed; a `go` line, when it is answered.
extern "C" void handleLine(const char* line) {
    getEngine().handleLine(line);
}
