#include "kestran-soak/soak.h"

#include <algorithm>
#include <iomanip>
#include <iterator>
#include <numeric>
#include <ostream>

namespace {

// KiB that a process may gain in its first ten games, and after them.
constexpr std::int64_t MOST_SETTLING = 8192;
constexpr std::int64_t MOST_GROWTH = 4096;

void writeOverruns(std::ostream& stream, const std::vector<GameRecord>& games) {
    std::map<std::string, std::vector<std::int64_t>> byTime; // one entry for each move
    for (const GameRecord& game : games) {
        for (const auto& [millis, count] : game.overruns) {
            std::fill_n(std::back_inserter(byTime[game.timeControl]), count, millis);
        }
    }
    stream
        << "milliseconds beyond the time of a move\n"
           "    time             moves    in time   median     90 %     99 %   99.9 %     most\n";
    for (auto& [time, overruns] : byTime) {
        std::ranges::sort(overruns);
        stream << "    " << std::left << std::setw(12) << time << std::right << std::setw(10)
               << overruns.size() << std::setw(11) << std::ranges::count(overruns, 0);
        for (const std::size_t share : {500U, 900U, 990U, 999U, 1000U}) {
            stream << std::setw(9) << overruns[(overruns.size() * share + 999) / 1000 - 1];
        }
        stream << '\n';
    }
}

std::vector<std::pair<std::string, std::int64_t>> collectNumbers(const SoakReport& report,
                                                                 std::chrono::seconds elapsed) {
    const auto count = [&](const std::string& text, std::string GameRecord::*member) {
        return std::ranges::count(report.games, text, member);
    };
    return {
        {"games", std::ssize(report.games)},
        {"white", count("1-0", &GameRecord::result)},
        {"black", count("0-1", &GameRecord::result)},
        {"drawn", count("1/2-1/2", &GameRecord::result)},
        {"adjudicated", count("adjudication", &GameRecord::termination)},
        {"plies", std::transform_reduce(report.games.begin(), report.games.end(), std::int64_t{},
                                        std::plus(), std::mem_fn(&GameRecord::plies))},
        {"timeLosses", report.count(Fault::TIME_LOSS)},
        {"illegalMoves", report.count(Fault::ILLEGAL_MOVE)},
        {"protocolFaults", report.count(Fault::PROTOCOL)},
        {"settlingKib", report.getMost(&GameRecord::settling)},
        {"growthKib", report.getMost(&GameRecord::growth)},
        {"resumed", report.resumed},
        {"seconds", elapsed.count()}};
}

void writeMatch(std::ostream& stream, const MatchScore& score, const std::optional<Sprt>& sprt) {
    stream << "pairs with 0, 0.5, 1, 1.5 and 2 points:";
    for (const int count : score.getPairs()) {
        stream << ' ' << count;
    }
    stream << std::fixed << std::setprecision(1) << "\nElo " << score.getElo() << " +- "
           << score.getEloError() << " with 95 % confidence\n";
    if (sprt) {
        stream << std::setprecision(2) << "SPRT of Elo " << sprt->elo0 << " (H0) or " << sprt->elo1
               << " (H1): LLR " << score.getLlr(sprt->elo0, sprt->elo1) << " of 2.94, "
               << sprt->judge(score) << '\n';
    }
}

} // namespace

std::int64_t SoakReport::count(Fault::Kind kind) const {
    return std::ranges::count(games, kind, &GameRecord::fault) +
           (kind == Fault::PROTOCOL ? std::ssize(quitFaults) : 0);
}

std::int64_t SoakReport::getMost(std::int64_t GameRecord::*member) const {
    const auto most = std::ranges::max_element(games, {}, member);
    return most == games.end() ? 0 : *most.*member;
}

bool SoakReport::isClean() const {
    return quitFaults.empty() && count(Fault::NONE) == std::ssize(games) &&
           getMost(&GameRecord::settling) <= MOST_SETTLING &&
           getMost(&GameRecord::growth) <= MOST_GROWTH;
}

MatchScore SoakReport::getScore() const {
    MatchScore score;
    std::map<int, int> halfPoints; // in the game of a pair that came first
    for (const GameRecord& game : games) {
        const bool isWon = (game.result == "1-0") == hasEngineWhite(game.number);
        const int points = game.result == "1/2-1/2" ? 1 : isWon ? 2 : 0;
        const auto [other, isFirst] = halfPoints.try_emplace(game.number / 2, points);
        if (!isFirst) {
            score.addPair(points + other->second);
        }
    }
    return score;
}

void writeReport(std::ostream& stream, const SoakReport& report, const SoakOptions& options,
                 std::chrono::seconds elapsed) {
    const auto numbers = collectNumbers(report, elapsed);
    const MatchScore score = report.getScore();
    for (const auto& [name, number] : numbers) {
        stream << std::left << std::setw(17) << name << number << '\n';
    }
    writeOverruns(stream, report.games);
    for (const GameRecord& game : report.games) {
        stream << game.comment << (game.comment.empty() ? "" : "\n");
    }
    std::ranges::copy(report.quitFaults, std::ostream_iterator<std::string>(stream, "\n"));
    if (options.against) {
        writeMatch(stream, score, options.sprt);
    }
    stream << (report.isClean() ? "No fault.\n" : "FAULTS.\n") << "summary";
    for (const auto& [name, number] : numbers) {
        stream << ' ' << name << '=' << number;
    }
    if (options.against) {
        stream << std::setprecision(1) << " pairs=" << score.countPairs()
               << " elo=" << score.getElo() << " eloError=" << score.getEloError()
               << " sprt=" << (options.sprt ? options.sprt->judge(score) : "none");
    }
    stream << " clean=" << (report.isClean() ? "yes" : "no") << '\n';
}
