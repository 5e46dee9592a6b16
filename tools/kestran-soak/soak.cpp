#include "kestran-soak/soak.h"

#include "base/indexed.h"
#include "support/text.h"
#include "support/textFile.h"

#include <algorithm>
#include <deque>
#include <exception>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <nlohmann/json.hpp>
#include <set>
#include <thread>

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(GameRecord, number, white, black, result, termination,
                                   timeControl, fen, moves, comment, plies, overruns, settling,
                                   growth, fault)

namespace {

using nlohmann::json;

// JSON in one line; bytes that are no UTF-8 are replaced.
std::string toLine(const json& value) {
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

class Soak {
public:
    explicit Soak(const SoakOptions& soakOptions) : options(soakOptions), next(options.first) {
        if (!options.state.empty()) {
            openState();
        }
        report.resumed = static_cast<int>(report.games.size());
    }

    SoakReport run() {
        std::vector<std::jthread> threads(at(std::min(options.jobs, options.games)));
        for (int jobs = 0; auto& thread : threads) {
            thread = std::jthread([this, job = jobs++] { work(job); });
        }
        threads.clear(); // waits for their end
        if (failure) {
            std::rethrow_exception(failure);
        }
        std::ranges::sort(report.games, {}, &GameRecord::number);
        return std::move(report);
    }

private:
    // Reads the games of the state file and opens it to append others. Its lines are JSON: the
    // options, then the games. A line that was cut short is passed over; the line end comes first
    // when a game is written.
    void openState() {
        const std::string heading = // what decides how the games go
            toLine({4, options.engine.path, options.against ? options.against->path : "",
                    options.game.seed, options.game.plies, options.game.margin, options.game.times,
                    options.game.hashes});
        std::ifstream old(options.state, std::ios::binary);
        std::string line;
        const bool isNew = !std::getline(old, line);
        if (!isNew && line != heading) {
            throw UsageError("the state file " + options.state + " has other options: " + line);
        }
        while (std::getline(old, line)) {
            const json game = json::parse(line, nullptr, false);
            if (game.is_object()) {
                played.insert(report.games.emplace_back(game.get<GameRecord>()).number);
            }
        }
        requireWritable(options.state);
        state.open(options.state, std::ios::binary | std::ios::app);
        state << (isNew ? heading : "") << std::flush;
    }

    using Players = std::deque<Player>; // one that plays itself, or two

    void work(int job) {
        try {
            Players players;
            players.emplace_back(options.engine, 2 * job + 1);
            if (options.against) {
                players.emplace_back(*options.against, 2 * job + 2);
            }
            while (const std::optional<int> number = takeNumber()) {
                play(players, *number);
            }
            for (Player& player : players) {
                quit(player, job);
            }
        } catch (...) {
            const std::lock_guard lock(mutex);
            failure = std::current_exception();
        }
    }

    // The next game to play, or nothing if there is none.
    std::optional<int> takeNumber() {
        const std::lock_guard lock(mutex);
        while (played.contains(next)) {
            ++next;
        }
        const bool isOver = next >= options.first + options.games || failure ||
                            options.isStopWanted() ||
                            (options.sprt && options.sprt->judge(report.getScore()) != "open");
        return isOver ? std::nullopt : std::optional(next++);
    }

    // Plays the game and adds it to the report, unless it is stopped.
    void play(Players& players, int number) {
        SoakGame game(options.game, number);
        const auto playerOf = [&](bool isWhite) {
            return &players[players.size() > 1 && hasEngineWhite(number) != isWhite ? 1 : 0];
        };
        game.record.white = playerOf(true)->getPath();
        game.record.black = playerOf(false)->getPath();
        Player* busy = nullptr;
        try {
            for (Player& player : players) {
                busy = &player;
                busy->beginGame(game.getHash());
            }
            while (!game.isOver()) {
                if (options.isStopWanted()) {
                    return;
                }
                busy = playerOf(game.getBoard().side == plain::WHITE);
                const auto [move, millis] = busy->think(game);
                game.take(move, millis);
            }
            for (Player& player : players) {
                busy = &player;
                busy->endGame(game.record);
            }
        } catch (const Fault& fault) {
            const bool isWhite =
                players.size() > 1 ? busy == playerOf(true) : game.getBoard().side == plain::WHITE;
            const std::string text = "game " + std::to_string(number) + ", ply " +
                                     std::to_string(game.record.plies) + ", ";
            game.note(fault.kind, isWhite,
                      settle(fault, *busy, text, "game" + std::to_string(number)));
        }
        add(game.record);
    }

    void add(const GameRecord& game) {
        const std::lock_guard lock(mutex);
        report.games.push_back(game);
        if (!options.state.empty() && !(state << '\n' << toLine(game) << std::flush)) {
            throw std::runtime_error("the state file " + options.state + " cannot be written");
        }
        options.onGame(report);
    }

    void quit(Player& player, int job) {
        try {
            player.quit();
        } catch (const Fault& fault) {
            const std::string text =
                settle(fault, player, "at the end, ", "quit" + std::to_string(job));
            const std::lock_guard lock(mutex);
            report.quitFaults.push_back(text);
        }
    }

    // Writes the fault and the conversation to a file of that name. Returns a line on the fault,
    // which begins with `start`.
    std::string settle(const Fault& fault, Player& player, const std::string& start,
                       const std::string& name) const {
        const std::string text = start + player.settle(fault);
        const std::string seed = std::to_string(options.game.seed);
        const auto path =
            std::filesystem::path(options.records) / ("soak-seed" + seed + '-' + name + ".txt");
        std::filesystem::create_directories(options.records);
        writeWhole(path.string(), text + '\n' + player.getConversation());
        return text + "; see " + path.string();
    }

    const SoakOptions& options;
    std::mutex mutex; // guards all that follows
    SoakReport report;
    std::ofstream state;
    std::set<int> played;       // games in the state file
    int next;                   // game
    std::exception_ptr failure; // what ended a job
};

} // namespace

SoakReport runSoak(const SoakOptions& options) {
    return Soak(options).run();
}
