#include "kestran-bench/benchReport.h"

#include "notation/longAlgebraicMove.h"
#include "search/infoStruct.h"
#include "search/score.h"

#include <algorithm>
#include <iomanip>
#include <numeric>
#include <ostream>
#include <stdexcept>

namespace {

// The middle of some values, and the ends between which all of them lie.
struct Spread {
    std::int64_t median; // of an even number, the mean of the middle two
    std::int64_t least;
    std::int64_t most;
};

// `values` are not empty.
Spread spreadOf(std::vector<std::int64_t> values) {
    std::ranges::sort(values);
    const std::size_t half = values.size() / 2;
    const std::int64_t median =
        values.size() % 2 != 0 ? values[half] : std::midpoint(values[half - 1], values[half]);
    return {median, values.front(), values.back()};
}

std::int64_t totalNodes(const BenchReport& report) {
    std::int64_t nodes = 0;
    for (const BenchedPosition& position : report.positions) {
        nodes += position.nodes;
    }
    return nodes;
}

// The time of all searches of a run, run by run.
std::vector<std::int64_t> runMillis(const BenchReport& report) {
    std::vector<std::int64_t> sums(static_cast<std::size_t>(report.runs), 0);
    for (const BenchedPosition& position : report.positions) {
        for (std::size_t run = 0; run < sums.size(); ++run) {
            sums[run] += position.millis[run];
        }
    }
    return sums;
}

std::vector<std::int64_t> runRates(const BenchReport& report) {
    std::vector<std::int64_t> rates = runMillis(report);
    const std::int64_t nodes = totalNodes(report);
    for (std::int64_t& rate : rates) {
        rate = nodesPerSecond(nodes, rate);
    }
    return rates;
}

// Empty if there is no legal move.
std::string bestMoveOf(const Variant& line) {
    return line.varLength > 0 ? LongAlgebraicMove(line.get(0).move).toString() : "";
}

Json toJson(const Spread& spread) {
    return {{"median", spread.median}, {"least", spread.least}, {"most", spread.most}};
}

Json toJson(const BenchedPosition& position) {
    const int score = position.line.evaluation;
    const std::string best = bestMoveOf(position.line);
    return {{"fen", position.fen},
            {"depth", position.depth},
            {"score", score},
            {"mate", isMate(score) ? Json(movesToMate(score)) : Json()},
            {"nodes", position.nodes},
            {"millis", spreadOf(position.millis).median},
            {"best", best.empty() ? Json() : Json(best)}};
}

} // namespace

void addRun(BenchedPosition& position, const Variant& line, std::int64_t nodes,
            Milliseconds millis) {
    if (!position.millis.empty() && nodes != position.nodes) {
        throw std::runtime_error("the search of " + position.fen +
                                 " differs between runs: " + std::to_string(position.nodes) +
                                 " nodes, then " + std::to_string(nodes));
    }
    position.line = line;
    position.nodes = nodes;
    position.millis.push_back(millis);
}

std::string scoreToString(int evaluation) {
    if (!isMate(evaluation)) {
        return std::to_string(evaluation);
    }
    const int moves = movesToMate(evaluation);
    return moves == 0 ? "mated" : (moves > 0 ? "mate +" : "mate ") + std::to_string(moves);
}

void printPosition(std::size_t number, const BenchedPosition& position, std::ostream& stream) {
    const std::string best = bestMoveOf(position.line);
    stream << std::setw(2) << number << "  depth " << std::setw(2) << position.depth << "  score "
           << std::setw(7) << scoreToString(position.line.evaluation) << "  nodes " << std::setw(9)
           << position.nodes << "  time " << std::setw(6) << spreadOf(position.millis).median
           << " ms  best " << (best.empty() ? "(none)" : best) << std::endl;
}

void printSummary(const BenchReport& report, std::ostream& stream) {
    const Spread millis = spreadOf(runMillis(report));
    const Spread rates = spreadOf(runRates(report));
    const auto spreadText = [&](const Spread& spread) {
        return report.runs == 1 ? ""
                                : " (" + std::to_string(spread.least) + " to " +
                                      std::to_string(spread.most) + ")";
    };
    if (report.runs > 1) {
        stream << "Runs: " << report.runs << '\n';
    }
    stream << "Time: " << millis.median << " ms" << spreadText(millis) << '\n'
           << "Nodes per second: " << rates.median << spreadText(rates) << '\n'
           << "Bench: " << totalNodes(report) << '\n';
}

Json toJson(const BenchReport& report) {
    Json json = {{"schema", 1}, {"positions", Json::array()}};
    for (const BenchedPosition& position : report.positions) {
        json["positions"].push_back(toJson(position));
    }
    json.update({{"hash", report.hashMebibytes},
                 {"runs", report.runs},
                 {"millis", toJson(spreadOf(runMillis(report)))},
                 {"nodesPerSecond", toJson(spreadOf(runRates(report)))},
                 {"bench", totalNodes(report)}});
    return json;
}
