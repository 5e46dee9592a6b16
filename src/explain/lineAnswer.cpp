#include "explain/lineAnswer.h"

#include "board/makeMove.h"
#include "explain/searchText.h"
#include "notation/san.h"
#include "search/score.h"

#include <algorithm>
#include <memory>
#include <optional>

namespace {

constexpr int MAX_ALTERNATIVES = 3; // to the engine's own move

// The line's own move at a node.
std::string moveText(const WatchedLine& line, int ply) {
    return toNumberedSan(line.getPosition(ply), line.getMoves()[at(ply)], line.getGamePly(ply));
}

std::string moveText(const WatchedLine& line, int ply, const NodeMoveInfo& info) {
    return toNumberedSan(line.getPosition(ply), info.move, line.getGamePly(ply));
}

// "After 1. e4 e5 it ", or "It " at the root.
std::string itText(const WatchedLine& line, int ply) {
    if (ply == 0) {
        return "It ";
    }
    const std::span<const Move> path(line.getMoves().data(), at(ply));
    return "After " + lineToSan(line.getPosition(0), path, line.getGamePly(0)) + " it ";
}

std::string inBrackets(const std::string& text) {
    return " (" + text + ')';
}

// "a, b and c".
std::string listText(const std::vector<std::string>& items) {
    std::string text;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const char* separator = i == 0 ? "" : i + 1 == items.size() ? " and " : ", ";
        text += separator + items[i];
    }
    return text;
}

// A score for the side that moved, and the line after the move.
struct Worth {
    int score;
    std::vector<Move> line;
};

// The search that is asked, beside the record of the one that is explained.
struct Inquiry {
    const EngineConfig& config;
    const Game& game;
    const WatchedLine& line;
    const SearchStarter& begin;
};

// The last pass of a search `depth` plies deep, or nothing if there was no time for it. With
// `rootMoves`, only these are searched.
std::optional<Variant> searchWhole(const Inquiry& inquiry, const Game& game, int depth,
                                   const std::vector<Move>& rootMoves = {}) {
    const auto ida = makeSearch(inquiry.config);
    const auto passes = searchPasses(*ida, depthRequest(game, depth, rootMoves), inquiry.begin());
    const bool isWhole = !passes.empty() && isGood(passes.back()) &&
                         (passes.back().depth == depth || passes.back().result == IdaNS::OK_FINISH);
    return isWhole ? std::optional(passes.back().line) : std::nullopt;
}

// What the line's move at node `ply` is worth in a search of its own, as deep as the search of
// the pass went. Nothing if there was no time for it.
std::optional<Worth> searchAlone(const Inquiry& inquiry, int pass, int ply) {
    const WatchedLine& line = inquiry.line;
    Game path = inquiry.game;
    path.position = line.getPosition(ply + 1);
    for (int i = 1; i <= ply + 1; ++i) {
        path.repetitionHashes.push_back(line.getPosition(i).incremental.hash);
    }
    std::optional<Variant> variant;
    const int depth = line.getPass(pass).depth - 1 - ply;
    if (depth > 0) {
        variant = searchWhole(inquiry, path, depth);
    } else {
        const auto ida = makeSearch(inquiry.config);
        SearchRequest request;
        request.game = path;
        ida->prepareSearch(request, nullptr);
        ida->getTreeGenerator().quiscenceSearch(path.position, DEFAULT_FIRST_ALFA,
                                                DEFAULT_FIRST_BETA, variant.emplace());
    }
    if (!variant) {
        return std::nullopt;
    }
    return Worth{furtherFromCheckMate(-variant->evaluation), movesOf(*variant)};
}

// The best other moves at the root with their scores, such as "1. d4 (+0.31)", each from a search
// without the moves before it. Fewer if there are no more, or no time.
std::vector<std::string> findAlternatives(const Inquiry& inquiry, int pass) {
    const WatchedLine& line = inquiry.line;
    const Position& root = line.getPosition(0);
    MoveArray legal;
    const int count = generateLegalMoves(root, legal);
    std::vector<Move> others(legal.begin(), legal.begin() + count);
    std::vector<std::string> texts;
    const auto leaveOut = [&others](const Move& move) {
        std::erase_if(others, [&](const Move& other) { return testMoveEquality(other, move); });
    };
    leaveOut(line.getMoves().front());
    while (!others.empty() && texts.size() < MAX_ALTERNATIVES) {
        const auto best = searchWhole(inquiry, inquiry.game, line.getPass(pass).depth, others);
        if (!best || best->varLength == 0) {
            break;
        }
        const Move move = best->get(0).move;
        texts.push_back(toNumberedSan(root, move, line.getGamePly(0)) +
                        inBrackets(scoreText(best->evaluation)));
        leaveOut(move);
    }
    return texts;
}

