#include "kestran-book/book.h"

#include "base/cppIoUtils.h"
#include "board/makeMove.h"
#include "board/setUp.h"
#include "notation/longAlgebraicMove.h"
#include "notation/san.h"
#include "support/bookChoices.h"
#include "support/cli.h"
#include "support/gameInput.h"
#include "support/json.h"
#include "support/textFile.h"
#include "support/uciLines.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iomanip>
#include <iostream>
#include <numeric>

namespace {

constexpr const char* DESCRIPTION =
    "Lists the moves that the opening book has for a position, each with the number of book lines "
    "that play it there and its chance of being chosen. Positions count, not move orders: lines "
    "that reach the position by other moves count too, so the replies to a move can outnumber the "
    "lines that play it.";

constexpr const char* CHECK_HELP =
    "check a text of book lines, one per line, such as \"e2e4 e7e5 g1f3\" or \"1. e4 e5 2. Nf3\", "
    "and report every line that stops before its end. The engine itself reads only the first "
    "notation";

constexpr int MAX_TREE_DEPTH = 40;
constexpr std::size_t MOVE_STRIDE = 5; // characters of a book line from move to move
constexpr std::size_t MOVE_LENGTH = 4;

// The moves of the book, each with those that follow it down to `depth` plies.
Json toJson(const PolyglotBook& book, const Position& position, int depth) {
    const std::vector<BookChoice> choices = getBookChoices(book, position);
    double total = 0;
    for (const BookChoice& choice : choices) {
        total += choice.count;
    }
    Json moves = Json::array();
    for (const auto& [move, count] : choices) {
        Json& entry = moves.emplace_back(Json{{"move", LongAlgebraicMove(move).toString()},
                                              {"san", toSan(position, move)},
                                              {"lines", count},
                                              {"chance", count / total}});
        if (depth > 1) {
            entry["moves"] = toJson(book, positionAfter(position, move), depth - 1);
        }
    }
    return moves;
}

// Such as "43.1 %".
std::string chanceText(const Json& entry) {
    std::array<char, 16> text;
    std::snprintf(text.data(), text.size(), "%.1f %%", 100 * entry["chance"].get<double>());
    return text.data();
}

void printList(const Json& moves, std::ostream& stream) {
    const int total =
        std::accumulate(moves.begin(), moves.end(), 0,
                        [](int sum, const Json& entry) { return sum + entry["lines"].get<int>(); });
    for (const Json& entry : moves) {
        stream << std::left << std::setw(7) << entry["san"].get<std::string>() << std::right << ' '
               << std::setw(4) << entry["lines"].get<int>() << " of " << total << "  "
               << std::setw(7) << chanceText(entry) << '\n';
    }
}

void printTree(const Json& moves, int ply, const std::string& prefix, std::ostream& stream) {
    for (const Json& entry : moves) {
        const bool isLast = &entry == &moves.back();
        stream << prefix << (isLast ? "└─ " : "├─ ") << moveNumber(static_cast<Color>(ply % 2), ply)
               << ' ' << entry["san"].get<std::string>() << "  " << entry["lines"] << "  "
               << chanceText(entry) << '\n';
        if (entry.contains("moves")) {
            printTree(entry["moves"], ply + 1, prefix + (isLast ? "   " : "│  "), stream);
        }
    }
}

struct BookOptions {
    std::vector<std::string> words; // a position
    std::string moves;
    PgnSource pgn;
    std::optional<int> depth;
    std::optional<std::string> bookPath;
    std::optional<std::string> path; // of a text to check
    bool polyglotCastling = false;
    bool asJson = false;
};

// The lines of a text and their faults.
Json checkText(const std::string& path, bool polyglotCastling, bool isForEngine) {
    std::ifstream file = openText(path);
    int lines = 0;
    Json faults = Json::array();
    for (std::string line; std::getline(file, line);) {
        ++lines;
        const std::string fault = findLineFault(line, polyglotCastling, isForEngine);
        if (!fault.empty()) {
            faults.push_back({{"line", lines}, {"fault", fault}});
        }
    }
    return {{"schema", 1}, {"lines", lines}, {"faults", faults}};
}

std::string faultText(const std::string& path, const Json& fault) {
    return path + ':' + fault["line"].dump() + ": " + fault["fault"].get<std::string>();
}

int check(const BookOptions& options) {
    if (!options.words.empty() || options.pgn.path) {
        throw UsageError("--check takes no position");
    }
    const Json report = checkText(*options.path, options.polyglotCastling, false);
    const Json& faults = report["faults"];
    if (options.asJson) {
        printJson(report, std::cout);
    } else {
        for (const Json& fault : faults) {
            std::cout << faultText(*options.path, fault) << '\n';
        }
        std::cout << "Lines: " << report["lines"] << ", with a fault: " << faults.size() << '\n';
    }
    return faults.empty() ? 0 : 1;
}

// The book of a file that has no fault.
PolyglotBook readBook(const std::string& path, bool polyglotCastling) {
    const Json report = checkText(path, polyglotCastling, true);
    if (!report["faults"].empty()) {
        throw UsageError(faultText(path, report["faults"].front()));
    }
    return PolyglotBook::getBookFromFile(path, polyglotCastling);
}

int runBook(const BookOptions& options) {
    if (options.polyglotCastling && !options.path && !options.bookPath) {
        throw UsageError("--polyglot-castling needs --book or --check");
    }
    if (options.path) {
        return check(options);
    }
    const PolyglotBook book = options.bookPath
                                  ? readBook(*options.bookPath, options.polyglotCastling)
                                  : PolyglotBook::getStandard();
    const NumberedGame game = readGame(options.words, options.moves, options.pgn);
    if (options.asJson) {
        printJson({{"schema", 1},
                   {"fen", getWholeFen(game)},
                   {"moves", toJson(book, game.position, options.depth.value_or(1))}},
                  std::cout);
    } else {
        printBook(book, game, options.depth, std::cout);
    }
    return 0;
}

} // namespace

