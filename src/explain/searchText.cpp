#include "explain/searchText.h"

#include "board/makeMove.h"
#include "notation/san.h"
#include "search/score.h"

#include <array>
#include <cstdio>

std::string scoreText(int score) {
    if (isBeyondMates(score)) {
        return score < 0 ? "-inf" : "+inf";
    }
    if (isMate(score)) {
        return score == MATED_EVALUATION ? "mated" : '#' + std::to_string(movesToMate(score));
    }
    std::array<char, 32> buffer;
    // Of an integer, so that there is no -0.00.
    std::snprintf(buffer.data(), buffer.size(), "%+.2f", toCentipawns(score) / 100.0);
    return buffer.data();
}

std::string countText(std::int64_t count) {
    std::string text = std::to_string(count);
    for (std::size_t place = text.size(); place > 3;) {
        place -= 3;
        text.insert(place, 1, ',');
    }
    return text;
}

std::string sideText(const Position& position) {
    return std::string(" for ") + COLOR_NAMES[at(position.colorToMove)];
}

std::string passText(const WatchedLine& line, int pass) {
    return "pass " + std::to_string(pass) + " (depth " + std::to_string(line.getPass(pass).depth) +
           ")";
}

std::string resultText(IdaNS::GeneratingResult result) {
    switch (result) {
    case IdaNS::FAILLOW:
        return "failed low, to be repeated";
    case IdaNS::FAILHIGH:
        return "failed high, to be repeated";
    case IdaNS::OK:
        return "good";
    case IdaNS::OK_FINISH:
        return "found a mate, which ends the search";
    }
    return "";
}

std::string endingText(MoveEnding ending) {
    switch (ending) {
    case MoveEnding::SEARCHED:
        return "searched";
    case MoveEnding::REPETITION:
        return "repetition, a draw";
    case MoveEnding::LMF_CUT:
    case MoveEnding::TABLE_LMF_CUT:
        return "cut by lmf";
    case MoveEnding::TABLE:
        return "answered by the table";
    case MoveEnding::STAND_PAT:
        return "answered by standing pat";
    case MoveEnding::NO_QUISCENCE:
        return "static score, without quiescence";
    case MoveEnding::QUIET:
        return "quiescence: static score of a quiet move";
    case MoveEnding::DEEPEST_PLY:
        return "quiescence: static score at the deepest ply";
    case MoveEnding::OUT_OF_REACH:
        return "quiescence: by material too far below alfa";
    case MoveEnding::CLOCK:
        return "draw by the half-move clock";
    case MoveEnding::CHECKMATE:
        return "checkmate";
    case MoveEnding::STALEMATE:
        return "stalemate";
    }
    return "";
}

std::string endingText(MoveEnding ending, Verdict verdict) {
    const std::string text = endingText(ending);
    if (isLmfCut(ending)) {
        return text;
    }
    switch (verdict) {
    case Verdict::FAILED_LOW:
        return text + ", failed low";
    case Verdict::INSIDE:
        return text + ", inside the window";
    case Verdict::FAILED_HIGH:
        return text + ", failed high";
    }
    return text;
}

std::string scoreText(const NodeMoveInfo& info) {
    const std::string score = scoreText(info.principalVariant.evaluation);
    if (!isBound(info)) {
        return score;
    }
    return (verdictOf(info) == Verdict::FAILED_LOW ? "<= " : ">= ") + score;
}

std::string lineText(const WatchedLine& line, int ply, const NodeMoveInfo& info) {
    std::vector<Move> moves = movesOf(info.principalVariant);
    moves.insert(moves.begin(), info.move);
    return lineToSan(line.getPosition(ply), moves, line.getGamePly(ply));
}

std::string afterText(const WatchedLine& line, int ply, const NodeMoveInfo& info) {
    const Position after = positionAfter(line.getPosition(ply), info.move);
    return lineToSan(after, movesOf(info.principalVariant), line.getGamePly(ply + 1));
}

std::string reportedLineText(const WatchedLine& line, int pass) {
    const Variant& reported = line.getPass(pass).line;
    const std::vector<Move> moves = movesOf(reported);
    std::string text = lineToSan(line.getPosition(0), moves, line.getGamePly(0));
    // The table answered for the first of these moves, and gave those after it.
    int answered = 0;
    while (answered < reported.varLength && !reported.get(answered).isHash) {
        ++answered;
    }
    Position position = line.getPosition(0);
    for (int i = 0; i < reported.varLength && i <= answered; ++i) {
        if (i == answered) {
            text +=
                "; the table answered " + toNumberedSan(position, moves[at(i)], line.getGamePly(i));
        }
        position = positionAfter(position, moves[at(i)]);
    }
    if (answered + 1 < reported.varLength) {
        const std::span rest = std::span(moves).subspan(at(answered) + 1);
        text += " and gave " + lineToSan(position, rest, line.getGamePly(answered + 1));
    }
    return text;
}

std::string leftOutText(const WatchedLine& line, int pass, int ply) {
    if (line.getNode(pass, ply) != nullptr) {
        return "never tried, as the node was cut off before";
    }
    if (ply == 0) {
        return "never tried: " + endingText(MoveEnding::CLOCK);
    }
    const NodeMoveInfo& before = *line.getLineMove(pass, ply - 1);
    return "never tried, as the search looked no further after " +
           toNumberedSan(line.getPosition(ply - 1), before.move, line.getGamePly(ply - 1)) + ": " +
           endingText(before.ending);
}