// How the score of the line's move compares with that of the choice, such as "0.05 worse for
// White".
std::string comparisonText(const Inquiry& inquiry, const Fate& fate, int chosen, int score) {
    const std::string side = sideText(inquiry.line.getPosition(fate.node));
    if (chosen == score) {
        const bool isLater = fate.choice != nullptr && fate.choice < fate.lineMove;
        return "no better" + side +
               (isLater ? ", and an equal move does not replace the one found first" : "");
    }
    const bool isWorse = chosen > score;
    std::string size;
    if (!isMate(chosen) && !isMate(score)) {
        size = scoreText(isWorse ? chosen - score : score - chosen).substr(1) + ' ';
        size = size == "0.00 " ? "less than 0.01 " : size;
    }
    return size + (isWorse
                       ? "worse" + side
                       : "better" + side +
                             ", but the window, the hash table or lmf hid that from the search");
}

// What is wrong with the line's move at the node where it was left. `comparison` is the end of
// the sentence.
std::string reasonText(const Inquiry& inquiry, const Fate& fate, const Worth& worth,
                       const std::string& comparison) {
    const WatchedLine& line = inquiry.line;
    const std::string move = moveText(line, fate.node);
    switch (fate.lineMove->ending) {
    case MoveEnding::REPETITION:
        return move + " repeats a position, which counts as a draw and is " + comparison + '.';
    case MoveEnding::CLOCK:
        return move + " is a draw by the half-move clock, which is " + comparison + '.';
    case MoveEnding::STALEMATE:
        return move + " is stalemate, which is " + comparison + '.';
    case MoveEnding::LMF_CUT:
    case MoveEnding::TABLE_LMF_CUT:
        return "The search skipped " + move +
               ", because the hash table put it more than a pawn below the best move so far "
               "(lmf); it is " +
               comparison + '.';
    default:
        break;
    }
    if (worth.line.empty()) {
        return move + " is " + comparison + '.';
    }
    return "After " + move + " it expects " +
           lineToSan(line.getPosition(fate.node + 1), worth.line, line.getGamePly(fate.node + 1)) +
           ", which is " + comparison + '.';
}

// Why a move whose worth is not known was left.
std::string refutationText(const WatchedLine& line, int pass, const Fate& fate) {
    const NodeMoveInfo* answer = line.getRefutation(pass, fate.node, *fate.lineMove);
    return moveText(line, fate.node) +
           (answer != nullptr ? " is refuted by " + moveText(line, fate.node + 1, *answer)
                              : " was not good enough") +
           ", and the search looked no further.";
}

// The first of the good passes up to the last one that ended the line at the same place.
int findFirstLike(const WatchedLine& line, int last, const Fate& fate) {
    int first = last;
    for (int pass = last; pass >= 0; --pass) {
        if (!isGood(line.getPass(pass))) {
            continue;
        }
        if (!line.getFate(pass).isLike(fate)) {
            break;
        }
        first = pass;
    }
    return first;
}

// Which passes an answer is about, and for whom the scores are at node `ply`.
std::string sourceText(const WatchedLine& line, int pass, const Fate& fate, int ply) {
    std::string text = "This holds for " + passText(line, pass) + ", the last ";
    text += pass + 1 < line.getPassCount() ? "good one" : "one";
    const int first = findFirstLike(line, pass, fate);
    if (first != pass) {
        text += ", and for every good pass since " + passText(line, first);
    }
    return text + ". Scores are" + sideText(line.getPosition(ply)) + '.';
}

// What the engine played there instead of the line's move, with its score.
std::string choiceText(const WatchedLine& line, const Fate& fate, int score) {
    return fate.choice != nullptr
               ? moveText(line, fate.node, *fate.choice) + inBrackets(scoreText(score))
               : "no capture or check (standing pat, " + scoreText(score) + ')';
}

// The worth of the line's move at the node where it was left; nothing if that is only a bound.
std::optional<Worth> findWorth(const Inquiry& inquiry, int pass, const Fate& fate) {
    const NodeMoveInfo& info = *fate.lineMove;
    if (!isBound(info) && !isLmfCut(info.ending)) {
        return Worth{info.principalVariant.evaluation, movesOf(info.principalVariant)};
    }
    return info.isQuiscence ? std::nullopt : searchAlone(inquiry, pass, fate.node);
}

// What the record of the line's move says at the node where it was left.
std::string recordText(const Inquiry& inquiry, int pass, const Fate& fate, bool isWorthKnown) {
    const WatchedLine& line = inquiry.line;
    const NodeMoveInfo& info = *fate.lineMove;
    std::string text = "The search recorded " + moveText(line, fate.node) + " as \"" +
                       endingText(info.ending, verdictOf(info)) + '"';
    if ((isBound(info) || isLmfCut(info.ending)) && !info.isQuiscence) {
        text += isWorthKnown ? "; its score is from a separate search"
                             : "; there was no time for a separate search";
    }
    text += '.';
    if (const auto node = line.getUnreachedNode(pass, fate.node)) {
        text += ' ' + moveText(line, *node) + " was never reached, as " +
                moveText(line, *node, *choiceOf(*line.getNode(pass, *node))) + " refuted " +
                moveText(line, *node - 1) + '.';
    }
    return text;
}

