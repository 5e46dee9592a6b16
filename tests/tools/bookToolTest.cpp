// kestran-book: what it lists and what it finds in a text of book lines.

#include "kestran-book/book.h"
#include "opening/standard.h"
#include "support/bookChoices.h"
#include "support/gameInput.h"
#include "support/json.h"
#include "testing/boardSupport.h"
#include "testing/toolSupport.h"

#include <gtest/gtest.h>

namespace {

// A book of a few lines, in which 1. e4 c5 and 1. c4 are more frequent than first.
PolyglotBook smallBook() {
    PolyglotBook book;
    for (const char* line : {"e2e4 e7e5", "c2c4", "c2c4", "c2c4 e7e5", "e2e4 c7c5", "e2e4 c7c5"}) {
        addLine(book, line);
    }
    return book;
}

TEST(BookTool, ListsTheMovesOfThePositionByFrequency) {
    EXPECT_EQ(runBody(bookMain, {}).output, "d4       149 of 346   43.1 %\n"
                                            "Nf3       84 of 346   24.3 %\n"
                                            "e4        60 of 346   17.3 %\n"
                                            "c4        53 of 346   15.3 %\n");
    const std::string afterMoves = runBody(bookMain, {"--moves", "e2e4 c7c5"}).output;
    EXPECT_EQ(afterMoves, "Nf3       25 of 27   92.6 %\n"
                          "Nc3        1 of 27    3.7 %\n"
                          "c3         1 of 27    3.7 %\n");
    // Quoted, unquoted and without clocks it is the same position.
    const std::string fen = "rnbqkbnr/pp1ppppp/8/2p5/4P3/8/PPPP1PPP/RNBQKBNR w KQkq -";
    EXPECT_EQ(runBody(bookMain, {fen + " 0 2"}).output, afterMoves);
    EXPECT_EQ(runBody(bookMain, {fen.substr(0, fen.find(' ')), "w", "KQkq", "-"}).output,
              afterMoves);
    EXPECT_EQ(runBody(bookMain, {"7k/8/8/8/8/8/8/K7 w - - 0 1"}).output,
              "The book has no move for this position.\n");
}

TEST(BookTool, CountsRepeatedEntriesAndKeepsTheOrderOfEquals) {
    const std::vector<BookChoice> choices = getBookChoices(smallBook(), positionOf(START_FEN));
    ASSERT_EQ(choices.size(), 2U);
    EXPECT_EQ(LongAlgebraicMove(choices[0].move).toString(), "e2e4");
    EXPECT_EQ(choices[0].count, 3);
    EXPECT_EQ(choices[1].count, 3);

    // A code that names no legal move of the position is never played.
    PolyglotBook book;
    const Position start = positionOf(START_FEN);
    book.put(start.incremental.hash, PolyglotEntry(std::int16_t{1}));
    EXPECT_TRUE(getBookChoices(book, start).empty());
}

TEST(BookTool, DrawsTheBookAsATree) {
    std::ostringstream tree;
    printBook(smallBook(), readGame({}, ""), 5, tree);
    EXPECT_EQ(tree.str(), "├─ 1. e4  3  50.0 %\n"
                          "│  ├─ 1... c5  2  66.7 %\n"
                          "│  └─ 1... e5  1  33.3 %\n"
                          "└─ 1. c4  3  50.0 %\n"
                          "   └─ 1... e5  1  100.0 %\n");
    tree.str("");
    printBook(smallBook(), readGame({}, "e2e4"), 1, tree);
    EXPECT_EQ(tree.str(), "├─ 1... c5  2  66.7 %\n└─ 1... e5  1  33.3 %\n");
    EXPECT_TRUE(
        runBody(bookMain, {"--tree=1", "--moves", "e2e4 c7c5"}).output.starts_with("├─ 2. Nf3 "));
    EXPECT_NE(runBody(bookMain, {"--tree=2"}).output.find("│  ├─ 1... Nf6  92  61.7 %\n"),
              std::string::npos);
}

TEST(BookTool, PrintsJson) {
    const Json json =
        Json::parse(runBody(bookMain, {"--json", "--moves", "e2e4 c7c5", "--tree=2"}).output);
    EXPECT_EQ(json["schema"], 1);
    ASSERT_EQ(json["moves"].size(), 3U);
    EXPECT_EQ(json["moves"][0]["move"], "g1f3");
    EXPECT_EQ(json["moves"][0]["san"], "Nf3");
    EXPECT_EQ(json["moves"][0]["lines"], 25);
    EXPECT_EQ(json["moves"][0]["moves"][0]["move"], "d7d6");
    EXPECT_FALSE(json["moves"][0]["moves"][0].contains("moves"));
}

TEST(BookTool, FindsWhereALineStops) {
    struct Case {
        std::string line;
        std::string fault;
        bool polyglotCastling = false;
    };
    const std::string italian = "e2e4 e7e5 g1f3 b8c6 f1c4 f8c5 ";
    for (const auto& [line, fault, polyglotCastling] : std::vector<Case>{
             {"", ""},
             {"e2e4 e7e5  ", ""},
             {"e2e4 e7e5\r", ""},
             {"e2e4 e7e5 \r", ""},
             {"\r", ""},
             {italian + "e1g1", ""},
             {italian + "e1h1", "", true},
             {italian + "e1g1", R"(move 7, "e1g1", is not legal in its position)", true},
             {"e2e5 e7e5", R"(move 1, "e2e5", is not legal in its position)"},
             {"e2e4 e2e4", R"(move 2, "e2e4", is not legal in its position)"},
             {"e2e4  e7e5", R"(move 2, " e7e", is not legal in its position)"},
             {"xyzz", R"(move 1 of the line, "xyzz", is not legal in its position)"},
             {"1. e4 e5 2. Nf3 Nc6 3. O-O",
              R"(move 5 of the line, "O-O", is not legal in its position)"},
             {"1. e4 e5 2. Nf3 Nc6 3. Bb5", ""},
             {"e4 e5 Nf3 *", ""},
             {"e2e", R"(move 1 of the line, "e2e", is not legal in its position)"},
             {"e2e4 e7e5 g1", R"(move 3, "g1", is incomplete)"},
             {"e2e4 f7f6 d1h5 a7a6", R"(move 4, "a7a6", leaves the king in check)"},
             {"e2e4 f7f6 d1h5 a7a6 g1f3", R"(move 4, "a7a6", leaves the king in check)"},
         }) {
        EXPECT_EQ(findLineFault(line, polyglotCastling), fault) << line;
    }
}

TEST(BookTool, ChecksAFileLineByLine) {
    const TextFile faulty("e2e4 e7e5\ne2e5\n\nd2d4 d7d5 c2");
    const ToolRun run = runBody(bookMain, {"--check", faulty.path});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output, faulty.path + ":2: move 1, \"e2e5\", is not legal in its position\n" +
                              faulty.path + ":4: move 3, \"c2\", is incomplete\n" +
                              "Lines: 4, with a fault: 2\n");
    const ToolRun asJson = runBody(bookMain, {"--check", faulty.path, "--json"});
    EXPECT_EQ(asJson.status, 1);
    const Json json = Json::parse(asJson.output);
    EXPECT_EQ(json["lines"], 4);
    EXPECT_EQ(json["faults"][1], (Json{{"line", 4}, {"fault", "move 3, \"c2\", is incomplete"}}));
    const TextFile sound("e2e4 e7e5\n1. d4 d5\n");
    EXPECT_EQ(runBody(bookMain, {"--check", sound.path}).status, 0);
    const TextFile castling("e2e4 e7e5 g1f3 b8c6 f1c4 f8c5 e1g1\n");
    EXPECT_EQ(runBody(bookMain, {"--check", castling.path}).status, 0);
    EXPECT_EQ(runBody(bookMain, {"--check", castling.path, "--polyglot-castling"}).status, 1);
}

