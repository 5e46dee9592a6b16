// A game at the terminal: the rules that end it, what each command does, and the program.

#include "kestran-play/table.h"
#include "support/gameInput.h"
#include "testing/boardSupport.h"
#include "testing/regex.h"
#include "testing/toolSupport.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <pty.h>
#include <set>
#include <sstream>
#include <sys/wait.h>
#include <termios.h>
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
             {"4k3/8/8/8/8/5b2/4n3/4K3 w - - 0 1", "Kf2 Ke7 Kxf3", "Neither side", "1/2-1/2"},
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
    const GameRecord over(readGame({"7k/5Q2/6K1/8/8/8/8/8 b - - 0 1"}, ""));
    EXPECT_TRUE(TextPattern("\n\\{Stalemate: .*\\} 1/2-1/2\n").isIn(over.getPgn(BLACK)));
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
    EXPECT_TRUE(symbols.ends_with("     h  g  f  e  d  c  b  a \n")) << symbols;
    const std::string both =
        drawBoard(position, nullptr, {.withColours = true, .withSymbols = true});
    EXPECT_EQ(TextPattern("♜|♚").findAll(both).size(), 3U) << "the same for White and Black";
    const Move move = moveOf(position, "a2a4");
    const auto colours = [&](const Move* last) {
        return drawBoard(position, last, {.withColours = true});
    };
    const std::string lightRow = "(\\S+48;5;130m[ k]{3}\\S+48;5;94m   ){4}\\S+\n";
    EXPECT_TRUE(TextPattern("  8 " + lightRow).isIn(colours(nullptr)));
    EXPECT_EQ(colours(nullptr).find("48;5;98m"), std::string::npos);
    const TextPattern marked(
        "\033\\[1;38;5;(231;48;5;98m P|16;48;5;98m  ) \033\\[0m"); // both squares
    EXPECT_EQ(marked.findAll(colours(&move)).size(), 2U) << colours(&move);
}