// The answer for a line that was left at a node where its move was tried.
Answer answerLeft(const Inquiry& inquiry, int pass, const Fate& fate) {
    const WatchedLine& line = inquiry.line;
    const NodeMoveInfo& info = *fate.lineMove;
    const bool canBeSearched = (isBound(info) || isLmfCut(info.ending)) && !info.isQuiscence;
    const std::optional<Worth> worth = findWorth(inquiry, pass, fate);
    const int chosen =
        fate.choice != nullptr ? fate.choice->principalVariant.evaluation : info.alfa;
    Answer answer = {.pass = pass, .node = fate.node, .refutationNode = fate.node + 1};
    std::string value;
    if (worth) {
        value = inBrackets(scoreText(worth->score));
        answer.reason =
            reasonText(inquiry, fate, *worth, comparisonText(inquiry, fate, chosen, worth->score));
        answer.refutation = worth->line;
    } else {
        value =
            canBeSearched ? "" : " (at most " + scoreText(info.principalVariant.evaluation) + ')';
        answer.reason = refutationText(line, pass, fate);
        const NodeMoveInfo* refutation = line.getRefutation(pass, fate.node, info);
        if (refutation != nullptr) {
            answer.refutation = {refutation->move};
        }
    }
    answer.verdict = itText(line, fate.node) + "prefers " + choiceText(line, fate, chosen) +
                     " to " + moveText(line, fate.node) + value + '.';
    answer.details = sourceText(line, pass, fate, fate.node) + ' ' +
                     recordText(inquiry, pass, fate, worth.has_value());
    return answer;
}

// What the engine's own move is worth beside the others.
std::string preferenceText(const std::string& move, bool isOnly,
                           const std::vector<std::string>& others) {
    if (isOnly) {
        return move + " is the only legal move.";
    }
    return "It prefers " + move + " to " + (others.empty() ? "all other moves" : listText(others)) +
           '.';
}

// The answer for a line that begins with the engine's own move.
Answer answerPlayed(const Inquiry& inquiry, int pass, const Fate& fate) {
    const WatchedLine& line = inquiry.line;
    const NodeMoveInfo& info = *line.getLineMove(pass, 0);
    const std::vector<std::string> others = findAlternatives(inquiry, pass);
    const std::string move = moveText(line, 0) + inBrackets(scoreText(info));
    MoveArray legal;
    const bool isOnly = generateLegalMoves(line.getPosition(0), legal) == 1;
    Answer answer = {.verdict = preferenceText(move, isOnly, others),
                     .reason = "It expects " + lineText(line, 0, info) + '.',
                     .details = sourceText(line, pass, fate, 0),
                     .pass = pass,
                     .node = fate.node,
                     .refutationNode = fate.node};
    if (!others.empty()) {
        answer.details += " Each other score is from a search without the moves named before it.";
    } else if (!isOnly) {
        answer.details += " There was no time to search the other moves.";
    }
    if (fate.kind == Fate::CUT_SHORT) {
        const int last = fate.node - 1;
        answer.details += " It follows the line as far as " + moveText(line, last) +
                          " and looks no further (" + endingText(fate.lineMove->ending) + "), so " +
                          moveText(line, fate.node) + " was not tried.";
    }
    return answer;
}

// The answer for a line whose move was not tried at a node.
Answer answerNotReached(const WatchedLine& line, int pass, const Fate& fate) {
    const std::string choice = moveText(line, fate.node, *fate.choice) +
                               inBrackets(scoreText(fate.choice->principalVariant.evaluation));
    const std::string use =
        fate.node > 0 ? "enough to refute " + moveText(line, fate.node - 1) : "good enough";
    return {.verdict = itText(line, fate.node) + "never tries " + moveText(line, fate.node) + '.',
            .reason = choice + " was tried before and is " + use + '.',
            .details = sourceText(line, pass, fate, fate.node),
            .pass = pass,
            .node = fate.node,
            .refutationNode = fate.node,
            .refutation = {fate.choice->move}};
}

} // namespace

std::string Answer::getSummary() const {
    return verdict + (reason.empty() ? "" : ' ' + reason);
}

std::string Answer::getText() const {
    return getSummary() + ' ' + details;
}

Answer answerLine(const EngineConfig& config, const Game& game, const WatchedLine& line,
                  const SearchStarter& begin) {
    const Inquiry inquiry = {config, game, line, begin};
    const int pass = line.getLastGoodPass();
    const Fate fate = line.getFate(pass);
    switch (fate.kind) {
    case Fate::LEFT:
        return answerLeft(inquiry, pass, fate);
    case Fate::NOT_REACHED:
        return answerNotReached(line, pass, fate);
    case Fate::FOLLOWED:
        break;
    case Fate::CUT_SHORT:
        if (fate.node == 0) {
            return {.verdict = "It tries no move: the position is a draw by the half-move clock.",
                    .details = sourceText(line, pass, fate, 0),
                    .pass = pass,
                    .node = 0,
                    .refutationNode = 0};
        }
    }
    return answerPlayed(inquiry, pass, fate);
}
