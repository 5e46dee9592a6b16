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
#include <iostream>
#include <optional>

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

int sumOf(const std::vector<BookChoice>& choices) {
    int sum = 0;
    for (const BookChoice& choice : choices) {
        sum += choice.count;
    }
    return sum;
}

// Such as "43.1 %".
std::string chanceText(int count, int sum) {
    std::array<char, 16> text;
    std::snprintf(text.data(), text.size(), "%.1f %%", 100.0 * count / sum);
    return text.data();
}

void printTreeNode(const PolyglotBook& book, const Position& position, int ply, int end,
                   const std::string& prefix, std::ostream& stream) {
    if (ply == end) {
        return;
    }
    const std::vector<BookChoice> choices = getBookChoices(book, position);
    const int sum = sumOf(choices);
    for (std::size_t i = 0; i < choices.size(); ++i) {
        const auto& [move, count] = choices[i];
        const bool isLast = i + 1 == choices.size();
        stream << prefix << (isLast ? "└─ " : "├─ ") << toNumberedSan(position, move, ply) << "  "
               << count << "  " << chanceText(count, sum) << '\n';
        printTreeNode(book, positionAfter(position, move), ply + 1, end,
                      prefix + (isLast ? "   " : "│  "), stream);
    }
}

// The moves of the book, each with those that follow it down to `depth` plies.
Json toJson(const PolyglotBook& book, const Position& position, int depth) {
    const std::vector<BookChoice> choices = getBookChoices(book, position);
    const double sum = sumOf(choices);
    Json moves = Json::array();
    for (const auto& [move, count] : choices) {
        Json& entry = moves.emplace_back(Json{{"move", LongAlgebraicMove(move).toString()},
                                              {"san", toSan(position, move)},
                                              {"lines", count},
                                              {"chance", count / sum}});
        if (depth > 1) {
            entry["moves"] = toJson(book, positionAfter(position, move), depth - 1);
        }
    }
    return moves;
}

std::string faultText(std::size_t index, const std::string& move, const std::string& what) {
    return "move " + std::to_string(index + 1) + ", \"" + move + "\", " + what;
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

int check(const BookOptions& options) {
    if (!options.words.empty() || options.pgn.path) {
        throw UsageError("--check takes no position");
    }
    std::ifstream file = openText(*options.path);
    const BookCheck result = checkBookText(file, options.polyglotCastling);
    if (options.asJson) {
        Json json = {{"schema", 1}, {"lines", result.lines}, {"faults", Json::array()}};
        for (const auto& [line, fault] : result.faults) {
            json["faults"].push_back({{"line", line}, {"fault", fault}});
        }
        printJson(json, std::cout);
    } else {
        for (const auto& [line, fault] : result.faults) {
            std::cout << *options.path << ':' << line << ": " << fault << '\n';
        }
        std::cout << "Lines: " << result.lines << ", with a fault: " << result.faults.size()
                  << '\n';
    }
    return result.faults.empty() ? 0 : 1;
}

// The book of a file that has no fault.
PolyglotBook readBook(const std::string& path, bool polyglotCastling) {
    std::ifstream file = openText(path);
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        const bool isEmpty = splitString(line).empty();
        const std::string fault = isEmpty || isMoveText(line.substr(0, MOVE_LENGTH))
                                      ? findLineFault(line, polyglotCastling)
                                      : "a book line begins with a move such as e2e4";
        if (!fault.empty()) {
            std::string reason = path;
            reason.append(":").append(std::to_string(number)).append(": ").append(fault);
            throw UsageError(reason);
        }
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
    const Position& position = game.position;
    if (options.asJson) {
        printJson({{"schema", 1},
                   {"fen", getWholeFen(game)},
                   {"moves", toJson(book, position, options.depth.value_or(1))}},
                  std::cout);
    } else if (options.depth) {
        printBookTree(book, game, *options.depth, std::cout);
    } else {
        printBookMoves(book, position, std::cout);
    }
    return 0;
}

} // namespace

