// The playing search, with everything that the comparison with its plain twin needs.
#pragma once

#include "search/engineParameters.h"
#include "search/ida.h"
#include "search/idaVariant.h"
#include "search/plainSearch.h"
#include "search/statistics.h"
#include "testing/boardSupport.h"

class PlayingSearch {
public:
    // Counts statistics, or is the search that plays.
    explicit PlayingSearch(bool _isCounting) : isCounting(_isCounting) {
        if (isCounting) {
            ida.getTreeGenerator().countIn(testStatistics);
        }
    }

    const bool isCounting;

    // The position of a text as the front end takes it, or an empty text if it does not.
    static std::string accept(const std::string& fen) {
        Position position;
        return readPlayableFen(position, fen).empty() ? getFen(position) : "";
    }

    // Makes a fresh table, and sets up a position.
    void make(const plain::Settings& settings, const std::string& fen) {
        config.useTable = settings.useTable;
        config._new_feature_quiscence_optimization = settings.standPat;
        config.quiscenceMaxDepth = settings.quiscenceMaxDepth;
        config.quiscenceDeltaWindow = settings.quiscenceDeltaWindow;
        for (const int size : {0, settings.tableSize}) {
            ida.applyChanges(size);
        }
        clashesBefore = table().getNumberOfInnerClashes();
        root = positionOf(fen);
        keys = {root.incremental.hash};
    }

    // Plays a move of the game, if it is legal. Returns whether it was.
    bool play(const std::string& move) {
        const std::vector<Move> moves = legalMovesOf(root);
        const int index = LongAlgebraicMove(move).getIndexOfMove(moves);
        if (index < 0) {
            return false;
        }
        root = positionAfter(root, moves[at(index)]);
        keys.push_back(root.incremental.hash);
        return true;
    }

    // From now on a poll says that the time is up.
    void stop() { flag.signalReady(number); }

    // Searches the position for some lines, and passes each outcome to `onPass` until that returns
    // false. If `isStopped`, the first poll says that the time is up.
    template <class OnPass> void search(int lines, bool isStopped, OnPass onPass) {
        number = flag.getNextThreadId();
        if (isStopped) {
            stop();
        }
        SearchRequest request;
        request.limits.useBook = false;
        request.limits.lines = lines;
        request.game = {root, keys};
        testStatistics.reset();
        ida.deepen(request, &flag, [&](const SearchPass& pass) { return onPass(outcomeOf(pass)); });
    }

private:
    SearchState& state() { return ida.getTreeGenerator().state; }
    HashTable& table() { return state().table.getHashTable(); }

    plain::Outcome outcomeOf(const SearchPass& pass) {
        plain::Outcome outcome;
        outcome.isAbandoned = !pass.result;
        if (pass.result) {
            const std::array<const char*, 4> results = {"FAILLOW", "FAILHIGH", "OK", "OK_FINISH"};
            outcome.result = results[at(*pass.result)];
            outcome.alfa = pass.next.firstAlpha;
            outcome.beta = pass.next.firstBeta;
        }
        outcome.depth = pass.depth;
        outcome.lineNumber = pass.lineNumber;
        outcome.score = pass.line.evaluation;
        outcome.line = lineText(pass.line);
        outcome.nodes = pass.nodes;
        outcome.treeNodes = state().nodes.getSearchedTreeNodes();
        outcome.clashes = table().getNumberOfInnerClashes() - clashesBefore;
        const int run = testStatistics.getRunPointer();
        for (int type = 0; isCounting && type < N_TYPES; ++type) {
            for (int ply = 0; ply < MAX_PLIES; ++ply) {
                outcome.statistics[at(type)][at(ply)] = testStatistics.get(run, type, ply);
            }
        }
        for (int i = 0; i < table().getSize(); ++i) {
            const GenericEntry& entry = table().getEntry(i);
            outcome.table.push_back({entry.checkHashProduction, "FLHN"[entry.state],
                                     entry.evaluation, entry.moveRepresentation,
                                     entry.maxVariantDepth});
        }
        return outcome;
    }

    static std::string lineText(const Variant& line) {
        std::string text;
        for (int i = 0; i < line.varLength; ++i) {
            const auto& [move, isQuiscence, isHash, isOpening] = line.get(i);
            const int piece = move.isCastle() ? int{KING} : move.pieceMoved;
            text += LongAlgebraicMove(move).toString() + ':' + std::to_string(piece) +
                    std::to_string(move.pieceCaptured) + std::to_string(move.castle_ep_flag) +
                    (isQuiscence ? "q" : "") + (isHash ? "h" : "") + (isOpening ? "o" : "") + ' ';
        }
        return text;
    }

    EngineConfig config;
    Ida ida{config};
    IdaVariant flag;
    int number = 0;
    Position root;
    std::vector<std::uint64_t> keys; // of the game, with that of the root
    std::int64_t clashesBefore = 0;
};
