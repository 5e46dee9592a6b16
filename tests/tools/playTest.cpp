// A game at the terminal: the rules that end it, what each command does, and the program.

#include "kestran-play/table.h"
#include "support/commandLine.h"
#include "support/gameInput.h"
#include "support/textPattern.h"
#include "testing/boardSupport.h"
#include "testing/toolSupport.h"

#include <chrono>
#include <cstdlib>
#include <gtest/gtest.h>
#include <pty.h>
#include <sstream>
#include <tuple>
#include <unistd.h>

namespace {

TEST(GameRecord, EndsByTheRules) {
    struct Case {
        std::string fen, moves, end, result;
    };
    for (const auto& [fen, moves, end, result] : std::initializer_list<Case>{
             {"6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", "Ra8", "Checkmate: White wins.", "1-0"},
             {"startpos", "f3 e5 g4 Qh4", "Checkmate: Black wins.", "0-1"},
             {"7k/8/6K1/8/8/8/8/5Q2 w - - 0 1", "Qf7", "Stalemate: ", "1/2-1/2"},
             {"4k3/8/8/8/8/5b2/4n3/4K3 w - - 0 1", "Kf2 Ke7 Kxf3", "Nobody", "1/2-1/2"},
             {"4k3/8/8/8/8/8/4P3/4K3 w - - 99 90", "Kd2", "Fifty moves", "1/2-1/2"},
             {"startpos", "Nf3 Nf6 Ng1 Ng8 Nf3 Nf6 Ng1 Ng8", "The position has", "1/2-1/2"}}) {
        GameRecord record(readGame({fen}, ""));
        const std::vector<Move> line = readMoves(record.getPosition(), moves, "the game");
        for (const Move& move : line) {
            ASSERT_FALSE(record.isOver()) << moves;
            record.play(move);
        }
        EXPECT_TRUE(record.getEnd().starts_with(end)) << moves << ": " << record.getEnd();
        EXPECT_NE(record.getPgn(BLACK).find("[Result \"" + result + "\"]"), std::string::npos);
        EXPECT_EQ(record.getPgn(BLACK).find("[FEN ") == std::string::npos, fen == "startpos");
        record.takeBack(1);
        EXPECT_FALSE(record.isOver()) << moves;
        EXPECT_NE(record.getPgn(BLACK).find("[Result \"*\"]"), std::string::npos);
    }
    EXPECT_TRUE(GameRecord(readGame({"7k/5Q2/6K1/8/8/8/8/8 b - - 0 1"}, "")).isOver());
}

TEST(BoardView, DrawsFromEitherSide) {
    const Position position = positionOf("4k3/8/8/8/8/8/P6q/4K2R w - - 0 1");
    const std::string board = drawBoard(position, nullptr, {});
    EXPECT_TRUE(board.starts_with("  8  .  .  .  .  k  .  .  . \n")) << board;
    EXPECT_NE(board.find("\n  2  P  .  .  .  .  .  .  q \n  1  .  .  .  .  K  .  .  R \n"
                         "     a  b  c  d  e  f  g  h \n"),
              std::string::npos)
        << board;
    const std::string symbols =
        drawBoard(position, nullptr, {.withSymbols = true, .bottom = BLACK});
    EXPECT_TRUE(symbols.starts_with("  1  ♖  .  .  ♔  .  .  .  . \n  2  ♛  .")) << symbols;
    const Move move = moveOf(position, "a2a4");
    const auto colours = [&](const Move* last) {
        return drawBoard(position, last, {.withColours = true});
    };
    const std::string lightRow = "(\\S+48;5;180m...\\S+48;5;137m...){4}\\S+\n";
    EXPECT_TRUE(TextPattern("  8 " + lightRow).isIn(colours(nullptr)));
    EXPECT_EQ(colours(nullptr).find("48;5;186m"), std::string::npos);
    EXPECT_NE(colours(&move).find("\033[1;38;5;231;48;5;186m P \033[0m"), std::string::npos);
}

TEST(BoardView, HasSymbolsWhereTheTerminalHas) {
    const std::vector<std::tuple<std::string, std::string, bool>> cases = {
        // LC_ALL, LANG, whether there are symbols
        {"", "de_DE.UTF-8", true},
        {"en_US.utf8", "C", true},
        {"C", "de_DE.UTF-8", false},
        {"", "C", false},
    };
    int terminal = -1;
    int output = -1;
    if (openpty(&terminal, &output, nullptr, nullptr, nullptr) != 0) {
        GTEST_SKIP() << "there is no pseudo-terminal";
    }
    const int kept = dup(STDOUT_FILENO);
    std::vector<bool> found;
    dup2(output, STDOUT_FILENO);
    unsetenv("LC_CTYPE");
    for (const auto& [all, language, hasSymbols] : cases) {
        setenv("LC_ALL", all.c_str(), 1);
        setenv("LANG", language.c_str(), 1);
        found.push_back(getUsualStyle().withSymbols);
    }
    dup2(kept, STDOUT_FILENO);
    for (const int descriptor : {kept, output, terminal}) {
        close(descriptor);
    }
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(found[i], std::get<2>(cases[i])) << i;
    }
}