TEST(BookTool, ShowsTheBookOfAFile) {
    const TextFile file("e2e4 e7e5\n\ne2e4 c7c5\nd2d4\n");
    EXPECT_EQ(runBody(bookMain, {"--book", file.path}).output, "e4         2 of 3   66.7 %\n"
                                                               "d4         1 of 3   33.3 %\n");
    EXPECT_EQ(runBody(bookMain, {"--book", file.path, "--moves", "e4 e5"}).output,
              "The book has no move for this position.\n");
    // A rook goes to g1 after castling.
    const TextFile castling("e2e4 e7e5 g1f3 b8c6 f1c4 f8c5 e1h1 a7a6 f1e1 a6a5 g1h1 a5a4 e1g1\n");
    std::string moves = "e4 e5 Nf3 Nc6 Bc4 Bc5";
    for (const auto& [more, move] : {std::pair("", "O-O"), {" O-O a6 Re1 a5 Kh1 a4", "Rg1"}}) {
        const ToolRun book = runBody(bookMain, {"--book", castling.path, "--polyglot-castling",
                                                "--moves", moves.append(more)});
        EXPECT_EQ(book.output, std::string(move).append(8, ' ') + "1 of 1  100.0 %\n");
    }
}

TEST(BookTool, RefusesABadBook) {
    const std::pair<std::string, std::string> cases[] = {
        {"e2e4 e7e5\ne2e5\n", ":2: move 1, \"e2e5\", is not legal in its position"},
        {"1. e4 e5\n", ":1: a book line begins with a move such as e2e4"},
    };
    for (const auto& [text, what] : cases) {
        const TextFile file(text);
        expectRefusal(runBody(bookMain, {"--book", file.path}), file.path + what + '\n');
    }
}

} // namespace
