#include "kestran-perft/perft.h"

#include "base/clock.h"
#include "base/cppIoUtils.h"
#include "board/makeMove.h"
#include "board/perft.h"
#include "notation/longAlgebraicMove.h"
#include "search/infoStruct.h"
#include "support/cli.h"
#include "support/gameInput.h"
#include "support/json.h"
#include "support/terminal.h"
#include "support/uciLines.h"

#include <iostream>
#include <optional>
#include <utility>
#include <vector>

namespace {

// The number of sequences of 13 moves from the start position nearly fills 64 bits.
constexpr int MAX_PERFT_DEPTH = 12;
constexpr std::size_t FEN_FIELDS = 6;

struct PerftOptions {
    std::vector<std::string> words; // a position and a depth, or with a file only a depth
    std::string moves;
    std::optional<std::string> path;
    bool asJson = false;
};

// A report, as text that grows with the work or as one JSON object at its end.
struct Report {
    void addLine(const std::string& line) const {
        if (!asJson) {
            std::cout << line << std::endl;
        }
    }

    // Ends the report with the nodes and the speed.
    void end(Milliseconds start) {
        const Milliseconds elapsed = clockMilliseconds() - start;
        const std::int64_t rate = nodesPerSecond(nodes, elapsed);
        json.update({{"nodes", nodes}, {"millis", elapsed}, {"nodesPerSecond", rate}});
        if (asJson) {
            printJson(json, std::cout);
        }
        addLine("Nodes: " + std::to_string(nodes) + "\nTime: " + std::to_string(elapsed) +
                " ms\nNodes per second: " + std::to_string(rate));
    }

