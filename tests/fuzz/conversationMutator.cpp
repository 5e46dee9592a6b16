// Changes conversations by what they are made of: lines, games, positions, options and limits.
// One change in four is left to libFuzzer, which changes bytes and inserts words.

#include "fuzz/fuzz.h"
#include "search/caseMaker.h"
#include "search/plainGame.h"
#include "testing/dice.h"

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace {

const std::string STARTPOS = "position startpos";
const std::string FEN = "position fen ";

std::vector<std::string> split(const std::string& text, char end) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, end);) {
        parts.push_back(part);
    }
    return parts;
}

std::string join(const std::vector<std::string>& parts, char end) {
    std::string text;
    for (const std::string& part : parts) {
        text += part + end;
    }
    return text;
}

// A `position` line, taken apart.
struct PositionLine {
    std::string head;               // up to the moves
    std::string fen;                // empty if the engine does not take it
    std::vector<std::string> moves; // as in the text
};

PositionLine readPosition(const std::string& line) {
    const std::string words = " moves";
    const std::size_t place = std::min(line.find(words), line.size());
    PositionLine position;
    position.head = line.substr(0, place);
    position.fen = PlayingSearch::accept(
        position.head.starts_with(FEN) ? position.head.substr(FEN.size()) : CaseMaker::START_FEN);
    position.moves = split(line.substr(std::min(place + words.size() + 1, line.size())), ' ');
    return position;
}

std::string toLine(const PositionLine& position) {
    return position.moves.empty() ? position.head
                                  : position.head + " moves " + join(position.moves, ' ');
}

class Mutator : private Dice {
public:
    explicit Mutator(unsigned seed) : Dice(seed), cases(seed) {}

    std::string change(const std::string& text) {
        lines = split(text, '\n');
        for (int changes = pick({1, 1, 2, 4}); changes > 0; --changes) {
            changeOnce();
        }
        return join(lines, '\n');
    }

private:
    std::size_t place() { return at(below(static_cast<int>(lines.size()))); }
    auto before(std::size_t index) { return lines.begin() + static_cast<std::ptrdiff_t>(index); }

    void changeOnce() {
        const int kind = lines.empty() ? 0 : below(6);
        if (kind == 0) {
            lines.insert(before(at(below(static_cast<int>(lines.size()) + 1))), makeLine());
        } else if (kind == 1) {
            lines[place()] = makeLine();
        } else if (kind == 2) {
            lines.erase(before(place()));
        } else if (kind == 3) {
            const std::string copy = lines[place()];
            lines.insert(before(place()), copy);
        } else {
            changeGame();
        }
    }

    // ---- New lines ----

    std::string makeLine() {
        const int kind = below(10);
        if (kind < 7) {
            return kind < 3 ? makePosition() : kind < 6 ? makeGo() : makeOption();
        }
        return pick<const char*>({"uci", "isready", "ucinewgame", "stop", "stop", "debug on",
                                  "debug off", "ponderhit", "register later", "quit", "",
                                  "isready\r", "go perft 2", "d", "eval"});
    }

    std::string makePosition() {
        const SearchCase example = cases.make();
        const bool isStart = example.fen.starts_with(CaseMaker::START_FEN);
        return toLine({isStart ? STARTPOS : FEN + example.fen, example.fen, example.moves});
    }

    std::string makeNumber() {
        if (chance(30)) {
            return pick<const char*>({"0", "1", "-1", "2147483647", "2147483648", "-2147483649",
                                      "9223372036854775807", "99999999999999999999", "1e3", "x"});
        }
        return std::to_string(below(pick({4, 120, 5000, 1000000})));
    }

    std::string makeGo() {
        std::string line = "go";
        for (int limits = pick({0, 1, 1, 2, 4}); limits > 0; --limits) {
            line += pick<const char*>({" wtime ", " btime ", " winc ", " binc ", " movestogo ",
                                       " movetime ", " depth ", " nodes ", " mate ", " infinite ",
                                       " ponder "}) +
                    makeNumber();
        }
        return chance(10) ? line + " searchmoves " + join(cases.make().moves, ' ') : line;
    }

    std::string makeOption() {
        const std::string name =
            pick<const char*>({"Hash", "Hash", "hash", "OwnBook", "Move Overhead", "Clear Hash",
                               "MultiPV", "UCI_Elo", "UCI_LimitStrength", "BookFile"});
        const bool isSwitch = name == "OwnBook" || name == "UCI_LimitStrength";
        return "setoption name " + name + " value " +
               (isSwitch ? std::string(pick({"true", "false"})) : makeNumber());
    }

    // ---- Old lines ----

    // Plays on from some place of a game, or ends it there.
    void changeGame() {
        const auto isGame = [](const std::string& line) { return line.starts_with("position "); };
        if (std::ranges::none_of(lines, isGame)) {
            lines.insert(lines.begin(), makePosition());
            return;
        }
        std::size_t index = place();
        while (!isGame(lines[index])) {
            index = (index + 1) % lines.size();
        }
        PositionLine position = readPosition(lines[index]);
        if (chance(40)) {
            position.moves.resize(at(below(static_cast<int>(position.moves.size()) + 1)));
        }
        if (!position.fen.empty() && chance(80)) {
            PlainGame game(position.fen);
            for (const std::string& move : position.moves) {
                game.play(move);
            }
            const int toAndFro = pick({0, 0, 50});
            for (int plies = pick({1, 2, below(20), below(200)}); plies > 0; --plies) {
                game.playAny(*this, toAndFro);
            }
            position.moves = game.getMoves();
        }
        lines[index] = toLine(position);
    }

    CaseMaker cases;
    std::vector<std::string> lines;
};

} // namespace

// libFuzzer's own changes.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

// Called by libFuzzer in their place. Returns the new size.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned seed);
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned seed) {
    const std::string text = seed % 4 == 0 ? "" : Mutator(seed / 4).change(textOf(data, size));
    if (text.empty() || text.size() > maxSize) {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    std::ranges::copy(text, data);
    return text.size();
}
