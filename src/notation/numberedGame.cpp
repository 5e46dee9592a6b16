#include "notation/numberedGame.h"

#include "base/cppIoUtils.h"
#include "board/makeMove.h"
#include "board/setUp.h"
#include "notation/fen.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr std::size_t NUMBER_FIELD = 5; // of FEN, from 0
constexpr int MAX_MOVE_NUMBER = 1'000'000;

// The number of the move in a FEN; 1 if there is none, or one that makes no sense.
int readMoveNumber(const std::string& fen) {
    const std::vector<std::string> fields = splitString(fen);
    if (fields.size() <= NUMBER_FIELD) {
        return 1;
    }
    const std::string& text = fields[NUMBER_FIELD];
    const char* end = text.data() + text.size();
    int number = 0;
    const auto [stopped, fault] = std::from_chars(text.data(), end, number);
    const bool isNumber = fault == std::errc() && stopped == end;
    return isNumber ? std::clamp(number, 1, MAX_MOVE_NUMBER) : 1;
}

NumberedGame makeGame(const Position& position, int number) {
    NumberedGame game = {};
    game.position = position;
    game.repetitionHashes.push_back(position.incremental.hash);
    game.ply = 2 * (number - 1) + (position.colorToMove == BLACK ? 1 : 0);
    return game;
}

} // namespace

void NumberedGame::play(const Move& move) {
    position = positionAfter(position, move);
    repetitionHashes.push_back(position.incremental.hash);
    ++ply;
}

NumberedGame makeNewGame() {
    Position position;
    initializeToStartPosition(position);
    return makeGame(position, 1);
}

std::string readGameStart(NumberedGame& game, const std::string& fen) {
    Position position;
    std::string fault = readPlayableFen(position, fen);
    if (fault.empty()) {
        game = makeGame(position, readMoveNumber(fen));
    }
    return fault;
}

std::string getWholeFen(const NumberedGame& game) {
    return getFen(game.position) + ' ' + std::to_string(game.ply / 2 + 1);
}
