#include "kestran-soak/soak.h"

#include "kestran-soak/journal.h"
#include "kestran-soak/outputWatch.h"
#include "kestran-soak/selfPlay.h"
#include "support/system.h"

#include <algorithm>
#include <chrono>
#include <iomanip>
#include <memory>
#include <optional>
#include <set>
#include <sstream>
#include <utility>
#include <vector>

namespace {

using Clock = SelfPlay::Clock;
using std::chrono::ceil;
using std::chrono::duration_cast;
using std::chrono::milliseconds;

// So many engines are started at once: hundreds would keep each other from answering.
constexpr std::ptrdiff_t MOST_STARTING = 4;
// The longest wait for output. One that takes longer tells that the machine stood still.
constexpr milliseconds LONGEST_WAIT{10};

// The games to play, and those that have been played.
class Ledger : public SoakDesk {
public:
    using OnGame = std::function<void(const SoakReport&)>;

    Ledger(const SoakOptions& soakOptions, const OnGame& _onGame)
        : options(soakOptions), onGame(_onGame), next(options.first) {
        if (!options.state.empty()) {
            journal.emplace(options.state, options.engine, options.describeGames(), report);
            report.resumed = report.games;
        }
    }

    std::optional<int> takeNumber() override {
        if (!hasGames() || isStopWanted()) {
            return std::nullopt;
        }
        return next++;
    }

    // Whether there are games left that nobody plays yet.
    bool hasGames() {
        while (journal && journal->getPlayed().contains(next)) {
            ++next;
        }
        return next < options.first + options.games;
    }

    bool isStopWanted() override { return options.isStopWanted && options.isStopWanted(); }

    // A game that was stopped is to be played again another time.
    void add(const GameResult& result, bool isStopped) override {
        report.add(result);
        report.stopped += isStopped;
        if (journal && !isStopped) {
            journal->add(result);
        }
        if (onGame) {
            onGame(report);
        }
    }

    void add(const EngineResult& result) override {
        report.add(result);
        if (journal) {
            journal->add(result);
        }
    }

    std::string describeCircumstances() override {
        std::ostringstream text;
        text << ", load " << std::setprecision(3) << getSystemLoad();
        return text.str();
    }

    std::int64_t getAway() override { return away; }

    // Nobody has looked at the engines for so many milliseconds longer than planned.
    void noteAway(std::int64_t millis) {
        away += millis;
        report.longestAway = std::max(report.longestAway, millis);
    }

    SoakReport takeReport() {
        std::ranges::sort(report.record, {}, &PlayedGame::number);
        return std::move(report);
    }

private:
    const SoakOptions& options;
    const OnGame& onGame;
    SoakReport report;
    std::optional<Journal> journal;
    int next;
    std::int64_t away = 0;
};

// All places, and the one thread that looks after them.
class Hall {
public:
    Hall(const SoakOptions& soakOptions, Ledger& _ledger) : options(soakOptions), ledger(_ledger) {}

    // Plays to the end of all games.
    void run() {
        Clock::time_point lastLook = Clock::now();
        open();
        while (!std::ranges::all_of(places, [](const auto& place) { return place->isDone(); })) {
            const std::vector<std::size_t> news = watch.wait(getWait());
            const auto gap = duration_cast<milliseconds>(Clock::now() - lastLook);
            lastLook += gap;
            ledger.noteAway(std::max(gap - LONGEST_WAIT, milliseconds(0)).count());
            // First the times, which later work would spoil.
            for (const std::size_t id : news) {
                places[id]->listen();
            }
            for (const std::size_t id : news) {
                places[id]->advance();
            }
            for (const auto& place : places) {
                if (place->getWakeTime() <= lastLook) {
                    place->advance();
                }
            }
            open();
        }
    }

private:
    // Opens another place, as long as there are games for it.
    void open() {
        const auto isStarting = [](const auto& place) { return place->isStarting(); };
        while (std::ssize(places) < options.jobs && ledger.hasGames() && !ledger.isStopWanted() &&
               std::ranges::count_if(places, isStarting) < MOST_STARTING) {
            places.push_back(std::make_unique<SelfPlay>(options, ledger, watch, places.size()));
            places.back()->advance();
        }
    }

    // Until the first place is due.
    milliseconds getWait() const {
        const auto now = Clock::now();
        milliseconds wait = LONGEST_WAIT;
        for (const auto& place : places) {
            if (!place->isDone()) {
                wait = std::min(wait, ceil<milliseconds>(place->getWakeTime() - now));
            }
        }
        return std::max(wait, milliseconds(0));
    }

    const SoakOptions& options;
    Ledger& ledger;
    OutputWatch watch;
    std::vector<std::unique_ptr<SelfPlay>> places; // by their names at `watch`
};

} // namespace

SoakReport runSoak(const SoakOptions& options,
                   const std::function<void(const SoakReport&)>& onGame) {
    Ledger ledger(options, onGame);
    Hall(options, ledger).run();
    return ledger.takeReport();
}
