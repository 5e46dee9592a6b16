#include "kestran-modern/modern.h"

#include "base/process.h"
#include "kestran-bench/bench.h"
#include "notation/fen.h"
#include "search/engineParameters.h"
#include "search/hashTable.h"
#include "search/infoStruct.h"
#include "support/cli.h"
#include "uci/modernPolicy.h"
#include "uci/uciEngine.h"

#include <cstdint>
#include <iostream>
#include <memory>
#include <string>

namespace {

// Prints the signature in the form that test frameworks read.
void printSignature() {
    constexpr int HASH_MEBIBYTES = 16;
    std::int64_t nodes = 0;
    Milliseconds millis = 0;
    for (const auto& [fen, depth] : getBenchPositions()) {
        Position position;
        setFenNotation(position, fen);
        const BenchResult result = searchAfresh(position, depth, HASH_MEBIBYTES);
        nodes += result.nodes;
        millis += result.millis;
    }
    std::cout << nodes << " nodes " << nodesPerSecond(nodes, millis) << " nps" << std::endl;
}

constexpr const char* DESCRIPTION =
    "Searches as kestran does, and speaks the Universal Chess Interface as current chess programs "
    "expect it: each report has depth, score, nodes and time before the line; mates are counted in "
    "moves; depth, nodes, mate and searchmoves are obeyed; and \"go\" alone searches until "
    "\"stop\". It checks the clock every millisecond.";

int runModern(const std::string& word) {
    if (word == "bench") {
        printSignature();
        return 0;
    }
    if (!word.empty()) {
        throw UsageError("unknown word \"" + word + R"("; the only one is "bench")");
    }
    prepareProcess();
    const std::unique_ptr<EngineConfig> config = EngineConfig::getProdConfig();
    config->hashTableSize = entriesOf(ModernOptions::DEFAULT_HASH);
    std::make_unique<UciEngine>(*config, std::make_unique<ModernPolicy>())->start();
    return 0;
}

} // namespace

int modernMain(int argc, const char* const* argv) {
    std::string word;
    Program program("kestran-modern", "[bench]", DESCRIPTION,
                    "there is no memory, or the output of the bench cannot be written");
    program.add_option("bench", word,
                       "search the positions of kestran-bench and print one line, \"N nodes M "
                       "nps\"; N is the signature of the search");
    return program.run(argc, argv, [&] { return runModern(word); });
}
