#include "kestran-soak/soak.h"

#include "kestran-soak/player.h"
#include "support/naiveRules.h"
#include "support/textFile.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iomanip>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace {

using Clock = Player::Clock;
using std::chrono::milliseconds;

constexpr int LEAST_OPENING = 4; // plies of a random opening
constexpr int MOST_OPENING = 8;
constexpr int DRAWN_CLOCK = 100;
constexpr int DRAWN_REPETITIONS = 3;
constexpr long MOVE_TIME_GRACE = 150; // milliseconds that an answer may come late
constexpr long MEMORY_GROWTH = 4096;  // KiB that a process may gain after its first game

// A way to measure time, in milliseconds. Without a clock `moveTime` counts.
struct TimeForm {
    long moveTime;
    long clock;
    long increment;
    int moves;        // after which the clock gets its time again, 0 for never
    const char* text; // the same in seconds, as PGN has it
};
constexpr std::array<TimeForm, 3> TIME_FORMS = {
    {{120, 0, 0, 0, "1/0.12"}, {0, 2000, 100, 0, "2+0.1"}, {0, 5000, 0, 40, "40/5"}}};
// The sizes of the table, by game in groups of all time forms.
constexpr std::array<int, 2> HASH_SIZES = {192, 16};

// One game, of a number that decides all about it.
class Game {
public:
    Game(const SoakOptions& _options, int number)
        : options(_options),
          form(TIME_FORMS[static_cast<std::size_t>(number) % TIME_FORMS.size()]) {
        clocks.fill(form.clock);
        hash = HASH_SIZES[static_cast<std::size_t>(number) / TIME_FORMS.size() % HASH_SIZES.size()];
        game.number = number;
        game.seed = options.seed;
        game.timeControl = form.text;
        playOpening();
    }

    // Plays to the end, which may be a fault. ProtocolFault if the engine is no longer one.
    void play(Player& player) {
        player.say("ucinewgame");
        player.setHash(hash);
        while (!isOver() && playMove(player)) {
        }
        report.games = 1;
    }

    // A fault against the protocol, found now.
    void breakOff(const std::string& fault) {
        endByFault(report.protocolFaults, fault, "abandoned");
    }

    // What has been seen so far.
    SoakReport getReport() const {
        SoakReport result = report;
        result.record = {game};
        return result;
    }

    // Empty as long as there is none.
    const std::string& getFault() const { return game.fault; }

    // How to come back to where the game stands, for a person.
    std::string describe() const {
        std::ostringstream text;
        text << "Again: tools/soak 1 --seed " << game.seed << " --first " << game.number << '\n'
             << "Time: " << game.timeControl << ", table: " << hash << " MiB\n"
             << "Start: " << (game.fen.empty() ? "startpos" : game.fen) << '\n'
             << "Moves:" << moveText() << '\n'
             << "Position: " << board.getIdentity() << ' ' << board.getHalfMoveClock() << '\n';
        return text.str();
    }

private:
    void playOpening() {
        std::seed_seq seeds{game.seed, static_cast<unsigned>(game.number)};
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
        if (game.number % 2 != 0) {
            game.fen = board.getIdentity() + ' ' + std::to_string(board.getHalfMoveClock()) + " 1";
            game.moves.clear();
            occurrences.clear();
        }
        ++occurrences[board.getIdentity()];
    }

    void play(const std::string& move) {
        board.play(move);
        game.moves.push_back(move);
        ++occurrences[board.getIdentity()];
    }

    // Each with a blank before it.
    std::string moveText() const {
        std::string text;
        for (const std::string& move : game.moves) {
            text += ' ' + move;
        }
        return text;
    }

    // The side to move loses.
    void lose(const std::string& termination) {
        const bool byBlack = board.isWhiteToMove();
        ++(byBlack ? report.blackWins : report.whiteWins);
        game.result = byBlack ? "0-1" : "1-0";
        game.termination = termination;
    }

    void draw() {
        ++report.draws;
        game.result = "1/2-1/2";
        game.termination = "normal";
    }

    void endByFault(std::vector<std::string>& faults, const std::string& fault,
                    const std::string& termination) {
        faults.push_back(faultText(fault));
        game.fault += (game.fault.empty() ? "" : "; ") + faults.back();
        // A game that has come to its end stays as it is.
        game.termination = report.games == 0 ? termination : game.termination;
    }

