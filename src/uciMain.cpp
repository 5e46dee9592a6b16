// The engine's process: one UciEngine on standard input and output.

#include "base/loggingService.h"
#include "base/process.h"
#include "search/engineParameters.h"
#include "uci/uciEngine.h"

#include <ios>
#include <memory>

int main() {
    prepareProcess();
    prepareMemory();
    std::ios::sync_with_stdio(false);
    logger.addStandard();
    const std::unique_ptr<EngineConfig> config = EngineConfig::getProdConfig();
    const auto uciEngine = std::make_unique<UciEngine>(*config);
    uciEngine->start();
    logger.info("Returning from main");
    return 0;
}