    bool asJson;
    Json json = {{"schema", 1}};
    std::int64_t nodes = 0;
};

// A depth text of a command line or a file.
int readDepth(const std::string& text, const std::string& what = "the depth") {
    return parseNumber(text, what, 0, MAX_PERFT_DEPTH);
}

// Counts the sequences after each first move.
void split(const Position& position, int depth, Report& report) {
    MoveArray moves;
    const int count = generateLegalMoves(position, moves);
    Progress progress;
    for (int i = 0; i < count; ++i) {
        const std::string name = LongAlgebraicMove(moves[i]).toString();
        progress.show(name + ", move " + std::to_string(i + 1) + " of " + std::to_string(count));
        Position after = positionAfter(position, moves[i]);
        const std::int64_t share = perft(after, depth - 1);
        progress.show("");
        report.json["moves"][name] = share;
        report.addLine(name + ": " + std::to_string(share));
        report.nodes += share;
    }
}

// What a file says that a position counts: the sequences by depth.
using ExpectedCounts = std::vector<std::pair<int, std::int64_t>>;

std::string placeOf(const EpdRecord& record) {
    return "line " + std::to_string(record.line);
}

// Passes over operations that are no counts, such as names, and counts of more plies than `most`.
ExpectedCounts readCounts(const EpdRecord& record, int most) {
    ExpectedCounts counts;
    for (const std::vector<std::string>& words : record.operations) {
        if (!matchForm(words.front(), "D#*")) {
            continue;
        }
        const auto count = words.size() == 2 ? matchForm(words[1], "#") : std::nullopt;
        if (!count) {
            throw UsageError(placeOf(record) + " has no count after " + words.front());
        }
        const int depth =
            readDepth(words.front().substr(1), placeOf(record) + ": the depth after D");
        if (depth <= most) {
            counts.emplace_back(depth, count->numbers.front());
        }
    }
    return counts;
}

using CountedPosition = std::pair<EpdRecord, ExpectedCounts>; // at least one count

// The positions of a file with their counts of at most `depth` plies. Those without any
// are left out.
std::vector<CountedPosition> readCountedPositions(const std::string& path, int depth) {
    std::vector<CountedPosition> positions;
    for (const EpdRecord& record : readEpdFile(path)) {
        if (const auto counts = readCounts(record, depth); !counts.empty()) {
            positions.emplace_back(record, counts);
        }
    }
    if (positions.empty()) {
        throw UsageError("the file " + path + " has no count, such as \";D3 8902\", of at most " +
                         std::to_string(depth) + " plies");
    }
    return positions;
}

// Checks the counts of a position. Returns how many of them are wrong.
int checkPosition(const CountedPosition& counted, Report& report) {
    const EpdRecord& record = counted.first;
    Position position = record.position;
    Progress progress;
    int wrong = 0;
    std::string faults;
    Json counts = Json::array();
    for (const auto& [depth, sequences] : counted.second) {
        const std::string name = std::string("D").append(std::to_string(depth));
        progress.show(placeOf(record) + ", " + name);
        const std::int64_t found = perft(position, depth);
        report.nodes += found;
        counts.push_back({{"depth", depth}, {"expected", sequences}, {"found", found}});
        if (found != sequences) {
            ++wrong;
            faults +=
                ", " + name + " is " + std::to_string(found) + ", not " + std::to_string(sequences);
        }
    }
    progress.show("");
    report.json["positions"].push_back(
        {{"line", record.line}, {"fen", record.fen}, {"counts", counts}});
    report.addLine((wrong == 0 ? "ok     " : "WRONG  ") + placeOf(record) + faults + ": " +
                   record.fen);
    return wrong;
}

// Whether all counts of the file are right.
bool checkCounts(const std::string& path, int depth, Report& report) {
    const std::vector<CountedPosition> positions = readCountedPositions(path, depth);
    const Milliseconds start = clockMilliseconds();
    std::size_t checked = 0;
    int wrong = 0;
    for (const CountedPosition& position : positions) {
        checked += position.second.size();
        wrong += checkPosition(position, report);
    }
    report.json.update({{"checked", checked}, {"wrong", wrong}});
    report.addLine("Positions: " + std::to_string(positions.size()) +
                   "\nCounts: " + std::to_string(checked) + ", wrong: " + std::to_string(wrong));
    report.end(start);
    return wrong == 0;
}

// The depth after the words of a position; takes it out.
int takeDepth(std::vector<std::string>& words) {
    if (words.size() == FEN_FIELDS && splitString(joined(words)).size() == FEN_FIELDS) {
        throw UsageError("a depth is needed after the six fields of a position; put a position of "
                         "five fields in quotes");
    }
    if (words.size() < 2) {
        throw UsageError("a position and a depth are needed");
    }
    const int depth = readDepth(words.back());
    words.pop_back();
    return depth;
}

int runPerft(const PerftOptions& options) {
    Report report = {options.asJson};
    std::vector<std::string> words = options.words;
    if (options.path) {
        if (words.size() > 1) {
            throw UsageError("--epd takes only a file and a depth");
        }
        const int depth = words.empty() ? MAX_PERFT_DEPTH : readDepth(words.front());
        return checkCounts(*options.path, depth, report) ? 0 : 1;
    }
    const int depth = takeDepth(words);
    const NumberedGame game = readGame(words, options.moves);
    report.json.update({{"fen", getWholeFen(game)}, {"depth", depth}, {"moves", Json::object()}});
    const Milliseconds start = clockMilliseconds();
    if (depth == 0) {
        report.nodes = 1;
    } else {
        split(game.position, depth, report);
    }
    report.end(start);
    return 0;
}

} // namespace

int perftMain(int argc, const char* const* argv) {
    PerftOptions options;
    Program program("kestran-perft", "[OPTION]... FEN DEPTH\n[OPTION]... --epd FILE [DEPTH]",
                    "Counts the sequences of DEPTH legal moves, 0 to " +
                        std::to_string(MAX_PERFT_DEPTH) +
                        ", from a position: after each first move, and in all.",
                    "a count of FILE is wrong, or the output cannot be written");
    program.addWords("FEN", options.words,
                     "the position, in quotes or as several words; \"startpos\" is the start "
                     "position. DEPTH follows it");
    program.addText("--moves", options.moves, "MOVES", MOVES_HELP);
    program.addText(
        "--epd", options.path, "FILE",
        "check the counts of a file instead: one position per line, its FEN and then its "
        "counts, as in \";D1 20 ;D2 400\"; those of more than DEPTH plies are left out");
    program.excludes("--epd", {"--moves"});
    program.addFlag("--json", options.asJson, "print one JSON object instead of text");
    return program.run(argc, argv, [&] { return runPerft(options); });
}
