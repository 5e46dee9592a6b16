// The soak gets healthy engines through their games and catches those that do wrong.

#include "kestran-soak/soak.h"
#include "support/text.h"
#include "testing/regex.h"
#include "testing/toolSupport.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <initializer_list>
#include <iterator>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <thread>
#include <tuple>

namespace {

using std::chrono::milliseconds;

const std::string ENGINE = KESTRAN_BINARY_DIR "/kestran";

std::string textOf(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

std::string reportOn(const SoakReport& report, const SoakOptions& options) {
    std::ostringstream text;
    writeReport(text, report, options, std::chrono::seconds(0));
    return text.str();
}

// A shell script around the engine, whose path is $0.
PlayerOptions scripted(const std::string& script, const std::string& argument = "") {
    return {.path = "/bin/sh", .arguments = {"-c", script, ENGINE, argument}};
}

class Soak : public testing::Test {
protected:
    // Short games at a thousandth of a second for each move.
    SoakOptions optionsFor(const PlayerOptions& engine) const {
        return {.game = {.plies = 6, .margin = 5000, .times = {"1/0.001"}, .hashes = {1}},
                .engine = engine,
                .records = folder.path};
    }

    TestFolder folder;
};

TEST_F(Soak, HealthyEngines) {
    const std::string other = R"("$0" | sed -u 's/^id name .*/id name Other/; s/$/\r/')";
    for (const PlayerOptions& engine :
         {PlayerOptions{.path = ENGINE}, {.path = ENGINE + "-modern"}, scripted(other)}) {
        SoakOptions options = optionsFor(engine);
        options.game.plies = 20;
        const SoakReport report = runSoak(options);
        EXPECT_TRUE(TextPattern("No fault\\.\nsummary games=1 .* plies=[1-9].* clean=yes\n")
                        .isIn(reportOn(report, options)))
            << reportOn(report, options);
    }
}

// What an engine does wrong, and what is said of it.
struct Wrong {
    Fault::Kind kind;
    std::string script;
    std::string text; // a pattern
};
const std::string DELAYED = // a line in the pause before a `go`
    R"("$0" | while IFS= read -r line; do echo "$line"; case $line in readyok) sleep 0.02; )"
    R"(echo hello ;; esac; done)";
const std::vector<Wrong> WRONGS = {
    {Fault::ILLEGAL_MOVE, R"("$0" | sed -u 's/^bestmove .*/bestmove a1a1/')",
     R"(illegal move "a1a1"; the process .*)"},
    {Fault::ILLEGAL_MOVE, R"("$0" | sed -u 's/^bestmove .*/bestmove (none)/')", "illegal move .*"},
    {Fault::TIME_LOSS,
     R"("$0" | while IFS= read -r l; do case $l in best*) sleep 1.9;; esac; echo "$l"; done)",
     R"("go movetime 1" took \d+ ms, \d+ too many)"},
    {Fault::PROTOCOL, R"("$0" | sed -u '/^bestmove/p')", R"(unasked.*|instead of ready.*)"},
    {Fault::PROTOCOL, R"("$0" | sed -u '/^bestmove/d')", "it does not answer in time.*running"},
    {Fault::PROTOCOL, R"("$0" | sed -u '/^info pv/{/score/!d}')", "no closing line.*|malf.*"},
    {Fault::PROTOCOL, R"("$0" | sed -u 's/\( nps .*\) $/\1/')", "malformed line.*"},
    {Fault::PROTOCOL, R"("$0" | sed -u '/score/s/pv [^ ]*/& a1a1/')", "illegal move in .*"},
    {Fault::PROTOCOL, R"("$0" | sed -u '/^info pv/{/score/!s/.*/info pv/}')", "no closing line.*"},
    {Fault::PROTOCOL, R"("$0" | sed -u 's/^readyok/&\nhello/')",
     "(unasked|malformed) line \"hello\".*"},
    {Fault::PROTOCOL, DELAYED, "unasked line \"hello\".*"}, // in a pause
    {Fault::PROTOCOL, R"("$0" | sed -u 's/Hash/hash/')", "unexpected answer to uci.*"},
    {Fault::PROTOCOL, R"("$0" | sed -u 's/uciok/uciOk/')", "it does not answer in time.*"},
    {Fault::PROTOCOL, R"(timeout 0.3 "$0")", "it.*; the process ended with status 124"},
    {Fault::PROTOCOL, "read line; kill -SEGV $$", ".*ended.*; the process ended by signal 11"},
    {Fault::PROTOCOL, "read line; exit 3", ".*; the process ended with status 3"},
    {Fault::PROTOCOL, R"("$0" | sed -u 's/ nodes / nodes -/')", "malformed line.*"},
    {Fault::PROTOCOL, R"(echo oops >&2; exec "$0")", "on standard error: \"oops\".*"},
};

TEST_F(Soak, EachFaultIsFound) {
    for (const Wrong& wrong : WRONGS) {
        SoakOptions options = optionsFor(scripted(wrong.script));
        options.game.margin = wrong.kind == Fault::TIME_LOSS ? 1500 : 5000;
        options.engine.patience = milliseconds(wrong.text.starts_with("it does not") ? 500 : 10000);
        options.engine.pause = wrong.script == DELAYED ? 4000 : 0;
        const SoakReport report = runSoak(options);
        EXPECT_EQ(report.count(wrong.kind), 1) << wrong.script;
        const std::string comment = report.games.at(0).comment;
        const TextPattern text("game 0, ply \\d, /bin/sh: (" + wrong.text + "); see (.*)");
        const auto parts = text.match(comment);
        ASSERT_TRUE(parts) << wrong.text << ": " << comment;
        EXPECT_TRUE(TextPattern("\\d+ > uci\n").isIn(textOf(parts->back()))) << parts->back();
        EXPECT_EQ(TextPattern("\nOn standard error: oops\n").isIn(textOf(parts->back())),
                  wrong.script.starts_with("echo oops"));
        EXPECT_TRUE(TextPattern("FAULTS\\.\nsum.* clean=no\n").isIn(reportOn(report, options)));
    }
}

TEST_F(Soak, FaultsAfterTheLastGame) {
    for (const auto& [script, text] : std::vector<std::pair<std::string, std::string>>{
             {R"("$0"; exit 3)", "no clean end after quit; the process ended with status 3"},
             {R"("$0"; kill -SEGV $$)", "the process ended by signal 11"},
             {R"("$0"; echo bye)", "unasked line \"bye\""},
             {R"("$0"; echo oops >&2)", "on standard error: \"oops\""},
             {R"("$0"; sleep 20)", "no clean end after quit; the process was running"}}) {
        SoakOptions options = optionsFor({.path = ENGINE});
        options.against = scripted(script);
        options.game.plies = 1;
        options.against->patience = milliseconds(text.ends_with("running") ? 1500 : 5000);
        const SoakReport report = runSoak(options);
        ASSERT_EQ(report.quitFaults.size(), 1U) << script;
        const auto parts = TextPattern("(.*); see (.*)").match(report.quitFaults[0]);
        ASSERT_TRUE(parts) << report.quitFaults[0];
        EXPECT_NE(parts->at(1).find(text), std::string::npos) << report.quitFaults[0];
        EXPECT_TRUE(TextPattern("^at the end, .*\n\\d+ > quit\n").isIn(textOf(parts->at(2))));
        EXPECT_EQ(report.count(Fault::PROTOCOL), 1);
        EXPECT_FALSE(report.isClean());
    }
}

// The engine that does wrong loses with either colour, whichever of the two it is.
TEST_F(Soak, MatchIsLostByTheFaultyEngine) {
    for (const auto& [index, termination, margin] : {std::tuple(0, "rules infraction", 5000),
                                                     {2, "time forfeit", 1500},
                                                     {14, "abandoned", 5000}}) {
        SoakOptions options = optionsFor({.path = ENGINE});
        options.game.isMatch = true;
        options.game.margin = margin;
        options.games = 2;
        options.against = scripted(WRONGS.at(static_cast<std::size_t>(index)).script);
        for (const std::size_t halfPoints : {4U, 0U}) {
            const SoakReport report = runSoak(options);
            ASSERT_EQ(report.games.size(), 2U);
            for (const GameRecord& game : report.games) {
                EXPECT_EQ(game.result, game.white == "/bin/sh" ? "0-1" : "1-0");
                EXPECT_EQ(game.termination, termination);
            }
            // A process that was only late plays on. The record is that of one game.
            const bool isNew =
                TextPattern("> uci\n").isIn(textOf(folder.path + "/soak-seed1-game1.txt"));
            EXPECT_EQ(isNew, termination != std::string("time forfeit"));
            EXPECT_EQ(report.games[0].white, report.games[1].black);
            EXPECT_NE(report.games[0].white, report.games[0].black);
            EXPECT_EQ(report.getScore().getPairs().at(halfPoints), 1);
            std::swap(options.engine, *options.against);
        }
    }
}

TEST_F(Soak, SequentialTestEndsAMatch) {
    SoakOptions options = optionsFor({.path = ENGINE});
    options.game.isMatch = true;
    options.games = 200;
    options.against = scripted("exit 0");
    options.sprt = {0, 200};
    for (const char* decision : {" elo=inf .* sprt=H1 ", " elo=-inf .* sprt=H0 "}) {
        const SoakReport report = runSoak(options);
        EXPECT_LT(report.games.size(), 40U);
        EXPECT_TRUE(TextPattern(decision).isIn(reportOn(report, options)));
        std::swap(options.engine, *options.against);
    }
}

// A shell around the engine that takes 10 MiB more in each game after the first $1.
const std::string GROWING = R"(exec 3> >("$0"); child=$!
    while read -r line && [ "$line" != quit ]; do
        if [ "$line" = ucinewgame ] && [ $((++games)) -gt "$1" ]; then
            kept=$kept$(head -c 10485760 /dev/zero | tr '\0' x)
        fi
        echo "$line" >&3
    done; exec 3>&-; wait $child)";

TEST_F(Soak, GrowingMemoryIsAFault) {
    // What grows, after how many games: in the first ten, after them, and not at all.
    for (const auto& [games, after, settles, grows] :
         {std::tuple(2, 1, true, false), {11, 10, false, true}, {2, 2, false, false}}) {
        SoakOptions options = optionsFor(scripted(GROWING, std::to_string(after)));
        options.engine.path = "/bin/bash";
        options.games = games;
        options.game.plies = 1;
        if (settles || grows) { // the first of two
            options.against = scripted(GROWING, "99");
            options.against->path = "/bin/bash";
        }
        const SoakReport report = runSoak(options);
        EXPECT_EQ(report.count(Fault::NONE), games);
        EXPECT_EQ(report.getMost(&GameRecord::settling) > 2000, settles);
        EXPECT_EQ(report.getMost(&GameRecord::growth) > 2000, grows);
        EXPECT_EQ(report.isClean(), !settles && !grows);
    }
}

// Each time control goes with each size of the table, and both games of a pair have the same.
TEST_F(Soak, TimesAndTablesTakeTurns) {
    const std::string heard = folder.path + "/heard";
    SoakOptions options = optionsFor(scripted(R"(sed -u "/quit/q;w $1" | "$0")", heard));
    options.games = 4;
    options.game = {.plies = 1, .margin = 5000, .times = {"1/0.001", "1/0.002"}, .hashes = {5, 6}};
    EXPECT_TRUE(runSoak(options).isClean());
    std::string found;
    for (const auto& parts :
         TextPattern("Hash value ([56])|go movetime \\d+(?=\nsetoption)").findAll(textOf(heard))) {
        found += parts[1].empty() ? parts[0] + ", " : parts[1] + ' ';
    }
    EXPECT_EQ(found, "5 go movetime 1, 5 go movetime 2, 6 go movetime 1, 6 go movetime 2, ");
    options.game.isMatch = true;
    std::set<std::string> openings;
    for (const auto& [number, hash, time] :
         {std::tuple(0, 5, "1/0.001"), {1, 5, "1/0.001"}, {3, 5, "1/0.002"}, {5, 6, "1/0.001"}}) {
        const SoakGame game(options.game, number);
        EXPECT_EQ(game.getHash(), hash) << number;
        EXPECT_EQ(game.record.timeControl, time) << number;
        openings.insert(game.getPositionLine());
    }
    EXPECT_EQ(openings.size(), 3U);
}

TEST_F(Soak, HundredGamesSixtyAtATime) {
    SoakOptions options = optionsFor({.path = ENGINE});
    options.game.plies = 2;
    options.engine.pause = 50;
    options.games = 100;
    options.jobs = 60;
    const SoakReport report = runSoak(options);
    EXPECT_TRUE(report.isClean()) << reportOn(report, options);
    ASSERT_EQ(report.games.size(), 100U);
    for (int number = 0; number < 100; ++number) {
        EXPECT_EQ(report.games[static_cast<std::size_t>(number)].number, number);
    }
}

TEST_F(Soak, ContinuesAfterAStop) {
    SoakOptions options = optionsFor(scripted("exec \"$0\""));
    options.games = 6;
    options.state = folder.path + "/state";
    std::size_t played = 0;
    int asked = 0; // since two games are over: before the third one, and in it
    options.isStopWanted = [&] { return played >= 2 && ++asked > 2; };
    options.onGame = [&played](const SoakReport& report) { played = report.games.size(); };
    const SoakReport stopped = runSoak(options);
    EXPECT_EQ(stopped.games.size(), 2U) << "without the third one";
    std::ofstream(options.state, std::ios::app) << "\n{\"number\":2,\"pl"; // as a crash leaves it
    options.isStopWanted = SoakOptions().isStopWanted;
    options.engine.arguments = scripted("exit 3").arguments; // the others fail
    const SoakReport whole = runSoak(options);
    EXPECT_EQ(whole.resumed, 2);
    EXPECT_EQ(whole.count(Fault::NONE), 2);
    EXPECT_EQ(whole.count(Fault::PROTOCOL), 4);
    SoakReport again = runSoak(options);
    EXPECT_EQ(again.resumed, 6);
    again.resumed = 2;
    EXPECT_EQ(reportOn(again, options), reportOn(whole, options));
    using Change = void (*)(SoakOptions&);
    for (const Change change : std::initializer_list<Change>{
             [](auto& other) { ++other.game.seed; }, [](auto& other) { ++other.game.plies; },
             [](auto& other) { ++other.game.margin; },
             [](auto& other) { other.game.times = {"1/1"}; },
             [](auto& other) { other.game.hashes = {2}; },
             [](auto& other) { other.engine.path = "/no"; },
             [](auto& other) { other.against = other.engine; }}) {
        SoakOptions other = options;
        change(other);
        EXPECT_THROW(runSoak(other), UsageError);
    }
    options.state = folder.path + "/notes";
    std::ofstream(options.state) << "notes";
    EXPECT_THROW(runSoak(options), UsageError);
    EXPECT_EQ(textOf(options.state), "notes");
}

TEST_F(Soak, InterruptedProgramReports) {
    for (const int signal : {SIGINT, SIGTERM}) {
        const std::string state = folder.path + "/state" + std::to_string(signal);
        UciProcess soak(ENGINE + "-soak", {"1000", "--engine", ENGINE, "--time", "1/0.001",
                                           "--plies", "4", "--state", state, "--margin", "5000"});
        while (textOf(state).find("\"plies\":4") == std::string::npos) {
            std::this_thread::sleep_for(milliseconds(20));
        }
        kill(soak.getPid(), signal);
        std::string last;
        while (const auto line = soak.readLine(PATIENCE)) {
            last = *line;
        }
        const auto end = soak.waitForEnd(PATIENCE);
        ASSERT_TRUE(end && end->exited);
        EXPECT_EQ(end->status, 0) << soak.readErrors();
        EXPECT_TRUE(TextPattern("summary games=\\d .*clean=yes").matches(last)) << last;
    }
}

TEST_F(Soak, ProgramWritesTheGamesAndFailsAfterAFault) {
    const std::string pgn = folder.path + "/games.pgn";
    const std::string records = folder.path + "/new/records";
    const std::string state = folder.path + "/state";
    const std::string words =
        "2 --engine /bin/true --against /bin/false --seed 7 --first 6 --plies 8 "
        "--margin 9 --time 1/1,2+1 --hash 3,4 --pgn " +
        pgn + " --records " + records + " --state " + state;
    const ToolRun soak = run("/bin/sh", {"-c", "exec \"$0\" $1", ENGINE + "-soak", words});
    EXPECT_EQ(soak.status, 1) << soak.errors;
    const TextPattern tags("\\[White \"/bin/(\\w+)\"\\]\n\\[Black \"/bin/\\w+\"\\]\n"
                           "\\[Result \"(.*)\"\\]\n\\[Termination \"abandoned\"\\]\n"
                           "\\[TimeControl \"2\\+1\"\\]\n");
    const auto games = tags.findAll(textOf(pgn));
    ASSERT_EQ(games.size(), 2U);
    EXPECT_EQ(games[0][1] + ' ' + games[0][2], "true 0-1");
    EXPECT_EQ(games[1][1] + ' ' + games[1][2], "false 1-0");
    EXPECT_EQ(TextPattern("\\{game [67],").findAll(textOf(pgn)).size(), 2U) << "also without moves";
    EXPECT_NE(textOf(records + "/soak-seed7-game7.txt"), "");
    EXPECT_TRUE(textOf(state).starts_with(
        "[4,\"/bin/true\",\"/bin/false\",7,8,9,[\"1/1\",\"2+1\"],[3,4]]\n{"));
}

// The go lines of a game of `time` whose moves take so long.
std::string goLines(const std::string& time, const std::vector<int>& used) {
    const GameOptions options = {.margin = 1000, .times = {time}};
    SoakGame game(options, 5); // White is to move
    std::string lines;
    for (const int millis : used) {
        lines += game.getGoLine().substr(2) + ',';
        game.take(game.getBoard().legalMoves().front(), millis);
    }
    return lines + " at most " + std::to_string(game.record.overruns.rbegin()->first) + " late";
}

TEST(SoakGame, Clocks) {
    EXPECT_EQ(goLines("1/0.001", {100, 101}), " movetime 1, movetime 1, at most 100 late");
    EXPECT_EQ(goLines("2+0.1", {300, 2050, 1, 1}), " wtime 2000 btime 2000 winc 100 binc 100,"
                                                   " wtime 1800 btime 2000 winc 100 binc 100,"
                                                   " wtime 1800 btime 50 winc 100 binc 100,"
                                                   " wtime 1899 btime 50 winc 100 binc 100,"
                                                   " at most 50 late");
    EXPECT_EQ(goLines("2/5.25", {50, 60, 100, 5990, 0}),
              " wtime 5250 btime 5250 movestogo 2, wtime 5200 btime 5250 movestogo 2,"
              " wtime 5200 btime 5190 movestogo 1, wtime 10350 btime 5190 movestogo 1,"
              " wtime 10350 btime 5251 movestogo 2, at most 800 late");
    EXPECT_EQ(goLines("1/2+0.1", {500, 0}), " wtime 2000 btime 2000 movestogo 1 winc 100 binc 100,"
                                            " wtime 3600 btime 2000 movestogo 1 winc 100 binc 100,"
                                            " at most 0 late");
}

TEST(SoakGame, MarginAndLength) {
    const GameOptions options = {.plies = 2, .margin = 50, .times = {"1/0.1"}};
    SoakGame game(options, 0);
    game.take(game.getBoard().legalMoves().front(), 150);
    EXPECT_THROW(game.take(game.getBoard().legalMoves().front(), 151), Fault);
    game.take(game.getBoard().legalMoves().front(), 90);
    EXPECT_EQ(game.record.result, "1/2-1/2");
    EXPECT_EQ(game.record.termination, "adjudication");
    game.note(Fault::PROTOCOL, true, "too late to lose");
    EXPECT_EQ(game.record.result, "1/2-1/2");
    EXPECT_EQ(game.record.comment, "too late to lose");
    SoakReport report;
    report.games = {game.record};
    EXPECT_TRUE(TextPattern("1/0.1 +3 +1 +50 +51 +51 +51 +51\n").isIn(reportOn(report, {})));
    report.games.resize(2, game.record);
    report.games[0].overruns = {{0, 40}, {50, 1}};
    report.games[1].overruns = {{0, 50}, {10, 9}};
    EXPECT_TRUE(TextPattern("1/0.1 +100 +90 +0 +0 +10 +50 +50\n").isIn(reportOn(report, {})));
    report.games[1].overruns = {{0, 46}, {10, 9}}; // 87 moves are more than 90 %
    EXPECT_TRUE(TextPattern("1/0.1 +96 +86 +0 +10 +50 +50 +50\n").isIn(reportOn(report, {})));
}

TEST(SoakReport, SumsUpAMatch) {
    SoakReport report = {.quitFaults = {"at the end"}, .resumed = 2};
    for (int number = 0; number < 40; ++number) {
        const char* result =
            std::array{"1-0", "0-1", "1/2-1/2", "1-0"}[static_cast<std::size_t>(number % 4)];
        report.games.push_back({.number = number, .result = result, .plies = 3});
    }
    report.games[7].settling = 5;
    report.games[8].growth = 7;
    report.games[9].fault = Fault::TIME_LOSS;
    report.games[10].fault = Fault::ILLEGAL_MOVE;
    report.games[10].comment = "bad";
    report.games[11].termination = "adjudication";
    const SoakOptions options = {.against = PlayerOptions(), .sprt = Sprt{0, 10}};
    const std::string text = reportOn(report, options);
    EXPECT_TRUE(text.ends_with(
        "\nbad\nat the end\npairs with 0, 0.5, 1, 1.5 and 2 points: 0 10 0 0 10\n"
        "Elo 88.7 +- 128.4 with 95 % confidence\n"
        "SPRT of Elo 0.00 (H0) or 10.00 (H1): LLR 0.24 of 2.94, open\nFAULTS.\n"
        "summary games=40 white=20 black=10 drawn=10 adjudicated=1 plies=120 timeLosses=1 "
        "illegalMoves=1 protocolFaults=1 settlingKib=5 growthKib=7 resumed=2 seconds=0 pairs=20 "
        "elo=88.7 eloError=128.4 sprt=open clean=no\n"))
        << text;
    report.quitFaults.clear();
    EXPECT_FALSE(report.isClean()) << "some games are not";
    for (const std::int64_t excess : {0, 1}) { // of what memory may grow by
        SoakReport grown = {.games = {{.settling = 8192 + excess, .growth = 4096}}};
        EXPECT_EQ(grown.isClean(), excess == 0);
        grown.games[0] = {.settling = 8192, .growth = 4096 + excess};
        EXPECT_EQ(grown.isClean(), excess == 0);
    }
}

// Random games end when the rules say so, and not before.
TEST(SoakGame, EndsByTheRules) {
    const GameOptions options = {.plies = 10000};
    for (const auto& [number, result, ending] : {std::tuple(52, "0-1", "mate"),
                                                 {112, "1-0", "mate"},
                                                 {92, "1/2-1/2", "stalemate"},
                                                 {94, "1/2-1/2", "too few pieces"},
                                                 {65, "1/2-1/2", "fifty moves"},
                                                 {115, "1/2-1/2", "repetition"}}) {
        SoakGame game(options, number);
        const plain::Position& board = game.getBoard();
        std::map<std::string, int> seen = {{board.identity(), 1}};
        std::mt19937 random(static_cast<unsigned>(number));
        std::string found;
        while (!game.isOver()) {
            ASSERT_EQ(found, "") << number;
            const std::vector<std::string> moves = board.legalMoves();
            game.take(moves[random() % moves.size()], 0);
            const bool isThird = ++seen[board.identity()] == 3;
            found = board.legalMoves().empty() ? (board.isInCheck() ? "mate" : "stalemate")
                    : !board.canAnyoneMate()   ? "too few pieces"
                    : board.clock == 100       ? "fifty moves"
                    : isThird                  ? "repetition"
                                               : "";
        }
        EXPECT_EQ(found, ending) << number;
        EXPECT_EQ(game.record.result, result) << number;
    }
    EXPECT_TRUE(SoakGame(options, 7).getPositionLine().ends_with(" b KQq - 6 1")) << "its clock";
}

} // namespace
