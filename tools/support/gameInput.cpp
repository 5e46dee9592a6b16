#include "support/gameInput.h"

#include "base/cppIoUtils.h"
#include "board/makeMove.h"
#include "notation/pgnReader.h"
#include "notation/san.h"
#include "support/cli.h"
#include "support/text.h"
#include "support/textFile.h"

#include <iterator>
#include <limits>

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

} // namespace

std::vector<Move> readMoves(Position position, const std::string& text, const std::string& what) {
    std::vector<Move> moves;
    for (const std::string& wholeWord : splitString(text)) {
        const std::string word = withoutMoveNumber(wholeWord);
        if (isMoveMark(word)) {
            continue;
        }
        std::string fault;
        const std::optional<Move> move = findMove(position, word, fault);
        if (!move) {
            std::string reason = "move ";
            reason.append(std::to_string(moves.size() + 1)).append(" of ").append(what);
            throw UsageError(reason.append(", \"").append(word).append("\", ").append(fault));
        }
        moves.push_back(*move);
        position = positionAfter(position, *move);
    }
    return moves;
}

void addPgnOptions(Program& program, PgnSource& source) {
    constexpr int ANY_NUMBER = std::numeric_limits<int>::max();
    program.addText("--pgn", source.path, "FILE",
                    "take the position from a game in a PGN file instead");
    program.addNumber("--game", source.game, 1, ANY_NUMBER, "N", "which game of the PGN file");
    program.needs("--game", "--pgn");
    program.addNumber("--ply", source.ply, 0, ANY_NUMBER, "N",
                      "after how many of its half moves; if not given, at its end");
    program.needs("--ply", "--pgn");
}

PgnGame readWholeGame(const PgnSource& source) {
    std::ifstream file = openText(*source.path);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    PgnReader reader(text);
    std::optional<PgnGame> game;
    for (int number = 1; number <= source.game; ++number) {
        game = reader.next();
        if (const auto& fault = reader.getFault()) {
            throw UsageError(*source.path + ':' + std::to_string(fault->line) + ':' +
                             std::to_string(fault->column) + ": " + fault->reason);
        }
        if (!game) {
            throw UsageError("the file " + *source.path + " has no game " +
                             std::to_string(source.game) +
                             (number > 1 ? "; the last one is " + std::to_string(number - 1) : ""));
        }
    }
    return *game;
}

NumberedGame readPgnGame(const PgnSource& source) {
    const PgnGame game = readWholeGame(source);
    const std::size_t ply = source.ply ? static_cast<std::size_t>(*source.ply) : game.moves.size();
    if (ply > game.moves.size()) {
        throw UsageError("game " + std::to_string(source.game) + " of " + *source.path + " has " +
                         std::to_string(game.moves.size()) + " plies, fewer than " +
                         std::to_string(ply));
    }
    return game.after(ply);
}

NumberedGame readGame(const std::vector<std::string>& words, const std::string& moves,
                      const PgnSource& pgn) {
    if (pgn.path && !words.empty()) {
        throw UsageError("a position comes from FEN or from --pgn, not from both");
    }
    NumberedGame game = pgn.path ? readPgnGame(pgn) : readStart(words);
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
