#include "kestran-explain/explain.h"

#include "kestran-explain/explainTree.h"
#include "kestran-explain/lineAnswer.h"
#include "kestran-explain/watchedLine.h"
#include "search/hashTable.h"
#include "search/ida.h"
#include "search/infoStruct.h"
#include "search/searchParameters.h"
#include "support/commandLine.h"
#include "support/gameInput.h"

#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr const char* HELP =
    R"(kestran-explain [FEN] --line "MOVES" [--depth N] [--moves "MOVES"] [--all]
                [--format=plain|tree] [--hash MIB]

Searches a position as the engine does, watches a line of moves, and tells why the
search did not follow it. Moves are written e2e4, e1g1 for castling, e7e8q.

  FEN              the position, quoted or not; startpos, or nothing, for the start
  --line "MOVES"   the line to watch, at most 19 moves
  --depth N        plies to search, 1 to 20; 5 if not given
  --moves "MOVES"  a game from FEN to the position to search, so that repetitions count
  --all            every move tried along the line, not only those that raised alfa
  --format=plain   the record as the search keeps it, in thousandths of a pawn (the default)
  --format=tree    a tree and one sentence that answers, in pawns
  --hash MIB       size of the transposition table; as in play if not given

Exit status: 0, or 2 for input that makes no sense. Colour is used on a terminal unless
NO_COLOR is set.
)";

constexpr int DEFAULT_DEPTH = 5;

struct Question {
    Game game;
    std::vector<Move> line;
    int depth;
    bool all;
    bool asTree;
    std::optional<int> hashTableSize; // entries
};

std::optional<int> takeTableSize(CommandLine& commandLine) {
    const auto text = commandLine.takeOption("--hash");
    if (!text) {
        return std::nullopt;
    }
    const int mebibytes =
        parseNumber(*text, "--hash", EngineConfig::HASH_MIN, EngineConfig::HASH_MAX);
    return entriesOf(mebibytes);
}

Question readQuestion(CommandLine& commandLine) {
    Question question = {};
    question.all = commandLine.takeFlag("--all");
    const std::string format = commandLine.takeOption("--format").value_or("plain");
    if (format != "plain" && format != "tree") {
        throw UsageError("--format is plain or tree, not \"" + format + "\"");
    }
    question.asTree = format == "tree";
    const auto depth = commandLine.takeOption("--depth");
    question.depth = depth ? parseNumber(*depth, "--depth", 1, MAX_PASSES) : DEFAULT_DEPTH;
    question.hashTableSize = takeTableSize(commandLine);
    const std::string moves = commandLine.takeOption("--moves").value_or("");
    const std::string line = commandLine.takeOption("--line").value_or("");
    question.game = readGame(commandLine.takeRest(), moves);
    question.line = readMoves(question.game.position, line, "the line");
    if (question.line.empty()) {
        throw UsageError("--line needs at least one move");
    }
    if (question.line.size() > Explain::MAX_LINE) {
        throw UsageError("a line has at most " + std::to_string(Explain::MAX_LINE) +
                         " moves, this one has " + std::to_string(question.line.size()));
    }
    return question;
}

// Shows on standard error how deep the search has come.
class ShownProgress final : public InfoListenerInterface {
public:
    void onInfo(const InfoStruct& info) override {
        progress.show("depth " + std::to_string(info.depth) + " done, " +
                      std::to_string(info.nodesSearched) + " nodes");
    }

private:
    Progress progress;
};

bool wantsColour() {
    const char* noColor = std::getenv("NO_COLOR"); // NOLINT(concurrency-mt-unsafe)
    return isatty(STDOUT_FILENO) != 0 && (noColor == nullptr || *noColor == '\0');
}

int answer(const Question& question) {
    const auto config = EngineConfig::getProdConfig();
    config->hashTableSize = question.hashTableSize.value_or(config->hashTableSize);
    Explain explain;
    {
        ShownProgress progress;
        watchSearch(*config, question.game, question.line, question.depth, explain, &progress);
    }
    if (!question.asTree) {
        explain.explainAll(question.all);
        return 0;
    }
    const WatchedLine line(question.game, explain);
    TreeReport(line, question.all, wantsColour(), std::cout).print();
    std::cout << '\n' << answerInWords(*config, question.game, line) << '\n';
    return 0;
}

} // namespace

Variant watchSearch(const EngineConfig& config, const Game& game, const std::vector<Move>& line,
                    int depth, Explain& explain, InfoListenerInterface* listener) {
    Variant watched;
    for (const Move& move : std::vector<Move>(line.rbegin(), line.rend())) {
        watched.extend(Variant(watched), {move, false, false, false});
    }
    explain.setVariant(game.position, watched);

    const auto ida = std::make_unique<Ida>(config);
    ida->watchBy(explain);
    ida->setInfoListener(listener);
    ida->getTreeGenerator().getState().path.begin(game.repetitionHashes);
    Position position = game.position;
    Variant result;
    ida->generateTree(position, result, depth, true);
    return result;
}

int explainMain(int argc, const char* const* argv) {
    return runTool("kestran-explain", HELP, argc, argv,
                   [](CommandLine& commandLine) { return answer(readQuestion(commandLine)); });
}