// The engine searches two plies, out of its book.
class PlayTable : public testing::Test {
protected:
    // What the table says to some lines, one after another.
    std::string say(const std::vector<std::string>& lines) {
        out.str("");
        for (const std::string& line : lines) {
            EXPECT_TRUE(table.handleLine(line)) << line;
        }
        return out.str();
    }

    std::ostringstream out;
    const Game start = readGame({"6k1/pp3p1p/2p2np1/3r4/3N4/1PR3P1/P4P1P/6K1 w - - 0 1"}, "");
    Table table{start, WHITE, {.time = 60000, .depth = 2}, {}, out};
};

TEST_F(PlayTable, PlaysTakesBackAndChangesSides) {
    table.begin();
    EXPECT_EQ(table.getPgn(), "");
    EXPECT_EQ(table.getPrompt(), "1. ");
    EXPECT_NE(say({"Kg2"}).find("Kestran plays 1... "), std::string::npos);
    EXPECT_EQ(table.getPrompt(), "2. ");
    EXPECT_TRUE(TextPattern("1\\. Kg2 \\S+\n").matches(say({"moves"})));
    EXPECT_NE(say({"back", "moves", "fen"}).find("\n\n6k1/pp3p1p/2p2np1/"), std::string::npos);
    EXPECT_NE(say({"switch"}).find("Kestran plays 1. "), std::string::npos);
    EXPECT_EQ(table.getPrompt(), "1... ");
    EXPECT_NE(table.getPgn().find("[White \"Kestran\"]\n[Black \"Human\"]\n[Result \"*\"]"),
              std::string::npos);
    EXPECT_EQ(say({"resign"}), "Black resigns.\n");
    EXPECT_EQ(table.getPrompt(), "over> ");
    EXPECT_NE(table.getPgn().find("Black resigns.} 1-0\n"), std::string::npos);
    EXPECT_NE(say({"g8f8"}).find("the game is over"), std::string::npos);
    EXPECT_NE(say({"new", "moves"}).find("Kestran plays 1. "), std::string::npos);
    EXPECT_FALSE(table.handleLine("quit"));
}

TEST_F(PlayTable, GivesHintsAndReasons) {
    EXPECT_TRUE(TextPattern("1\\. \\S+ .*, [+-]\\d\\.\\d{3} for White at depth 2\n")
                    .matches(say({"hint"})));
    say({"g1g2"});
    EXPECT_TRUE(say({"why"}).starts_with("The search followed the line to its end in pass "));
    EXPECT_NE(say({"why a6"}).find("instead of 1... a6 it chose 1... "), std::string::npos);
}

TEST_F(PlayTable, RefusesWhatMakesNoSense) {
    for (const auto& [line, answer] : std::vector<std::pair<std::string, std::string>>{
             {"back", "there is no move of yours to take back\n"},
             {"why", "there is no move of the engine to explain\n"},
             {"Kg3", "\"Kg3\" is no move here, and no command; \"help\" lists those\n"},
             {"Nf3 Nc6", "one move or command at a time, please; \"help\" lists them\n"},
             {"", ""}}) {
        EXPECT_EQ(say({line}), answer);
    }
    std::ostringstream twoKnights;
    Table other(readGame({"4k3/8/8/8/8/8/8/1N2KN2 w - - 0 1"}, ""), WHITE, {}, {}, twoKnights);
    other.handleLine("Nd2");
    EXPECT_EQ(twoKnights.str(), "\"Nd2\" can mean more than one move: Nbd2 Nfd2\n");
}

// ---- The program ----

const std::string PLAY = KESTRAN_BINARY_DIR "/kestran-play";

TEST(Play, ThinksForTheTimeThatItIsGiven) {
    const std::string quiet = "6k1/pp3p1p/2p2np1/3r4/3N4/1PR3P1/P4P1P/6K1 w - - 0 1";
    UciProcess process(PLAY, {quiet, "--side", "black", "--time", "0.5"});
    const auto start = std::chrono::steady_clock::now();
    process.closeInput();
    EXPECT_EQ(process.waitForEnd(PATIENCE)->status, 0);
    EXPECT_GT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(100));
}

TEST(Play, AddsItsGamesToAFile) {
    const TestFolder folder;
    const std::string file = folder.path + "/games.pgn";
    for (std::size_t games = 1; games <= 2; ++games) {
        UciProcess process(PLAY, {"6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", "--pgn", file});
        process.send("a1a8");
        process.closeInput();
        EXPECT_EQ(process.waitForEnd(PATIENCE)->status, 0);
        std::ostringstream text;
        text << std::ifstream(file).rdbuf();
        const TextPattern GAME(R"(1\. Ra8# \{Checkmate: White wins\.\} 1-0)");
        EXPECT_EQ(GAME.findAll(text.str()).size(), games);
    }
}

TEST(Play, RefusesBadInput) {
    for (const auto& [words, reason] :
         std::vector<std::pair<std::vector<std::string>, std::string>>{
             {{"--side", "green"}, "--side is white, black or random"},
             {{"--time", "0"}, "--time is a number of seconds"},
             {{"--time", "1x"}, "--time is a number of seconds"},
             {{"--depth", "21"}, "from 1 to 20"},
             {{"8/8/8"}, "cannot be played"},
             {{"--pgn", "/no/game"}, "/no/game cannot be written"}}) {
        expectRefusal(run(PLAY, words), reason);
    }
}

} // namespace
