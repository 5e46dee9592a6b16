#include "kestran-soak/checkedGame.h"

#include <algorithm>
#include <cctype>
#include <random>
#include <sstream>
#include <tuple>

namespace {

constexpr int LEAST_OPENING = 4; // plies of a random opening
constexpr int MOST_OPENING = 8;
constexpr int DRAWN_CLOCK = 100;
constexpr int DRAWN_REPETITIONS = 3;

template <class T> const T& pick(const std::vector<T>& round, std::size_t number) {
    return round[number % round.size()];
}

// Each time goes with each size of the table.
TimeControl timeOf(const SoakOptions& options, int number) {
    return pick(options.times, static_cast<std::size_t>(number));
}

int hashOf(const SoakOptions& options, int number) {
    return pick(options.hashes, static_cast<std::size_t>(number) / options.times.size());
}

// Nobody can give mate: at most one knight or bishop stands beside the kings.
bool isDead(const std::string& identity) {
    const std::string pieces = identity.substr(0, identity.find(' '));
    const auto count = [&](const std::string& kinds) {
        return std::ranges::count_if(
            pieces, [&](char letter) { return kinds.find(letter) != std::string::npos; });
    };
    return count("PRQprq") == 0 && count("NBnb") <= 1;
}

} // namespace

std::string toOneLine(std::string text) {
    std::ranges::replace_if(
        text, [](char letter) { return std::iscntrl(static_cast<unsigned char>(letter)) != 0; },
        ' ');
    return text;
}

std::string joinFaults(const std::vector<Finding>& findings) {
    std::string text;
    for (const Finding& finding : findings) {
        if (finding.isFault()) {
            text += (text.empty() ? "" : "; ") + finding.text;
        }
    }
    return text;
}

CheckedGame::CheckedGame(const SoakOptions& soakOptions, int number)
    : options(soakOptions), control(timeOf(soakOptions, number)), hash(hashOf(soakOptions, number)),
      clocks(control, true) {
    result.game.number = number;
    result.game.seed = options.seed;
    result.game.timeControl = control.text;
    playOpening();
    clocks = Clocks(control, board.isWhiteToMove());
}

void CheckedGame::playOpening() {
    std::seed_seq seeds{options.seed, static_cast<unsigned>(result.game.number)};
    std::mt19937 random(seeds);
    const std::size_t plies = LEAST_OPENING + random() % (MOST_OPENING - LEAST_OPENING + 1);
    legal = board.getLegalMoves();
    for (std::size_t ply = 0; ply < plies && !legal.empty(); ++ply) {
        play(std::string(pick(legal, random())));
    }
    // Every other game starts from the text of the position that it has led to.
    if (result.game.number % 2 != 0) {
        result.game.fen =
            board.getIdentity() + ' ' + std::to_string(board.getHalfMoveClock()) + " 1";
        result.game.moves.clear();
        occurrences.clear();
    }
    ++occurrences[board.getIdentity()];
    judge();
}

void CheckedGame::play(const std::string& move) {
    board.play(move);
    legal = board.getLegalMoves();
    result.game.moves += (result.game.moves.empty() ? "" : " ") + move;
    ++occurrences[board.getIdentity()];
}

std::string CheckedGame::getPositionLine() const {
    const auto& [fen, moves] = std::tie(result.game.fen, result.game.moves);
    return "position " + (fen.empty() ? "startpos" : "fen " + fen) +
           (moves.empty() ? "" : " moves " + moves);
}

std::int64_t CheckedGame::getTolerance() const {
    return control.moveTime > 0 ? options.grace : options.margin;
}

bool CheckedGame::isTooLate(std::int64_t used) const {
    return used - getAllowed() > getTolerance();
}

void CheckedGame::take(const std::string& move, std::int64_t used, std::int64_t excuse,
                       const std::string& circumstances) {
    const auto notice = [&](Finding::Kind kind, const std::string& text) {
        find(kind, text + circumstances);
    };
    if (!std::ranges::binary_search(legal, move)) {
        result.game.termination = "rules infraction";
        notice(Finding::Kind::ILLEGAL_MOVE, move);
        isEnded = true;
        return;
    }
    const std::string go = clocks.getGoLine();
    const std::int64_t beyond = clocks.take(used);
    result.lateness.add(beyond);
    const bool isByClock = control.moveTime == 0;
    const std::int64_t tolerance = getTolerance();
    const std::string text = '"' + go + "\" took " + std::to_string(used) + " ms, " +
                             std::to_string(beyond) + " too many";
    if (beyond - excuse > tolerance) {
        lose("time forfeit");
        notice(Finding::Kind::TIME_LOSS, text);
        return;
    }
    if (beyond > tolerance) {
        ++result.starved;
    } else if (isByClock && beyond > 0) {
        notice(Finding::Kind::OVERRUN, text);
    }
    play(move);
    ++result.plies;
    judge();
}

void CheckedGame::breakOff(const std::string& fault) {
    // A game that has come to its end stays as it is.
    if (!isEnded) {
        result.game.termination = "abandoned";
        isEnded = true;
    }
    find(Finding::Kind::PROTOCOL_FAULT, fault);
}

void CheckedGame::judge() {
    const std::string identity = board.getIdentity();
    if (legal.empty() && board.isInCheck()) {
        lose("normal");
    } else if (legal.empty() || board.getHalfMoveClock() >= DRAWN_CLOCK ||
               occurrences[identity] >= DRAWN_REPETITIONS || isDead(identity)) {
        draw();
    } else if (result.plies >= options.plies) {
        stop();
    }
}

void CheckedGame::lose(const std::string& termination) {
    result.game.result = board.isWhiteToMove() ? "0-1" : "1-0";
    result.game.termination = termination;
    isEnded = true;
}

void CheckedGame::draw() {
    result.game.result = "1/2-1/2";
    result.game.termination = "normal";
    isEnded = true;
}

void CheckedGame::find(Finding::Kind kind, const std::string& text) {
    result.findings.push_back({kind, "game " + std::to_string(result.game.number) + ", ply " +
                                         std::to_string(result.plies) + ": " + toOneLine(text)});
}

std::string CheckedGame::describe() const {
    const PlayedGame& game = result.game;
    std::ostringstream text;
    text << "Again: tools/soak 1 " << options.describeGames() << " --first " << game.number << '\n'
         << "Time: " << game.timeControl << ", table: " << hash << " MiB\n"
         << "Start: " << (game.fen.empty() ? "startpos" : game.fen) << '\n'
         << "Moves:" << (game.moves.empty() ? "" : " ") << game.moves << '\n'
         << "Position: " << board.getIdentity() << ' ' << board.getHalfMoveClock() << '\n';
    return text.str();
}