void printBook(const PolyglotBook& book, const NumberedGame& game, std::optional<int> depth,
               std::ostream& stream) {
    const Json moves = toJson(book, game.position, depth.value_or(1));
    if (moves.empty()) {
        stream << "The book has no move for this position.\n";
    } else if (depth) {
        printTree(moves, game.ply, "", stream);
    } else {
        printList(moves, stream);
    }
}

std::string findLineFault(const std::string& line, bool polyglotCastling, bool isForEngine) {
    Position position;
    initializeToStartPosition(position);
    if (!isMoveText(line.substr(0, MOVE_LENGTH))) {
        if (isForEngine && !splitString(line).empty()) {
            return "a book line begins with a move such as e2e4";
        }
        try {
            readMoves(position, line, "the line");
        } catch (const UsageError& error) {
            return error.what();
        }
        return "";
    }
    const std::size_t written = (line.size() + 1) / MOVE_STRIDE;
    const std::vector<HashEntryPair> pairs = getLineFromString(line, polyglotCastling);
    const auto faultAt = [&](std::size_t i, const char* what) {
        return "move " + std::to_string(i + 1) + ", \"" +
               line.substr(i * MOVE_STRIDE, MOVE_LENGTH) + "\", " + what;
    };
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        // The book takes such a move, and reads on as if it had not been made.
        const auto move = findLegalMove(position, pairs[i].polyglotEntry);
        if (!move) {
            return faultAt(i, "leaves the king in check");
        }
        position = positionAfter(position, *move);
    }
    if (pairs.size() < written) {
        return faultAt(pairs.size(), "is not legal in its position");
    }
    const std::size_t end = std::min(written * MOVE_STRIDE, line.size());
    const bool isRead = line.find_first_not_of(" \t\r", end) == std::string::npos;
    return isRead ? "" : faultAt(written, "is incomplete");
}

int bookMain(int argc, const char* const* argv) {
    BookOptions options;
    Program program("kestran-book", "[OPTION]... [FEN]\n[OPTION]... --check FILE", DESCRIPTION,
                    "a line of FILE stops early, or the output cannot be written");
    program.addWords("FEN", options.words, FEN_HELP);
    program.addText("--moves", options.moves, "MOVES", MOVES_HELP);
    addPgnOptions(program, options.pgn);
    program.addNumber("--tree", options.depth, 1, MAX_TREE_DEPTH, "DEPTH",
                      "show the book from there as a tree of DEPTH plies");
    program.addText(
        "--book", options.bookPath, "FILE",
        "show the book lines of a text file, such as \"e2e4 e7e5 g1f3\", instead of the engine's");
    program.addText("--check", options.path, "FILE", CHECK_HELP);
    program.excludes("--check", {"--moves", "--tree", "--book"});
    program.addFlag("--polyglot-castling", options.polyglotCastling,
                    "in FILE, castling is the king taking its own rook: e1h1, not e1g1");
    program.addFlag("--json", options.asJson, "print one JSON object instead of text");
    return program.run(argc, argv, [&] { return runBook(options); });
}
