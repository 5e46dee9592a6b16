#include "kestran-bench/freshEngine.h"

#include "search/hashTable.h"
#include "support/requireTable.h"
#include "support/settings.h"

namespace {

std::unique_ptr<EngineConfig> makeConfig(int hashMebibytes,
                                         const std::vector<std::string>& settings) {
    auto config = EngineConfig::getProdConfig();
    config->hashTableSize = entriesOf(hashMebibytes);
    applySettings(settings, *config);
    return config;
}

} // namespace

FreshEngine::FreshEngine(const Position& position, int hashMebibytes,
                         const std::vector<std::string>& settings, const WaitPolicy& waitPolicy)
    : config(makeConfig(hashMebibytes, settings)), engine(*config, waitPolicy) {
    engine.applyChanges();
    requireTable(engine.getHashTableSize(), config->hashTableSize);
    engine.init(position);
    engine.getTreeGenerator().state.table.touchPages();
}
