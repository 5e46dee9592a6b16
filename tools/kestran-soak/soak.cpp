#include "kestran-soak/soak.h"

#include "base/cppIoUtils.h"
#include "support/naiveRules.h"
#include "support/uciProcess.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <random>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr int LEAST_OPENING = 4; // plies of a random opening
constexpr int MOST_OPENING = 8;
constexpr int DRAWN_CLOCK = 100;
constexpr int DRAWN_REPETITIONS = 3;
constexpr long MOVE_TIME_GRACE = 150; // milliseconds that an answer may come late
constexpr long MEMORY_GROWTH = 4096;  // KiB that a process may gain after its first game
constexpr milliseconds REPLY_TIME{2000};
constexpr milliseconds ANSWER_TIME{10000};

// A way to measure time, in milliseconds. Without a clock `moveTime` counts.
struct TimeForm {
    long moveTime;
    long clock;
    long increment;
    int moves; // after which the clock gets its time again, 0 for never
};
constexpr std::array<TimeForm, 3> TIME_FORMS = {
    {{120, 0, 0, 0}, {0, 2000, 100, 0}, {0, 5000, 0, 40}}};
// The sizes of the table, by game in groups of all time forms.
constexpr std::array<int, 2> HASH_SIZES = {192, 16};

const std::string MOVES = "((?: [a-h][1-8][a-h][1-8][qrbn]?)+)";
const std::regex REPORT("info pv" + MOVES +
                        R"( score cp -?\d+ depth \d+ seldepth \d+ nodes \d+ time \d+ nps \d+ )");
const std::regex CLOSING("info pv" + MOVES);

// An engine that does not keep to the protocol.
class ProtocolFault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The engine's process, in the words of the protocol.
class Player {
public:
    Player(const std::string& path, const std::vector<std::string>& arguments)
        : process(path, arguments) {
        say("uci");
        expect("id name KESTRAN CHESS 1.1.2");
        expect("id author Bremo Talvik");
        expect("option name Hash type spin min 0 max 512 default 192 ");
        expect("uciok");
    }

    void say(const std::string& line) {
        if (!process.send(line)) {
            throw ProtocolFault("the engine reads no more");
        }
    }

    // Exactly this line comes next.
    void expect(const std::string& wanted) {
        const std::optional<std::string> line = process.readLine(REPLY_TIME);
        if (line != wanted) {
            throw ProtocolFault("not \"" + wanted + "\" but " +
                                (line ? '"' + *line + '"' : "nothing"));
        }
    }

    // Nothing stands in the pipe, and the engine hears.
    void expectQuiet() {
        say("isready");
        expect("readyok");
    }

    void setHash(int size) { say("setoption name Hash value " + std::to_string(size)); }

    // The move of the answer to a `go`. The lines of the answer are checked, and as moves
    // on `board`.
    std::string readAnswer(const NaiveBoard& board) {
        const Clock::time_point deadline = Clock::now() + ANSWER_TIME;
        std::vector<std::string> lines;
        while (lines.empty() || !lines.back().starts_with("bestmove ")) {
            const auto left = std::chrono::duration_cast<milliseconds>(deadline - Clock::now());
            std::optional<std::string> line = process.readLine(std::max(left, milliseconds(0)));
            if (!line) {
                throw ProtocolFault("no bestmove");
            }
            lines.push_back(std::move(*line));
        }
        answered = Clock::now();
        checkAnswer(lines, board);
        return lines.back().substr(std::string("bestmove ").size());
    }
    Clock::time_point getAnswered() const { return answered; }

    // With the smallest table in force.
    long getResidentKib() {
        setHash(1);
        say("position startpos moves a2a3 a7a6 h2h3");
        say("go movetime 0");
        NaiveBoard board;
        for (const char* move : {"a2a3", "a7a6", "h2h3"}) {
            board.play(move);
        }
        readAnswer(board);
        expectQuiet();
        return process.getResidentKib();
    }

    // Ends the process, which must do so at once and without complaint.
    void quit() {
        say("quit");
        const std::optional<UciProcess::End> end = process.waitForEnd(REPLY_TIME);
        if (!end || !end->exited || end->status != 0) {
            throw ProtocolFault("no clean end after quit");
        }
        if (!process.readErrors().empty()) {
            throw ProtocolFault("on standard error: " + process.readErrors());
        }
    }

private:
    static void checkLine(const std::string& line, const std::regex& form, NaiveBoard board) {
        std::smatch parts;
        if (!std::regex_match(line, parts, form)) {
            throw ProtocolFault("not of its form: \"" + line + '"');
        }
        for (const std::string& move : splitString(parts[1])) {
            if (!board.play(move)) {
                throw ProtocolFault("illegal move in \"" + line + '"');
            }
        }
    }

