#include "kestran-bench/benchReport.h"

#include "notation/longAlgebraicMove.h"
#include "search/score.h"

#include <algorithm>
#include <functional>
#include <iomanip>
#include <iterator>
#include <numeric>
#include <ostream>
#include <stdexcept>

namespace {

// The middle of some values, of an even number the mean of the middle two. Requires a value.
std::int64_t medianOf(std::vector<std::int64_t> values) {
    std::ranges::sort(values);
    return std::midpoint(values[(values.size() - 1) / 2], values[values.size() / 2]);
}

// The median, and the ends between which all values lie.
Json spreadOf(const std::vector<std::int64_t>& values) {
    const auto [least, most] = std::ranges::minmax(values);
    return {{"median", medianOf(values)}, {"least", least}, {"most", most}};
}

std::string scoreToString(int evaluation) {
    if (!isMate(evaluation)) {
        return std::to_string(evaluation);
    }
    const int moves = movesToMate(evaluation);
    return moves == 0 ? "mated" : (moves > 0 ? "mate +" : "mate ") + std::to_string(moves);
}

// Empty if there is no legal move.
std::string bestMoveOf(const Variant& line) {
    return line.varLength > 0 ? LongAlgebraicMove(line.get(0).move).toString() : "";
}

Json toJson(const BenchedPosition& position) {
    const Variant& line = position.result.line;
    const std::string best = bestMoveOf(line);
    return {{"fen", position.fen},
            {"depth", position.depth},
            {"score", line.evaluation},
            {"mate", isMate(line.evaluation) ? Json(movesToMate(line.evaluation)) : Json()},
            {"nodes", position.result.nodes},
            {"millis", medianOf(position.millis)},
            {"best", best.empty() ? Json() : Json(best)}};
}

} // namespace

void addRun(BenchedPosition& position, const SearchResult& result) {
    if (!position.millis.empty() && result.nodes != position.result.nodes) {
        throw std::runtime_error("the search of " + position.fen +
                                 " differs between runs: " + std::to_string(position.result.nodes) +
                                 " nodes, then " + std::to_string(result.nodes));
    }
    position.result = result;
    position.millis.push_back(result.time);
}

void printPosition(std::size_t number, const BenchedPosition& position, std::ostream& stream) {
    const Variant& line = position.result.line;
    const std::string best = bestMoveOf(line);
    stream << std::setw(2) << number << "  depth " << std::setw(2) << position.depth << "  score "
           << std::setw(7) << scoreToString(line.evaluation) << "  nodes " << std::setw(9)
           << position.result.nodes << "  time " << std::setw(6) << medianOf(position.millis)
           << " ms  best " << (best.empty() ? "(none)" : best) << std::endl;
}

Json toJson(const std::vector<BenchedPosition>& positions, int hashMebibytes) {
    Json searches = Json::array();
    std::int64_t nodes = 0;
    std::vector<std::int64_t> millis(positions.front().millis.size(), 0); // run by run
    for (const BenchedPosition& position : positions) {
        searches.push_back(toJson(position));
        nodes += position.result.nodes;
        std::ranges::transform(millis, position.millis, millis.begin(), std::plus());
    }
    std::vector<std::int64_t> rates;
    std::ranges::transform(millis, std::back_inserter(rates), [nodes](Milliseconds elapsed) {
        return nodesPerSecond(nodes, elapsed);
    });
    return {
        {"schema", 1},           {"positions", searches},      {"hash", hashMebibytes},
        {"runs", millis.size()}, {"millis", spreadOf(millis)}, {"nodesPerSecond", spreadOf(rates)},
        {"bench", nodes}};
}

void printSummary(const Json& report, std::ostream& stream) {
    const bool isOneRun = report["runs"] == 1;
    const auto print = [&](const char* name, const Json& spread, const char* unit) {
        stream << name << spread["median"] << unit;
        if (!isOneRun) {
            stream << " (" << spread["least"] << " to " << spread["most"] << ')';
        }
        stream << '\n';
    };
    if (!isOneRun) {
        stream << "Runs: " << report["runs"] << '\n';
    }
    print("Time: ", report["millis"], " ms");
    print("Nodes per second: ", report["nodesPerSecond"], "");
    stream << "Bench: " << report["bench"] << '\n';
}
