#include "explain/review.h"

#include "board/gameEnd.h"
#include "explain/searchText.h"
#include "notation/san.h"
#include "search/idaVariant.h"
#include "search/score.h"

#include <algorithm>

namespace {

constexpr int MOST = 10 * pieceEvaluationValues[PAWN]; // scores count up to here
constexpr int LEAST_COST = pieceEvaluationValues[PAWN] / 2;
constexpr std::size_t MAX_COSTLIEST = 5;

// Numeric annotation glyphs.
constexpr int MISTAKE = 2;
constexpr int BLUNDER = 4;
constexpr int DUBIOUS = 6;

// What a search found in a position, for the side to move.
struct Judgement {
    int score = DRAW_EVALUATION;
    std::vector<Move> line{};
    int depth = 1;
};

bool isRaised(IdaVariant* slot) {
    return slot != nullptr && slot->isReady();
}

Judgement judge(const EngineConfig& config, const Game& game, std::int64_t nodes,
                IdaVariant* slot) {
    if (const auto end = findGameEnd(game)) {
        return {end->reason == EndReason::CHECKMATE ? MATED_EVALUATION : DRAW_EVALUATION};
    }
    SearchRequest request = depthRequest(game, MAX_PASSES);
    request.limits.nodes = nodes;
    const auto passes = searchPasses(*makeSearch(config), request, slot);
    const PassReport* const good = findLastGood(passes);
    if (good == nullptr) { // not even the first pass has ended
        return isRaised(slot) ? Judgement() : judge(config, game, 2 * nodes, slot);
    }
    return {good->line.evaluation, movesOf(good->line), good->depth};
}

// Why the search did not play the move.
Answer explainMove(const EngineConfig& config, const NumberedGame& game,
                   const ReviewedMove& reviewed, IdaVariant* slot) {
    Explain explain;
    const auto passes = watchSearch(*makeSearch(config), depthRequest(game, reviewed.depth),
                                    {reviewed.move}, explain, slot);
    if (passes.empty()) {
        return {};
    }
    const WatchedLine line(game, explain, passes);
    return answerLine(config, game, line, [slot] { return slot; });
}

int glyphOf(int cost) {
    constexpr int PAWN_VALUE = pieceEvaluationValues[PAWN];
    if (cost >= 3 * PAWN_VALUE) {
        return BLUNDER;
    }
    if (cost >= PAWN_VALUE) {
        return MISTAKE;
    }
    return cost >= LEAST_COST ? DUBIOUS : 0;
}

} // namespace

int ReviewedMove::getCost() const {
    if (!best.empty() && testMoveEquality(best.front(), move)) {
        return 0;
    }
    return std::max(std::clamp(before, -MOST, MOST) - std::clamp(after, -MOST, MOST), 0);
}

Review reviewGame(const EngineConfig& config, const PgnGame& game, std::int64_t nodes,
                  const std::function<void(const ReviewedMove&)>& onMove, IdaVariant* slot) {
    Review review;
    NumberedGame present = game.start;
    Judgement before = judge(config, present, nodes, slot);
    for (const PgnMove& played : game.moves) {
        present.play(played.move);
        Judgement after = judge(config, present, nodes, slot);
        if (isRaised(slot)) {
            return review;
        }
        review.moves.push_back({static_cast<int>(review.moves.size()), played.move, before.score,
                                furtherFromCheckMate(-after.score), before.line, before.depth});
        onMove(review.moves.back());
        before = std::move(after);
    }

    std::vector<ReviewedMove> costly;
    std::copy_if(review.moves.begin(), review.moves.end(), std::back_inserter(costly),
                 [](const ReviewedMove& move) { return move.getCost() >= LEAST_COST; });
    std::stable_sort(costly.begin(), costly.end(),
                     [](const auto& a, const auto& b) { return a.getCost() > b.getCost(); });
    costly.resize(std::min(costly.size(), MAX_COSTLIEST));
    for (const ReviewedMove& move : costly) {
        const NumberedGame start = game.after(at(move.ply));
        Answer answer = explainMove(config, start, move, slot);
        if (isRaised(slot)) {
            break;
        }
        review.costliest.push_back({move.ply, std::move(answer)});
    }
    return review;
}

PgnGame annotate(const PgnGame& game, const Review& review) {
    PgnGame annotated = game;
    for (const ReviewedMove& move : review.moves) {
        PgnMove& target = annotated.moves[at(move.ply)];
        const bool isWhite = game.after(at(move.ply)).position.colorToMove == WHITE;
        target.nag = glyphOf(move.getCost());
        target.comment = scoreText(isWhite ? move.after : -move.after);
    }
    for (const auto& [ply, answer] : review.costliest) {
        const NumberedGame after = game.after(at(ply) + 1);
        std::string& comment = annotated.moves[at(ply)].comment;
        comment += ". " + answer.getSummary();
        if (answer.refutationNode == 1 && !answer.refutation.empty()) {
            comment +=
                " Refutation: " + lineToSan(after.position, answer.refutation, after.ply) + '.';
        }
    }
    return annotated;
}