// The relative luminance of one of the 216 colours of a terminal from 16 on, 0 to 1.
double luminanceOf(int colour) {
    constexpr std::array<double, 6> LEVELS = {0, 95, 135, 175, 215, 255};
    const auto linear = [&](int step) {
        const double value = LEVELS[static_cast<std::size_t>(step)] / 255;
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    const int cube = colour - 16;
    return 0.2126 * linear(cube / 36) + 0.7152 * linear(cube / 6 % 6) + 0.0722 * linear(cube % 6);
}

TEST(BoardView, ShowsPiecesWithEnoughContrast) {
    const Position position = positionOf("4k3/8/8/8/8/8/P6q/4K2R w - - 0 1");
    const Move light = moveOf(position, "a2a4");
    const Move dark = moveOf(position, "a2a3");
    const TextPattern cell("38;5;(\\d+);48;5;(\\d+)m");
    std::set<std::string> grounds;
    for (const Move* last : {static_cast<const Move*>(nullptr), &light, &dark}) {
        for (const auto& parts : cell.findAll(drawBoard(position, last, {.withColours = true}))) {
            const double ink = luminanceOf(std::stoi(parts.at(1)));
            const double ground = luminanceOf(std::stoi(parts.at(2)));
            const bool isWhite = ink > ground;
            const double contrast =
                isWhite ? (ink + 0.05) / (ground + 0.05) : (ground + 0.05) / (ink + 0.05);
            EXPECT_GE(contrast, isWhite ? 4.5 : 3.5) << parts.at(0);
            grounds.insert(parts.at(2));
        }
    }
    EXPECT_EQ(grounds.size(), 4U);
}

TEST(BoardView, HasSymbolsWhereTheTerminalHas) {
    const std::vector<std::tuple<std::string, std::string, std::string, bool>> cases = {
        // LC_ALL, LC_CTYPE, LANG, whether there are symbols
        {"", "", "de_DE.UTF-8", true},
        {"en_US.utf8", "C", "C", true},
        {"C", "de_DE.UTF-8", "de_DE.UTF-8", false},
        {"", "C", "de_DE.UTF-8", false},
        {"", "", "C", false},
    };
    int terminal = -1;
    int output = -1;
    if (openpty(&terminal, &output, nullptr, nullptr, nullptr) != 0) {
        GTEST_SKIP() << "there is no pseudo-terminal";
    }
    const int kept = dup(STDOUT_FILENO);
    std::vector<bool> found;
    dup2(output, STDOUT_FILENO);
    for (const auto& [all, characters, language, hasSymbols] : cases) {
        setenv("LC_ALL", all.c_str(), 1);
        setenv("LC_CTYPE", characters.c_str(), 1);
        setenv("LANG", language.c_str(), 1);
        found.push_back(getUsualStyle().withSymbols);
    }
    dup2(kept, STDOUT_FILENO);
    for (const int descriptor : {kept, output, terminal}) {
        close(descriptor);
    }
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(found[i], std::get<3>(cases[i])) << i;
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

    // The games that were written.
    std::string written() const {
        std::ostringstream text;
        text << std::ifstream(file).rdbuf();
        return text.str();
    }

    std::ostringstream out;
    const TestFolder folder;
    const std::string file = folder.path + "/games.pgn";
    GameKeeper keeper{file, out};
    // The position is that of move 12.
    const NumberedGame start =
        readGame({"6k1/pp3p1p/2p2np1/3r4/3N4/1PR3P1/P4P1P/6K1 w - - 3 12"}, "");
    Table table{start, WHITE, {.time = 60000, .depth = 2}, {}, keeper, out};
};

TEST_F(PlayTable, PlaysTakesBackAndChangesSides) {
    table.begin();
    EXPECT_EQ(table.getPrompt(), "12. ");
    EXPECT_NE(say({"Kg2"}).find("Kestran plays 12... "), std::string::npos);
    EXPECT_EQ(table.getPrompt(), "13. ");
    EXPECT_TRUE(TextPattern("12\\. Kg2 \\S+\n").matches(say({"moves"})));
    for (const char* command : {"back", "undo", "takeback"}) {
        const std::string answer = say({"moves", command, "fen", "Kg2"});
        EXPECT_TRUE(TextPattern("\nTaken back: 12\\. Kg2 \\S+\n"
                                "6k1/pp3p1p/2p2np1/3r4/3N4/1PR3P1/P4P1P/6K1 w - - 3 12\n")
                        .isIn(answer))
            << answer;
    }
    EXPECT_TRUE(TextPattern("\n12\\. Kg2 \\S+ 13\\. a3 \\S+\n$").isIn(say({"a3", "moves"})));
    EXPECT_EQ(say({"pgn"}), table.getPgn());
    EXPECT_TRUE(say({"board"}).starts_with("\n  8  .  .  .  ."));
    EXPECT_TRUE(say({"help"}).starts_with("  e4, Nf3,"));
    say({"back", "back"});
    const std::string switched = say({"switch"});
    EXPECT_NE(switched.find("Kestran plays 12. "), std::string::npos);
    EXPECT_LT(switched.find("\n  1  "), switched.find("\n  8  ")) << "the board is turned";
    const std::string flipped = say({"flip"});
    EXPECT_LT(flipped.find("\n  8  "), flipped.find("\n  1  "));
    EXPECT_EQ(table.getPrompt(), "12... ");
    EXPECT_NE(say({"hint"}).find(" for Black at depth 2\n"), std::string::npos);
    EXPECT_NE(table.getPgn().find("[White \"Kestran\"]\n[Black \"Human\"]\n[Result \"*\"]"),
              std::string::npos);
    EXPECT_TRUE(say({"resign"}).starts_with("Black resigns.\n"));
    EXPECT_EQ(table.getPrompt(), "game over> ");
    EXPECT_NE(table.getPgn().find("Black resigns.} 1-0\n"), std::string::npos);
    for (const char* command : {"g8f8", "hint", "switch", "resign"}) {
        EXPECT_TRUE(say({command}).starts_with("the game is over")) << command;
    }
    EXPECT_NE(say({"new", "moves"}).find("Kestran plays 12. "), std::string::npos);
    EXPECT_FALSE(table.handleLine("quit") || table.handleLine("exit"));
    Table mate(readGame({"6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1"}, ""), WHITE, {},
               {.withColours = true}, keeper, out);
    mate.handleLine("Ra8");
    EXPECT_NE(out.str().find("\nCheckmate: White wins.\n"), std::string::npos);
    EXPECT_NE(out.str().find(";48;5;61m   "), std::string::npos) << "a1 is marked";
    mate.handleLine("back");
    EXPECT_TRUE(out.str().ends_with("\nTaken back: 1. Ra8#\n")) << out.str();
    Table over(readGame({"7k/5Q2/6K1/8/8/8/8/8 b - - 0 1"}, ""), WHITE, {}, {}, keeper, out);
    over.begin();
    EXPECT_TRUE(TextPattern("\nStalemate: .*\n").isIn(out.str()));
}

// A game that is resigned, one that is left for a new one, one that is taken back to its start,
// and one without a move.
TEST_F(PlayTable, WritesEachGameWithAMoveOnce) {
    say({"Kg2", "resign"});
    EXPECT_NE(written().find("{White resigns.} 0-1"), std::string::npos) << written();
    EXPECT_TRUE(
        say({"new", "Kf1", "new", "why"}).ends_with("\nthe engine has no move to explain\n"));
    EXPECT_NE(written().find("/6K1 w - - 3 12\"]\n\n12. Kf1 "), std::string::npos) << written();
    say({"Kh1", "back", "new", "resign", "new"});
    keeper.leave();
    EXPECT_EQ(TextPattern("\\[Event ").findAll(written()).size(), 2U) << written();
}

TEST_F(PlayTable, ChangesItsStrength) {
    EXPECT_EQ(say({"depth 1"}), "The engine looks at most 1 ply ahead.\n");
    EXPECT_TRUE(TextPattern("12\\. \\S+ .*, [+-]\\d\\.\\d\\d for White at depth 1\n")
                    .matches(say({"hint"})));
    EXPECT_EQ(say({"depth 21"}), "depth is a whole number from 1 to 20, not \"21\"\n");
    EXPECT_EQ(say({"time 0.05", "depth 20"}), "The engine thinks 0.05 s about each move.\n"
                                              "The engine looks at most 20 plies ahead.\n");
    const auto begin = std::chrono::steady_clock::now();
    say({"hint"}); // would take hours
    EXPECT_LT(std::chrono::steady_clock::now() - begin, PATIENCE);
    EXPECT_TRUE(TextPattern("\n    1                  100  about 300\n(.*\n){6}"
                            "    8            1,000,000  about 1750\n(.*\n){2}"
                            "   11                  any  by its time\n$")
                    .isIn(say({"level"})));
    EXPECT_EQ(say({"level 12"}), "level is a whole number from 1 to 11, not \"12\"\n");
    EXPECT_NE(say({"time never"}).find("time is a number of seconds"), std::string::npos);
}

// The depth reached grows with the level, as the fixture sets no other limit that counts.
TEST_F(PlayTable, PlaysAtALevel) {
    const auto depthOfHint = [&](const std::string& level) {
        const TextPattern depth(R"(at depth (\d+)\n)");
        return std::stoi(depth.findAll(say({level, "hint"})).at(0).at(1));
    };
    EXPECT_EQ(say({"depth 20", "level 4"}),
              "The engine looks at most 20 plies ahead.\n"
              "Level 4: 1,000 nodes for each move, rating about 1050.\n");
    const int weak = depthOfHint("level 1");
    EXPECT_LT(weak, 4);
    const int strong = depthOfHint("level 8");
    EXPECT_GT(strong, weak);
    EXPECT_EQ(say({"level 11"}),
              "Level 11: any number of nodes for each move, rating by its time.\n");
    say({"time 0.001"});
    EXPECT_LT(depthOfHint("level 11"), strong);
    EXPECT_LT(depthOfHint("level 8"), strong) << "the time also limits a level";
    say({"level 1"});
    EXPECT_EQ(depthOfHint("time 0.2"), weak) << "the level stays";
    EXPECT_GT(depthOfHint("level 11"), weak);
}

TEST_F(PlayTable, GivesHintsAndReasons) {
    EXPECT_TRUE(TextPattern("12\\. \\S+ .*, [+-]\\d\\.\\d\\d for White at depth 2\n")
                    .matches(say({"hint"})));
    say({"g1g2"});
    const std::string score = R"( \([+-]\d\.\d\d\))";
    const std::string reason = say({"why"});
    EXPECT_TRUE(TextPattern(R"(It prefers 12\.\.\. \S+)" + score + R"( to 12\.\.\. \S+)" + score +
                            R"(, 12\.\.\. \S+)" + score + R"( and 12\.\.\. \S+)" + score +
                            R"(\. It expects 12\.\.\. .* \(depth 2\), the last)")
                    .isIn(reason))
        << reason;
    EXPECT_TRUE(TextPattern(R"(It prefers 12\.\.\. \S+)" + score + R"( to 12\.\.\. a6)" + score)
                    .isIn(say({"why a6"})));
    say({"back"});
    EXPECT_EQ(say({"why"}), "the engine has no move to explain\n") << "it was taken back";
    Table forced(readGame({"7k/p7/8/8/8/8/1r6/K7 w - - 0 1"}, ""), WHITE,
                 {.time = 60000, .depth = 2}, {}, keeper, out);
    forced.handleLine("hint");
    EXPECT_TRUE(out.str().ends_with(" at depth 1\n")) << out.str();
}

TEST_F(PlayTable, ExplainsBookMoves) {
    Table opening(readGame({}, ""), BLACK, {.time = 60000, .depth = 2}, {}, keeper, out);
    opening.begin();
    out.str("");
    opening.handleLine("why");
    const TextPattern fromBook(R"( played 1\. \S+ from its book, without a search; )"
                               R"(the book also has \S+, \S+, \S+\.)");
    EXPECT_TRUE(out.str().starts_with("It played 1. ")) << out.str();
    EXPECT_EQ(fromBook.findAll(out.str()).size(), 1U) << out.str();
    out.str("");
    opening.handleLine("why a3");
    EXPECT_TRUE(TextPattern(R"(It prefers 1\. \S+ \(\S+\) to 1\. a3 )").isIn(out.str()))
        << out.str();
    EXPECT_EQ(fromBook.findAll(out.str()).size(), 1U) << out.str();
    EXPECT_EQ(TextPattern("book").findAll(out.str()).size(), 2U) << "mentioned once";
    out.str("");
    opening.handleLine("hint");
    EXPECT_TRUE(TextPattern(R"(1\.\.\. \S+.*, from the book\n)").matches(out.str())) << out.str();
    // The only book move, which is also asked about as if it were another one.
    Table french(readGame({}, "e4 e6"), BLACK, {.time = 60000, .depth = 2}, {}, keeper, out);
    french.begin();
    out.str("");
    french.handleLine("why d4");
    EXPECT_EQ(out.str(), "It played 2. d4 from its book, without a search; the book has no other "
                         "move.\n");
}

TEST_F(PlayTable, RefusesWhatMakesNoSense) {
    const std::string oneAtATime = "type one move or command at a time; \"help\" lists them\n";
    for (const auto& [line, answer] : std::vector<std::pair<std::string, std::string>>{
             {"back", "you have no move to take back\n"},
             {"why", "the engine has no move to explain\n"},
             {"Kg3", "\"Kg3\" is not a legal move here\n"},
             {"hello", "\"hello\" is neither a move nor a command; \"help\" lists the commands\n"},
             {"Nf3 Nc6", oneAtATime},
             {"depth", oneAtATime},
             {"depth 2 3", oneAtATime},
             {"", ""}}) {
        EXPECT_EQ(say({line}), answer);
    }
    for (const auto& [fen, line, answer] :
         std::vector<std::tuple<std::string, std::string, std::string>>{
             {"4k3/8/8/8/8/8/8/1N2KN2 w - - 0 1", "Nd2",
              "\"Nd2\" can mean more than one move: Nbd2 Nfd2\n"},
             {"4k3/1P6/8/8/8/8/8/4K3 w - - 0 1", "b8", "to promote, type b8=Q\n"},
             {"4k3/1P6/8/8/8/8/8/4K3 w - - 0 1", "b7b8", "to promote, type b8=Q\n"},
             {"n3k3/1P6/8/8/8/8/8/4K3 w - - 0 1", "bxa8", "to promote, type bxa8=Q\n"},
             {"4k3/8/8/8/8/8/4r3/R3K3 w Q - 0 1", "O-O-O",
              "\"O-O-O\" is not possible: you are in check\n"}}) {
        out.str("");
        Table other(readGame({fen}, ""), WHITE, {}, {}, keeper, out);
        other.handleLine(line);
        EXPECT_EQ(out.str(), answer);
    }
}

// ---- The program ----

const std::string PLAY = KESTRAN_BINARY_DIR "/kestran-play";

// A second without a level, and a search that ends sooner with one.
TEST(Play, PlaysAtTheLevelThatItIsGiven) {
    const auto depthOfHint = [](const std::vector<std::string>& level) {
        std::vector<std::string> words = {"6k1/pp3p1p/2p2np1/3r4/3N4/1PR3P1/P4P1P/6K1 w - - 0 1"};
        words.insert(words.end(), level.begin(), level.end());
        UciProcess process(PLAY, words);
        process.send("hint");
        const TextPattern depth(R"(at depth (\d+))");
        while (const auto line = process.readLine(PATIENCE)) {
            if (depth.isIn(*line)) {
                return std::stoi(depth.findAll(*line).at(0).at(1));
            }
        }
        ADD_FAILURE() << "no hint";
        return 0;
    };
    const int best = depthOfHint({});
    EXPECT_LT(depthOfHint({"--level", "1"}), best);
    EXPECT_LT(depthOfHint({"--elo", "310"}), best);
    EXPECT_LT(depthOfHint({"--time", "0.002"}), best);
    EXPECT_EQ(depthOfHint({"--depth", "2"}), 2);
}

TEST(Play, LetsThePersonPlayBlack) {
    const std::string open = "6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1";
    for (const auto& [side, white] : {std::pair{"black", "Kestran"}, {"white", "Human"}}) {
        UciProcess process(PLAY, {open, "--side", side, "--depth", "2"});
        process.send("a1a8"); // refused to Black
        process.closeInput();
        std::string output;
        while (const auto line = process.readLine(PATIENCE)) {
            output += *line + '\n';
        }
        EXPECT_EQ(process.waitForEnd(PATIENCE)->status, 0);
        EXPECT_NE(output.find(std::string("[White \"") + white + "\"]"), std::string::npos)
            << output;
        const bool isWhiteNear = output.find("\n  8  ") < output.find("\n  1  ");
        EXPECT_EQ(isWhiteNear, white == std::string("Human")) << output;
    }
}

std::size_t countGames(const std::string& file, const char* game) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return TextPattern(game).findAll(text.str()).size();
}