    bool isOver() {
        if (board.getLegalMoves().empty()) {
            board.isInCheck() ? lose("normal") : draw();
            return true;
        }
        if (board.getHalfMoveClock() >= DRAWN_CLOCK ||
            occurrences[board.getIdentity()] >= DRAWN_REPETITIONS) {
            draw();
            return true;
        }
        if (report.plies >= options.plies || (options.isStopWanted && options.isStopWanted())) {
            ++report.unfinished;
            return true;
        }
        return false;
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
        player.say("position " + (game.fen.empty() ? "startpos" : "fen " + game.fen) +
                   (game.moves.empty() ? "" : " moves" + moveText()));
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
            endByFault(report.illegalMoves, move, "rules infraction");
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
        const std::string text = '"' + go + "\" took " + std::to_string(used) + " ms, " +
                                 std::to_string(-left) + " too many";
        if (form.moveTime == 0 && -left <= options.margin) {
            report.overruns.push_back(faultText(text));
            return true;
        }
        lose("time forfeit");
        endByFault(report.timeLosses, text, "time forfeit");
        return false;
    }

    std::string faultText(const std::string& fault) const {
        std::array<double, 1> load{};
        getloadavg(load.data(), 1);
        std::ostringstream text;
        text << "game " << game.number << ", ply " << report.plies << ", load "
             << std::setprecision(3) << load[0] << ": " << fault;
        return text.str();
    }

    const SoakOptions& options;
    TimeForm form;
    int hash; // mebibytes
    PlayedGame game;
    NaiveBoard board;
    std::map<std::string, int> occurrences;
    std::array<long, 2> clocks; // what is left, of White and of Black
    SoakReport report;          // without the game itself
};

// The games of one process after another: the next one is started when one breaks.
class Job {
public:
    explicit Job(const SoakOptions& soakOptions) : options(soakOptions) {}

    // CannotStart if there is no engine.
    SoakReport playGame(int number) {
        Game game(options, number);
        try {
            startPlayer();
            game.play(*player);
            memory.last = player->getResidentKib();
            memory.first = memory.first == 0 ? memory.last : memory.first;
        } catch (const ProtocolFault& fault) {
            game.breakOff(fault.what());
            isBroken = true;
        }
        SoakReport report = game.getReport();
        if (!game.getFault().empty()) {
            const std::string name = "soak-seed" + std::to_string(options.seed) + "-game" +
                                     std::to_string(number) + ".txt";
            noteRecord(report, writeRecord(name, game.getFault(), game.describe()));
        }
        return report;
    }

    SoakReport finish() {
        SoakReport report;
        if (player && !isBroken) {
            report.memory = {memory};
            try {
                player->quit();
            } catch (const ProtocolFault& fault) {
                report.protocolFaults.emplace_back(fault.what());
                const std::string name = "soak-quit" + std::to_string(player->getPid()) + ".txt";
                noteRecord(report, writeRecord(name, fault.what(), ""));
            }
        }
        return report;
    }

private:
    void startPlayer() {
        if (player && !isBroken) {
            player->forgetConversation();
            return;
        }
        player = std::make_unique<Player>(options.engine, options.arguments);
        isBroken = false;
        memory = {};
        player->greet();
    }

    // Leaves all that is known of a fault in a file. Returns where, in words.
    std::string writeRecord(const std::string& name, const std::string& fault,
                            const std::string& circumstances) {
        const std::string process = player->describeProcess(); // before its last words
        const std::string path = (std::filesystem::path(options.records) / name).string();
        try {
            std::filesystem::create_directories(options.records);
            writeWhole(path, "Fault: " + fault + '\n' + circumstances +
                                 "Engine: " + options.engine + ", " + process +
                                 "Conversation, milliseconds since the engine was started:\n" +
                                 player->getConversation());
            return "all of it in " + path;
        } catch (const std::runtime_error& failure) {
            return std::string("no record, as ") + failure.what();
        }
    }

    // All faults of a game are in one record.
    static void noteRecord(SoakReport& report, const std::string& where) {
        for (auto* faults : {&report.timeLosses, &report.illegalMoves, &report.protocolFaults}) {
            for (std::string& fault : *faults) {
                fault += "; " + where;
            }
        }
    }

    const SoakOptions& options;
    std::unique_ptr<Player> player; // null before the first game
    bool isBroken = false;          // the player is no longer to be trusted
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
    append(record, other.record);
}

SoakReport runSoak(const SoakOptions& options,
                   const std::function<void(const SoakReport&)>& onGame) {
    SoakReport total;
    std::exception_ptr failure;
    std::mutex mutex; // of both
    std::atomic<int> next = options.first;
    const int end = options.first + options.games;
    const auto isStopped = [&] { return options.isStopWanted && options.isStopWanted(); };
    const auto work = [&] {
        try {
            Job job(options);
            for (int number = next++; number < end && !isStopped(); number = next++) {
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
        } catch (const std::exception&) {
            const std::lock_guard lock(mutex);
            failure = std::current_exception();
            next = end;
        }
    };
    std::vector<std::thread> threads;
    threads.reserve(static_cast<std::size_t>(options.jobs));
    for (int i = 0; i < options.jobs; ++i) {
        threads.emplace_back(work);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
    std::ranges::sort(total.record, {}, &PlayedGame::number);
    return total;
}