    static void checkAnswer(const std::vector<std::string>& lines, const NaiveBoard& board) {
        if (lines.size() < 2) {
            throw ProtocolFault("no closing line before \"" + lines.back() + '"');
        }
        for (std::size_t i = 0; i + 2 < lines.size(); ++i) {
            checkLine(lines[i], REPORT, board);
        }
        const std::string& closing = lines[lines.size() - 2];
        const std::vector<std::string> words = splitString(closing);
        if (words.size() < 3 || lines.back() != "bestmove " + words[2]) {
            throw ProtocolFault('"' + lines.back() + "\" behind \"" + closing + '"');
        }
        // A first move that is not legal is counted as such by the game.
        const std::vector<std::string> legal = board.getLegalMoves();
        if (std::ranges::binary_search(legal, words[2])) {
            checkLine(closing, CLOSING, board);
        }
    }

    UciProcess process;
    Clock::time_point answered;
};

// One game, of a number that decides all about it.
class Game {
public:
    Game(const SoakOptions& options, int number)
        : form(TIME_FORMS[static_cast<std::size_t>(number) % TIME_FORMS.size()]),
          margin(options.margin), mostPlies(options.plies),
          name("game " + std::to_string(number)), clocks{form.clock, form.clock} {
        hash = HASH_SIZES[static_cast<std::size_t>(number) / TIME_FORMS.size() % HASH_SIZES.size()];
        playOpening(options.seed, number);
    }

    SoakReport play(Player& player) {
        player.say("ucinewgame");
        player.setHash(hash);
        while (!isOver() && playMove(player)) {
        }
        report.games = 1;
        return report;
    }

    // What has been seen so far, and a fault that ends the game.
    SoakReport stop(const std::string& fault) {
        report.protocolFaults.push_back(describe(fault));
        return report;
    }

private:
    void playOpening(unsigned seed, int number) {
        std::seed_seq seeds{seed, static_cast<unsigned>(number)};
        std::mt19937 random(seeds);
        const std::size_t plies = LEAST_OPENING + random() % (MOST_OPENING - LEAST_OPENING + 1);
        for (std::size_t ply = 0; ply < plies; ++ply) {
            const std::vector<std::string> legal = board.getLegalMoves();
            if (legal.empty()) {
                break;
            }
            play(legal[random() % legal.size()]);
        }
        // Every other game starts from the text of the position that it has led to.
        if (number % 2 != 0) {
            start = "fen " + board.getIdentity() + ' ' + std::to_string(board.getHalfMoveClock()) +
                    " 1";
            moves.clear();
            occurrences.clear();
        }
        ++occurrences[board.getIdentity()];
    }

    void play(const std::string& move) {
        board.play(move);
        moves += ' ' + move;
        ++occurrences[board.getIdentity()];
    }

    bool isOver() {
        if (board.getLegalMoves().empty()) {
            int& wins = board.isWhiteToMove() ? report.blackWins : report.whiteWins;
            ++(board.isInCheck() ? wins : report.draws);
            return true;
        }
        if (board.getHalfMoveClock() >= DRAWN_CLOCK ||
            occurrences[board.getIdentity()] >= DRAWN_REPETITIONS) {
            ++report.draws;
            return true;
        }
        report.unfinished += report.plies >= mostPlies ? 1 : 0;
        return report.plies >= mostPlies;
    }

    std::string goLine() const {
        if (form.moveTime > 0) {
            return "go movetime " + std::to_string(form.moveTime);
        }
        std::string line =
            "go wtime " + std::to_string(clocks[0]) + " btime " + std::to_string(clocks[1]);
        if (form.moves > 0) {
            return line + " movestogo " +
                   std::to_string(form.moves - report.plies / 2 % form.moves);
        }
        const std::string increment = std::to_string(form.increment);
        return line + " winc " + increment + " binc " + increment;
    }

    // False if it has ended the game.
    bool playMove(Player& player) {
        player.say("position " + start + (moves.empty() ? "" : " moves" + moves));
        player.expectQuiet();
        const std::string go = goLine();
        const Clock::time_point began = Clock::now();
        player.say(go);
        const std::string move = player.readAnswer(board);
        const auto used =
            std::chrono::duration_cast<milliseconds>(player.getAnswered() - began).count();
        player.expectQuiet();
        const std::vector<std::string> legal = board.getLegalMoves();
        if (!std::ranges::binary_search(legal, move)) {
            report.illegalMoves.push_back(describe(move));
            return false;
        }
        if (!takeTime(used, go)) {
            return false;
        }
        play(move);
        ++report.plies;
        return true;
    }