// The end of input, and signals at the prompt.
TEST(Play, WritesAnUnfinishedGame) {
    const TestFolder folder;
    const std::string file = folder.path + "/games.pgn";
    std::size_t games = 0;
    for (const std::string ending : {"exit 0", "echo quit >&3; wait $!", "kill -INT $!; wait $!",
                                     "kill -TERM $!; wait $!", "kill -HUP $!; wait $!"}) {
        const std::string script = std::string(R"(
            mkfifo "$1.pipe"; : > "$1.out"; "$0" --depth 1 --pgn "$1" < "$1.pipe" > "$1.out" &
            exec 3> "$1.pipe"; echo e4 >&3
            until grep -q "Kestran plays" "$1.out"; do sleep 0.05; done
            rm "$1.pipe"; if [ "$2" = "exit 0" ]; then exec 3>&-; wait $!; else eval "$2"; fi)");
        const ToolRun left = run("/bin/bash", {"-c", script, PLAY, file, ending});
        EXPECT_EQ(left.status, 0) << ending << left.errors;
        EXPECT_EQ(countGames(file, R"(\n1\. e4 \S+ \*\n)"), ++games) << ending;
        if (!ending.starts_with("kill")) { // a signal may end the input before the program
            EXPECT_EQ(countGames(file + ".out", R"(2\. \n\n\[Event )"), ending == "exit 0")
                << "after the line of the prompt";
        }
    }
    const ToolRun full = run("/bin/sh", {"-c", "echo e4 | \"$0\" --depth 1 --pgn /dev/full", PLAY});
    EXPECT_EQ(full.status, 1);
    EXPECT_TRUE(TextPattern("/dev/full; here it is:\n\\[Event ").isIn(full.errors)) << full.errors;
}

