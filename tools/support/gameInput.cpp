#include "support/gameInput.h"

#include "base/cppIoUtils.h"
#include "board/makeMove.h"
#include "notation/san.h"
#include "support/text.h"
#include "support/textFile.h"

namespace {

NumberedGame readStart(const std::vector<std::string>& words) {
    const std::string text = joined(splitString(joined(words)));
    NumberedGame game = makeNewGame();
    if (!text.empty() && text != "startpos") {
        if (const std::string fault = readGameStart(game, text); !fault.empty()) {
            throw UsageError("the position \"" + text + "\" cannot be played: " + fault);
        }
    }
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

NumberedGame readGame(const std::vector<std::string>& words, const std::string& moves) {
    NumberedGame game = readStart(words);
    for (const Move& move : readMoves(game.position, moves, "the game")) {
        game.play(move);
    }
    return game;
}

std::vector<EpdRecord> readEpdFile(const std::string& path) {
    std::ifstream file = openText(path);
    EpdText epd = readEpd(file);
    if (epd.faultLine != 0) {
        throw UsageError(path + ":" + std::to_string(epd.faultLine) + ": " + epd.fault);
    }
    if (file.bad()) {
        throw UsageError("the file " + path + " cannot be read to its end");
    }
    if (epd.records.empty()) {
        throw UsageError("the file " + path + " holds no position");
    }
    return std::move(epd.records);
}