void printBookMoves(const PolyglotBook& book, const Position& position, std::ostream& stream) {
    const std::vector<BookChoice> choices = getBookChoices(book, position);
    if (choices.empty()) {
        stream << "The book has no move for this position.\n";
        return;
    }
    const int sum = sumOf(choices);
    for (const auto& [move, count] : choices) {
        std::array<char, 64> line;
        std::snprintf(line.data(), line.size(), "%-7s %4d of %d  %7s\n",
                      toSan(position, move).c_str(), count, sum, chanceText(count, sum).c_str());
        stream << line.data();
    }
}

void printBookTree(const PolyglotBook& book, const NumberedGame& game, int depth,
                   std::ostream& stream) {
    if (getBookChoices(book, game.position).empty()) {
        stream << "The book has no move for this position.\n";
        return;
    }
    printTreeNode(book, game.position, game.ply, game.ply + depth, "", stream);
}

std::string findLineFault(const std::string& line, bool polyglotCastling) {
    Position position;
    initializeToStartPosition(position);
    if (!isMoveText(line.substr(0, MOVE_LENGTH))) {
        try {
            readMoves(position, line, "the line");
        } catch (const UsageError& error) {
            return error.what();
        }
        return "";
    }
    const std::size_t written = (line.size() + 1) / MOVE_STRIDE;
    const std::vector<HashEntryPair> pairs = getLineFromString(line, polyglotCastling);
    const auto textOf = [&](std::size_t i) { return line.substr(i * MOVE_STRIDE, MOVE_LENGTH); };
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        // The book takes such a move, and reads on as if it had not been made.
        const auto move = findLegalMove(position, pairs[i].polyglotEntry);
        if (!move) {
            return faultText(i, textOf(i), "leaves the king in check");
        }
        position = positionAfter(position, *move);
    }
    if (pairs.size() < written) {
        return faultText(pairs.size(), textOf(pairs.size()), "is not legal in its position");
    }
    const std::size_t readTo = std::min(written * MOVE_STRIDE, line.size());
    const std::size_t restStart = line.find_first_not_of(" \t\r", readTo);
    if (restStart != std::string::npos) {
        return faultText(written, line.substr(restStart), "is incomplete");
    }
    return "";
}

BookCheck checkBookText(std::istream& text, bool polyglotCastling) {
    BookCheck check;
    for (std::string line; std::getline(text, line);) {
        ++check.lines;
        if (const std::string fault = findLineFault(line, polyglotCastling); !fault.empty()) {
            check.faults.push_back({check.lines, fault});
        }
    }
    return check;
}

int bookMain(int argc, const char* const* argv) {
    BookOptions options;
    Program program("kestran-book", "[OPTION]... [FEN]\n[OPTION]... --check FILE", DESCRIPTION,
                    "a line of FILE stops early, or the output cannot be written");
    program.addWords("FEN", options.words, FEN_HELP);
    auto* const moves = program.addText("--moves", options.moves, "MOVES", MOVES_HELP);
    addPgnOptions(program, options.pgn);
    auto* const tree = program.addNumber("--tree", options.depth, 1, MAX_TREE_DEPTH, "DEPTH",
                                         "show the book from there as a tree of DEPTH plies");
    auto* const book = program.addText(
        "--book", options.bookPath, "FILE",
        "show the book lines of a text file, such as \"e2e4 e7e5 g1f3\", instead of the engine's");
    program.addText("--check", options.path, "FILE", CHECK_HELP)
        ->excludes(moves)
        ->excludes(tree)
        ->excludes(book);
    program.add_flag("--polyglot-castling", options.polyglotCastling,
                     "in FILE, castling is the king taking its own rook: e1h1, not e1g1");
    program.add_flag("--json", options.asJson, "print one JSON object instead of text");
    return program.run(argc, argv, [&] { return runBook(options); });
}