#ifdef KESTRAN_LIBEDIT

// The game is left by Ctrl-C while a line is edited.
TEST(Play, EditsLinesOnATerminal) {
    const TestFolder folder;
    const std::string file = folder.path + "/games.pgn";
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child < 0) {
        GTEST_SKIP() << "there is no pseudo-terminal";
    }
    if (child == 0) {
        setenv("TERM", "xterm", 1);
        setenv("LC_ALL", "C.UTF-8", 1);
        alarm(60); // a test that has failed ends
        execl(PLAY.c_str(), PLAY.c_str(), "--depth=1", "--ascii", "--pgn", file.c_str(),
              "6k1/8/8/8/8/8/8/R5K1 w - - 0 1", static_cast<char*>(nullptr));
        _exit(127);
    }
    std::string output;
    const auto readUntil = [&](const std::string& what) {
        std::array<char, 4096> buffer;
        ssize_t got = 1;
        while (got > 0 && output.find(what) == std::string::npos) {
            got = read(terminal, buffer.data(), buffer.size());
            output.append(buffer.data(), got > 0 ? static_cast<std::size_t>(got) : 0);
        }
        const std::size_t place = output.find(what);
        EXPECT_NE(place, std::string::npos) << output;
        EXPECT_EQ(output.find("♚"), std::string::npos) << "no symbols";
        output.erase(0, place == std::string::npos ? place : place + what.size());
    };
    const auto type = [&](const std::string& keys) {
        EXPECT_EQ(write(terminal, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    };
    readUntil("1. ");
    type("Ra5\x7f"
         "2\n"); // the last digit is replaced
    readUntil("Kestran plays 1... ");
    readUntil("2. ");
    type("fen\n");
    readUntil(" w - - ");
    readUntil("2. ");
    type("\x1b[A\x1b[A\n"); // the line before the last
    readUntil("\"Ra2\" is not a legal move here");
    type("\x03");
    int status = -1;
    readUntil("1. Ra2 ");
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    termios settings = {};
    EXPECT_EQ(tcgetattr(terminal, &settings), 0);
    EXPECT_NE(settings.c_lflag & ICANON, 0U) << "the terminal has not got its settings back";
    close(terminal);
    EXPECT_EQ(countGames(file, R"(\n1\. Ra2 \S+ \*\n)"), 1U);
}

#endif

} // namespace
