#include "support/gameInput.h"

#include "base/cppIoUtils.h"
#include "board/makeMove.h"
#include "board/setUp.h"
#include "notation/fen.h"
#include "notation/longAlgebraicMove.h"
#include "support/commandLine.h"
#include "support/san.h"

#include <algorithm>

namespace {

Position readPosition(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& quoted : words) {
        for (const std::string& word : splitString(quoted)) {
            text += (text.empty() ? "" : " ") + word;
        }
    }
    Position position;
    if (text.empty() || text == "startpos") {
        initializeToStartPosition(position);
        return position;
    }
    const std::string fault = readPlayableFen(position, text);
    if (!fault.empty()) {
        throw UsageError("the position \"" + text + "\" cannot be played: " + fault);
    }
    return position;
}

std::string illegalText(std::size_t index, const std::string& what, const std::string& word) {
    return "move " + std::to_string(index + 1) + " of " + what + ", \"" + word +
           "\", is not legal in its position";
}

} // namespace

std::vector<Move> readMoves(Position position, const std::string& text, const std::string& what) {
    std::vector<Move> moves;
    for (const std::string& word : splitString(text)) {
        MoveArray legal;
        const auto end = legal.begin() + generateLegalMoves(position, legal);
        const auto move = std::find_if(legal.begin(), end, [&](const Move& candidate) {
            return LongAlgebraicMove(candidate).toString() == word;
        });
        if (move == end) {
            throw UsageError(illegalText(moves.size(), what, word));
        }
        moves.push_back(*move);
        position = positionAfter(position, *move);
    }
    return moves;
}

Game readGame(const std::vector<std::string>& words, const std::string& moves) {
    Game game = {readPosition(words), {}};
    game.repetitionHashes.push_back(game.position.carried.hash);
    for (const Move& move : readMoves(game.position, moves, "the game")) {
        game.position = positionAfter(game.position, move);
        game.repetitionHashes.push_back(game.position.carried.hash);
    }
    return game;
}