    // Whether the mover has not lost on time.
    bool takeTime(long used, const std::string& go) {
        long left = form.moveTime + MOVE_TIME_GRACE - used;
        if (form.moveTime > 0) {
            report.latest = std::max(report.latest, used - form.moveTime);
        } else {
            // Sides take turns, whoever began.
            const std::size_t mover = board.isWhiteToMove() ? 0 : 1;
            clocks[mover] -= used;
            left = clocks[mover];
            clocks[mover] += form.increment;
            if (form.moves > 0 && report.plies / 2 % form.moves == form.moves - 1) {
                clocks[mover] += form.clock;
            }
        }
        if (left >= 0) {
            return true;
        }
        const std::string text = describe("\"" + go + "\" took " + std::to_string(used) + " ms, " +
                                          std::to_string(-left) + " too many");
        if (form.moveTime == 0 && -left <= margin) {
            report.overruns.push_back(text);
            return true;
        }
        ++(board.isWhiteToMove() ? report.blackWins : report.whiteWins);
        report.timeLosses.push_back(text);
        return false;
    }

    std::string describe(const std::string& fault) const {
        std::array<double, 1> load{};
        getloadavg(load.data(), 1);
        std::ostringstream text;
        text << name << ", ply " << report.plies << ", load " << load[0] << ": " << fault;
        return text.str();
    }

    TimeForm form;
    long margin;
    int mostPlies;
    int hash;
    std::string name;
    std::string start = "startpos";
    std::string moves;
    NaiveBoard board;
    std::map<std::string, int> occurrences;
    std::array<long, 2> clocks; // what is left, of White and of Black
    SoakReport report;
};

// The games of one process after another: the next one is started when one breaks.
class Job {
public:
    explicit Job(const SoakOptions& soakOptions) : options(soakOptions) {}

    SoakReport playGame(int number) {
        Game game(options, number);
        try {
            if (!player) {
                player = std::make_unique<Player>(options.engine, options.arguments);
                memory = {};
            }
            SoakReport report = game.play(*player);
            memory.last = player->getResidentKib();
            memory.first = memory.first == 0 ? memory.last : memory.first;
            return report;
        } catch (const std::runtime_error& fault) {
            player.reset();
            return game.stop(fault.what());
        }
    }

    SoakReport finish() {
        SoakReport report;
        if (player) {
            report.memory = {memory};
            try {
                player->quit();
            } catch (const ProtocolFault& fault) {
                report.protocolFaults.emplace_back(fault.what());
            }
        }
        return report;
    }

private:
    const SoakOptions& options;
    std::unique_ptr<Player> player;
    SoakReport::Memory memory;
};

template <class T> void append(std::vector<T>& all, const std::vector<T>& more) {
    all.insert(all.end(), more.begin(), more.end());
}

} // namespace

bool SoakReport::isClean() const {
    return timeLosses.empty() && illegalMoves.empty() && protocolFaults.empty() &&
           std::ranges::all_of(
               memory, [](const Memory& one) { return one.last - one.first <= MEMORY_GROWTH; });
}

void SoakReport::add(const SoakReport& other) {
    games += other.games;
    plies += other.plies;
    whiteWins += other.whiteWins;
    blackWins += other.blackWins;
    draws += other.draws;
    unfinished += other.unfinished;
    append(timeLosses, other.timeLosses);
    append(illegalMoves, other.illegalMoves);
    append(protocolFaults, other.protocolFaults);
    append(overruns, other.overruns);
    latest = std::max(latest, other.latest);
    append(memory, other.memory);
}

SoakReport runSoak(const SoakOptions& options,
                   const std::function<void(const SoakReport&)>& onGame) {
    SoakReport total;
    std::mutex mutex;
    std::atomic<int> next = options.first;
    const auto work = [&] {
        Job job(options);
        for (int number = next++; number < options.first + options.games; number = next++) {
            const SoakReport report = job.playGame(number);
            const std::lock_guard lock(mutex);
            total.add(report);
            if (onGame) {
                onGame(total);
            }
        }
        const SoakReport report = job.finish();
        const std::lock_guard lock(mutex);
        total.add(report);
    };
    std::vector<std::thread> threads;
    threads.reserve(static_cast<std::size_t>(options.jobs));
    for (int i = 0; i < options.jobs; ++i) {
        threads.emplace_back(work);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return total;
}
