#include "kestran-explain/question.h"

#include "explain/treeGeneratorDebug.h"
#include "kestran-explain/webPage.h"
#include "search/engineParameters.h"
#include "search/hashTable.h"
#include "search/searchParameters.h"
#include "support/cli.h"
#include "support/gameInput.h"
#include "support/settings.h"
#include "support/terminal.h"
#include "support/textFile.h"

#include <limits>

namespace {

constexpr int DEFAULT_DEPTH = 5;
constexpr int DEFAULT_NODES = 1'000'000;
constexpr int LEAST_NODES = 1000;
constexpr int ANY_NUMBER = std::numeric_limits<int>::max();

constexpr const char* DESCRIPTION =
    "Searches a position as the engine does, watches a line of moves, and explains why the search "
    "did not follow it, or reviews a game. Moves are written as players do, Nf3 exd6 O-O e8=Q, "
    "with or without move "
    "numbers, or as g1f3 e5d6 e1g1 e7e8q. Ctrl-C ends the search, and what has been found by then "
    "is reported.";

constexpr const char* FORMAT_HELP =
    "plain: the record as the search keeps it, in thousandths of a pawn; tree: a tree and one "
    "sentence that answers, in pawns; html: a page for a browser that shows this search, with the "
    "engine inside. By default html if the name of FILE ends in .html, tree on a "
    "terminal, and otherwise plain";

// The words of the command line.
struct Asked {
    std::vector<std::string> words; // a position
    std::string moves;
    PgnSource pgn;
    std::optional<std::string> line;
    std::optional<int> depth;
    std::optional<int> hashMebibytes;
    std::string format; // empty if not given
    bool asJson = false;
    bool annotate = false;
};

ReportFormat formatOf(const Asked& asked, const std::optional<std::string>& output) {
    const bool isPage = output && (output->ends_with(".html") || output->ends_with(".htm"));
    if (asked.asJson) {
        return ReportFormat::JSON;
    }
    if (asked.format == "html" || (asked.format.empty() && isPage)) {
        return ReportFormat::HTML;
    }
    const bool isShown = !output && isStandardOutputTerminal();
    if (asked.format == "tree" || (asked.format.empty() && isShown)) {
        return ReportFormat::TREE;
    }
    return ReportFormat::PLAIN;
}

std::vector<Move> readLine(const Position& position, const std::string& text) {
    std::vector<Move> line = readMoves(position, text, "the line");
    if (line.empty()) {
        throw UsageError("--line needs at least one move");
    }
    if (line.size() > Explain::MAX_LINE) {
        throw UsageError("a line has at most " + std::to_string(Explain::MAX_LINE) +
                         " moves, this one has " + std::to_string(line.size()));
    }
    return line;
}

// Fills in what follows from several options.
void complete(Question& question, const Asked& asked) {
    question.depth = asked.depth.value_or(question.time ? MAX_PASSES : DEFAULT_DEPTH);
    if (asked.hashMebibytes) {
        question.hashTableSize = entriesOf(*asked.hashMebibytes);
    }
    question.format = formatOf(asked, question.output);
    const bool isInLines =
        question.format == ReportFormat::PLAIN || question.format == ReportFormat::TREE;
    if (question.maxLines && !isInLines) {
        throw UsageError("--max-lines needs --format plain or tree");
    }
    if (question.format == ReportFormat::HTML && WEB_PAGE.empty()) {
        throw UsageError("this program was built without the page; in the source folder, ./run web "
                         "builds the page, and a build from scratch then contains it");
    }
    if (asked.annotate) {
        question.review = readWholeGame(asked.pgn);
    }
    question.game = readGame(asked.words, asked.moves, asked.pgn);
    if (asked.line) {
        question.line = readLine(question.game.position, *asked.line);
    }
    for (const auto& path : {question.output, question.record}) {
        if (path) {
            requireWritable(*path);
        }
    }
}

} // namespace

int ask(int argc, const char* const* argv, const std::function<int(const Question&)>& answer) {
    Asked asked;
    Question question = {};
    Program program("kestran-explain", "[OPTION]... [FEN]", DESCRIPTION,
                    "the search was ended before its first pass, or the output cannot be written");
    program.addWords("FEN", asked.words, FEN_HELP);
    program.addText("--line", asked.line, "MOVES",
                    "the line to watch, at most " + std::to_string(Explain::MAX_LINE) +
                        " moves; if not given, the search's own");
    program.addText("--moves", asked.moves, "MOVES", MOVES_HELP);
    addPgnOptions(program, asked.pgn);
    program.addNumber("--depth", asked.depth, 1, MAX_PASSES, "N",
                      "plies to search; " + std::to_string(DEFAULT_DEPTH) +
                          " if neither depth nor time is given");
    program.addSeconds("--time", question.time, MAX_SECONDS,
                       "seconds for everything, such as 10 or 0.5; the last pass may be cut off");
    program.addFlag(
        "--annotate", asked.annotate,
        "write the game of --pgn with the score of each move, and with a reason and the refutation "
        "for the costliest moves; after Ctrl-C as far as that came, with exit status 130");
    program.needs("--annotate", "--pgn");
    question.nodes = DEFAULT_NODES;
    program.addNumber("--nodes", question.nodes, LEAST_NODES, ANY_NUMBER, "N",
                      "moves to search in each position of --annotate");
    program.needs("--nodes", "--annotate");
    program.addChoice("--format", asked.format, {"plain", "tree", "html"}, "FORMAT", FORMAT_HELP);
    program.addFlag("--json", asked.asJson, "print one JSON object");
    program.excludes("--json", {"--format"});
    program.addText("-o", question.output, "FILE", "write the report to FILE, whole or not at all");
    program.addText("--record", question.record, "FILE",
                    "also write every move of each pass to FILE, 20 bytes each");
    program.addFlag("--all", question.all,
                    "show every move tried along the line, not only those that raised alfa");
    program.addNumber("--pass", question.pass, 0, ANY_NUMBER, "N",
                      "show only pass N, as the report counts them");
    program.addNumber("--max-lines", question.maxLines, 1, ANY_NUMBER, "N",
                      "show at most N lines about the passes, the last pass first");
    program.addNumber("--hash", asked.hashMebibytes, EngineConfig::HASH_MIN, EngineConfig::HASH_MAX,
                      "MIB", "size of the hash table in mebibytes; as in play if not given");
    addSettings(program, question.settings);
    // They say nothing about a whole game.
    program.excludes("--annotate", {"--line", "--moves", "--ply", "--depth", "--time", "--format",
                                    "--json", "--record", "--all", "--pass", "--max-lines"});
    return program.run(argc, argv, [&] {
        complete(question, asked);
        return answer(question);
    });
}
