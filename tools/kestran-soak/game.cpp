#include "kestran-soak/game.h"

#include "notation/pgn.h"
#include "support/gameInput.h"
#include "support/text.h"

#include <algorithm>
#include <random>
#include <sstream>

namespace {

constexpr int LEAST_OPENING = 4; // plies of a random opening
constexpr int MOST_OPENING = 8;
constexpr int DRAWN_CLOCK = 100; // half moves
constexpr int DRAWN_REPETITIONS = 3;

template <class T> const T& pick(const std::vector<T>& turns, std::size_t number) {
    return turns[number % turns.size()];
}

} // namespace

TimeControl parseTimeControl(const std::string& text) {
    const std::string what =
        "a time is like 1/0.001, 2+0.1 or 40/5; of \"" + text + "\", each part";
    const std::size_t slash = text.find('/'); // may be npos, which is one less than 0
    const std::size_t plus = text.find('+');
    TimeControl control;
    if (slash != std::string::npos) {
        control.moves = parseNumber(text.substr(0, slash), what, 1, 1000);
    }
    control.clock = parseSeconds(text.substr(slash + 1, plus - slash - 1), what, MAX_SECONDS);
    if (plus != std::string::npos) {
        control.increment = parseSeconds(text.substr(plus + 1), what, MAX_SECONDS);
    }
    return control;
}

std::string toPgn(const GameRecord& record) {
    PgnGame game = beginPgnGame("Soak", std::to_string(record.number), record.white, record.black);
    game.setTag("Termination", record.termination);
    game.setTag("TimeControl", record.timeControl);
    game.start = readGame({record.fen}, "");
    for (const Move& move : readMoves(game.start.position, record.moves, "the game")) {
        game.moves.push_back({move});
    }
    (game.moves.empty() ? game.comment : game.moves.back().comment) = record.comment;
    game.result = record.result;
    return toPgn(game);
}

SoakGame::SoakGame(const GameOptions& gameOptions, int number)
    : options(gameOptions), opening(static_cast<std::size_t>(number / (options.isMatch ? 2 : 1))),
      control(parseTimeControl(pick(options.times, opening))),
      hash(pick(options.hashes, opening / options.times.size())) {
    record.number = number;
    record.timeControl = pick(options.times, opening);
    left.fill(control.clock);
    std::seed_seq seeds{options.seed, static_cast<int>(opening)};
    std::mt19937 random(seeds);
    const std::size_t plies = LEAST_OPENING + random() % (MOST_OPENING - LEAST_OPENING + 1);
    for (std::size_t ply = 0; ply < plies && !board.legalMoves().empty(); ++ply) {
        play(std::string(pick(board.legalMoves(), random())));
    }
    // Every other opening is sent as a FEN instead of moves.
    if (opening % 2 != 0) {
        record.fen = board.identity() + ' ' + std::to_string(board.clock) + " 1";
        record.moves.clear();
        occurrences = {{board.identity(), 1}};
    }
    judge();
}

void SoakGame::play(const std::string& move) {
    record.moves += (record.moves.empty() ? "" : " ") + move;
    board.play(move);
    ++occurrences[board.identity()];
}

std::string SoakGame::getPositionLine() const {
    return "position " + (record.fen.empty() ? "startpos" : "fen " + record.fen) +
           (record.moves.empty() ? "" : " moves ") + record.moves;
}

std::string SoakGame::getGoLine() const {
    if (control.isPerMove()) {
        return "go movetime " + std::to_string(control.clock);
    }
    std::ostringstream line;
    line << "go wtime " << left[0] << " btime " << left[1];
    if (control.moves > 0) {
        line << " movestogo " << control.moves - record.plies / 2 % control.moves;
    }
    if (control.increment > 0) {
        line << " winc " << control.increment << " binc " << control.increment;
    }
    return line.str();
}

std::int64_t SoakGame::getAllowed() const {
    return control.isPerMove() ? control.clock : left.at(plain::at(board.side));
}

void SoakGame::take(const std::string& move, std::int64_t used) {
    const std::int64_t over = std::max<std::int64_t>(used - getAllowed(), 0);
    ++record.overruns[over];
    if (over > options.margin) {
        throw Fault(Fault::TIME_LOSS, '"' + getGoLine() + "\" took " + std::to_string(used) +
                                          " ms, " + std::to_string(over) + " too many");
    }
    std::int64_t& own = left.at(plain::at(board.side));
    const bool isRenewed = control.moves > 0 && (record.plies / 2 + 1) % control.moves == 0;
    own = std::max<std::int64_t>(own + control.increment - used, 1);
    own += isRenewed ? control.clock : 0;
    play(move);
    ++record.plies;
    judge();
}

void SoakGame::note(Fault::Kind kind, bool isWhite, const std::string& text) {
    constexpr std::array TERMINATIONS = {"", "time forfeit", "rules infraction", "abandoned"};
    if (!isOver()) {
        end(isWhite ? "0-1" : "1-0", TERMINATIONS.at(kind));
    }
    record.fault = kind;
    record.comment = text;
}

void SoakGame::judge() {
    const bool hasMoves = !board.legalMoves().empty();
    if (!hasMoves && board.isInCheck()) {
        end(board.side == plain::WHITE ? "0-1" : "1-0", "normal");
    } else if (!hasMoves || board.clock >= DRAWN_CLOCK ||
               occurrences[board.identity()] >= DRAWN_REPETITIONS || !board.canAnyoneMate()) {
        end("1/2-1/2", "normal");
    } else if (record.plies >= options.plies) {
        end("1/2-1/2", "adjudication");
    }
}

void SoakGame::end(const std::string& result, const std::string& termination) {
    record.result = result;
    record.termination = termination;
}
