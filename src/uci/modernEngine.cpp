#include "uci/modernEngine.h"

#include "base/process.h"
#include "search/engineParameters.h"
#include "search/hashTable.h"
#include "uci/modernPolicy.h"
#include "uci/uciEngine.h"

#include <memory>

void runModernEngine(const std::string& onlyLine) {
    prepareProcess();
    const std::unique_ptr<EngineConfig> config = EngineConfig::getProdConfig();
    config->hashTableSize = entriesOf(ModernOptions::DEFAULT_HASH);
    const auto engine = std::make_unique<UciEngine>(*config, std::make_unique<ModernPolicy>());
    if (onlyLine.empty()) {
        engine->start();
    } else {
        engine->start(onlyLine);
    }
}
