#include "support/gameInput.h"

#include "base/cppIoUtils.h"
#include "board/makeMove.h"
#include "board/setUp.h"
#include "notation/fen.h"
#include "support/san.h"
#include "support/text.h"
#include "support/uciLines.h"

#include <algorithm>

namespace {

constexpr std::size_t NUMBER_FIELD = 5; // of FEN, from 0
constexpr long long MAX_MOVE_NUMBER = 1'000'000;

// The number of the move in a FEN; 1 if there is none, or one that makes no sense.
int readMoveNumber(const std::string& fen) {
    const std::vector<std::string> fields = splitString(fen);
    const auto number =
        fields.size() > NUMBER_FIELD ? matchForm(fields[NUMBER_FIELD], "#") : std::nullopt;
    return number ? static_cast<int>(std::clamp(number->numbers.front(), 1LL, MAX_MOVE_NUMBER)) : 1;
}

NumberedGame readStart(const std::vector<std::string>& words) {
    const std::string text = joined(splitString(joined(words)));
    NumberedGame game = {};
    Position& position = game.position;
    if (text.empty() || text == "startpos") {
        initializeToStartPosition(position);
    } else if (const std::string fault = readPlayableFen(position, text); !fault.empty()) {
        throw UsageError("the position \"" + text + "\" cannot be played: " + fault);
    }
    game.ply = 2 * (readMoveNumber(text) - 1) + (position.colorToMove == BLACK ? 1 : 0);
    game.repetitionHashes.push_back(position.incremental.hash);
    return game;
}

// A word without the number of a move before it, such as "12." or "3...".
std::string withoutNumber(const std::string& word) {
    const std::size_t digits = std::min(word.find_first_not_of("0123456789"), word.size());
    if (digits < word.size() && word[digits] != '.') {
        return word;
    }
    return word.substr(std::min(word.find_first_not_of('.', digits), word.size()));
}

// Whether a word holds nothing but marks after a move.
bool isMark(const std::string& word) {
    return word.find_first_not_of("*!?+#") == std::string::npos;
}

Move readMove(const Position& position, const std::string& word, const std::string& place) {
    const std::vector<Move> moves = findMoves(position, word);
    if (moves.size() == 1) {
        return moves.front();
    }
    std::string fault = ", \"" + word + "\", is not legal in its position";
    if (!moves.empty()) {
        fault = ", \"" + word + "\", can mean more than one move:";
        for (const Move& move : moves) {
            fault += ' ' + toSan(position, move);
        }
    }
    throw UsageError(place + fault);
}

} // namespace

std::vector<Move> readMoves(Position position, const std::string& text, const std::string& what) {
    std::vector<Move> moves;
    for (const std::string& wholeWord : splitString(text)) {
        const std::string word = withoutNumber(wholeWord);
        if (isMark(word)) {
            continue;
        }
        const std::string place = "move " + std::to_string(moves.size() + 1) + " of " + what;
        moves.push_back(readMove(position, word, place));
        position = positionAfter(position, moves.back());
    }
    return moves;
}

std::string getWholeFen(const NumberedGame& game) {
    return getFen(game.position) + ' ' + std::to_string(game.ply / 2 + 1);
}

NumberedGame readGame(const std::vector<std::string>& words, const std::string& moves) {
    NumberedGame game = readStart(words);
    for (const Move& move : readMoves(game.position, moves, "the game")) {
        game.position = positionAfter(game.position, move);
        game.repetitionHashes.push_back(game.position.incremental.hash);
        ++game.ply;
    }
    return game;
}
