#include "kestran-bench/solve.h"

#include "base/cppIoUtils.h"
#include "engine/bench.h"
#include "notation/longAlgebraicMove.h"
#include "notation/san.h"
#include "support/gameInput.h"
#include "support/requireTable.h"
#include "support/text.h"

#include <algorithm>
#include <iomanip>
#include <limits>
#include <ostream>

namespace {

constexpr WaitPolicy WAIT_POLICY = {.interval = 5, .margin = 0, .isWokenByEnd = true};

// Collects the passes of a search, and ends it after its time.
class SolveListener final : public InfoListenerInterface, public StopListenerInterface {
public:
    explicit SolveListener(std::optional<Milliseconds> time)
        : deadline(time ? clockMilliseconds() + *time : std::numeric_limits<Milliseconds>::max()) {}

    void onInfo(const InfoStruct& info) override {
        if (info.pv.varLength > 0) {
            passes.push_back({info.pv.get(0).move, info.depth, info.time, info.nodesSearched});
        }
    }
    bool checkForStop() override { return clockMilliseconds() >= deadline; }

    std::vector<PassAnswer> passes{};

private:
    const Milliseconds deadline;
};

bool isAmong(const Move& move, const std::vector<Move>& moves) {
    return std::ranges::any_of(moves, [&](const Move& m) { return testMoveEquality(m, move); });
}

// The arguments of an operation; none if the record does not have it.
std::vector<std::string> argumentsOf(const EpdRecord& record, const std::string& name) {
    for (const std::vector<std::string>& words : record.operations) {
        if (words.front() == name) {
            return {words.begin() + 1, words.end()};
        }
    }
    return {};
}

std::vector<Move> movesOf(const EpdRecord& record, const std::string& name,
                          const std::string& path) {
    std::vector<Move> moves;
    for (const std::string& word : argumentsOf(record, name)) {
        std::string fault;
        const std::optional<Move> move = findMove(record.position, word, fault);
        if (!move) {
            std::string reason = path;
            reason.append(":").append(std::to_string(record.line)).append(": the move \"");
            reason.append(word).append("\" of \"").append(name).append("\" ").append(fault);
            throw UsageError(reason);
        }
        moves.push_back(*move);
    }
    return moves;
}

// Such as "WAC.001", without quotation marks.
std::string nameOf(const EpdRecord& record) {
    std::string name = joined(argumentsOf(record, "id"));
    std::erase(name, '"');
    return name;
}

Json toJson(const Solution& solution) {
    const EpdRecord& record = solution.puzzle.record;
    const std::optional<bool> isSolved = solution.isSolved();
    Json json = {{"line", record.line},
                 {"fen", record.fen},
                 {"id", nameOf(record)},
                 {"solved", isSolved ? Json(*isSolved) : Json()},
                 {"best", {}}};
    if (!solution.passes.empty()) {
        const PassAnswer& last = solution.passes.back();
        const PassAnswer& first = solution.keptFrom();
        json["best"] = LongAlgebraicMove(last.move).toString();
        json.update({{"depth", last.depth},
                     {"millis", last.time},
                     {"nodes", last.nodes},
                     {"keptFrom",
                      {{"depth", first.depth}, {"millis", first.time}, {"nodes", first.nodes}}}});
    }
    return json;
}

} // namespace

std::vector<Puzzle> readPuzzles(const std::string& path) {
    std::vector<Puzzle> puzzles;
    for (const EpdRecord& record : readEpdFile(path)) {
        puzzles.push_back({record, movesOf(record, "bm", path), movesOf(record, "am", path)});
    }
    return puzzles;
}

const PassAnswer& Solution::keptFrom() const {
    const auto other = std::find_if(passes.rbegin(), passes.rend(), [&](const PassAnswer& pass) {
        return !testMoveEquality(pass.move, passes.back().move);
    });
    return *other.base();
}

std::optional<bool> Solution::isSolved() const {
    const auto& [record, best, avoid] = puzzle;
    if (best.empty() && avoid.empty()) {
        return std::nullopt;
    }
    return !passes.empty() && (best.empty() || isAmong(passes.back().move, best)) &&
           !isAmong(passes.back().move, avoid);
}

Solution solve(const Puzzle& puzzle, const SolveLimits& limits, const EngineConfig& config) {
    const auto engine = makeFreshEngine(config, WAIT_POLICY);
    requireTable(engine->getHashTableSize(), config.hashTableSize);
    engine->init(puzzle.record.position);
    SearchRequest request;
    request.limits.time.total = TimeBudget::UNLIMITED; // the listener ends the search
    request.limits.onlyMoveDepth = MAX_PASSES;
    request.limits.nodes = limits.nodes ? *limits.nodes : SearchLimits::ANY_NODES;
    request.game = engine->getGame();
    SolveListener listener(limits.time);
    engine->setInfoListener(&listener);
    engine->setStopListener(&listener);
    const SearchResult result = engine->search(request);
    engine->joinThread();
    if (listener.passes.empty() && result.line.varLength > 0) {
        listener.passes.push_back({result.line.get(0).move, 0, result.time, result.nodes});
    }
    return {puzzle, std::move(listener.passes)};
}

void printSolution(std::size_t number, const Solution& solution, std::ostream& stream) {
    const std::optional<bool> isSolved = solution.isSolved();
    stream << std::setw(3) << number << "  "
           << (!isSolved   ? "-     "
               : *isSolved ? "solved"
                           : "missed");
    if (!solution.passes.empty()) {
        const PassAnswer& first = solution.keptFrom();
        stream << "  from depth " << std::setw(2) << first.depth << " on, " << std::setw(6)
               << first.time << " ms  best " << toSan(solution.puzzle.record.position, first.move);
    } else {
        stream << "  best (none)";
    }
    const std::string name = nameOf(solution.puzzle.record);
    stream << (name.empty() ? "" : "  ") << name << std::endl;
}

Json toJson(const std::vector<Solution>& solutions, const SolveLimits& limits, int hashMebibytes) {
    Json positions = Json::array();
    int solved = 0;
    int counted = 0;
    for (const Solution& solution : solutions) {
        const Json& position = positions.emplace_back(toJson(solution));
        solved += position["solved"] == true ? 1 : 0;
        counted += position["solved"].is_null() ? 0 : 1;
    }
    return {{"schema", 1},
            {"positions", positions},
            {"hash", hashMebibytes},
            {"time", limits.time ? Json(*limits.time) : Json()},
            {"nodes", limits.nodes ? Json(*limits.nodes) : Json()},
            {"solved", solved},
            {"counted", counted}};
}
