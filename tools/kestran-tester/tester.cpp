#include "kestran-tester/tester.h"

#include "base/process.h"
#include "kestran-bench/bench.h"
#include "kestran-tester/testerPolicy.h"
#include "notation/fen.h"
#include "search/engineParameters.h"
#include "search/infoStruct.h"
#include "support/commandLine.h"
#include "uci/uciEngine.h"

#include <cstdint>
#include <iostream>
#include <memory>
#include <vector>

namespace {

// In the form that test frameworks read.
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

} // namespace

const std::string TESTER_HELP = R"(Usage: kestran-tester [bench]

Plays chess as kestran does, by the same search, and speaks the Universal Chess Interface as
test programs expect it today: reports with depth, score, nodes and time before the line, a
score in each, mates in moves; depth, nodes, mate and searchmoves are obeyed, and a bare "go"
searches until "stop". It looks at the clock each millisecond.

  bench       searches the positions of kestran-bench and prints one line, "N nodes M nps"; N is
              the signature of the search

Its options in the protocol are Hash, OwnBook (whether the built-in book is played, false by
default) and Move Overhead (milliseconds of its clock that it leaves alone, 10 by default).

Exit status: 0; 1 if the output of the bench cannot be written or there is no memory; 2 for
words that make no sense.
)";

int runTester(CommandLine& commandLine) {
    const std::vector<std::string> words = commandLine.takeRest();
    if (words == std::vector<std::string>{"bench"}) {
        printSignature();
        return 0;
    }
    if (!words.empty()) {
        throw UsageError(R"(the one word that it takes is "bench", and not ")" + words.back() +
                         "\"");
    }
    prepareProcess();
    const std::unique_ptr<EngineConfig> config = EngineConfig::getProdConfig();
    std::make_unique<UciEngine>(*config, std::make_unique<TesterPolicy>())->start();
    return 0;
}
