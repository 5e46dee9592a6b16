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
    for (const std::string& engine : {ENGINE, ENGINE + "-modern"}) {
        SoakOptions options = optionsFor({.path = engine});
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
        SoakOptions options = optionsFor(scripted(script));
        options.game.plies = 1;
        options.engine.patience = milliseconds(text.ends_with("running") ? 1500 : 5000);
        const SoakReport report = runSoak(options);
        ASSERT_EQ(report.quitFaults.size(), 1U) << script;
        EXPECT_NE(report.quitFaults[0].find(text), std::string::npos) << report.quitFaults[0];
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
        const SoakReport report = runSoak(options);
        EXPECT_EQ(report.count(Fault::NONE), games);
        EXPECT_EQ(report.getMost(&GameRecord::settling) > 10000, settles);
        EXPECT_EQ(report.getMost(&GameRecord::growth) > 10000, grows);
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
    const ToolRun soak = run(ENGINE + "-soak", {"2", "--engine", "/bin/true", "--pgn", pgn,
                                                "--records", folder.path, "--seed", "7"});
    EXPECT_EQ(soak.status, 1) << soak.errors;
    EXPECT_EQ(TextPattern("\\[Result \"(1-0|0-1)\"\\]").findAll(textOf(pgn)).size(), 2U);
    EXPECT_NE(textOf(folder.path + "/soak-seed7-game1.txt"), "");
}

TEST(SoakProgram, RefusesWhatMakesNoSense) {
    for (const auto& [words, reason] : std::vector<std::pair<std::string, std::string>>{
             {"1 --engine /no/engine", "cannot start "},
             {"1 --engine " + ENGINE + " --against /no/engine", "cannot start "},
             {"1 --engine /bin/true --pgn /no/games", "/no/games cannot be written"},
             {"1 --engine /bin/true --time 2+0.1,", "a time is like"},
             {"1 --engine /bin/true --time 0/1", "a time is like"},
             {"1 --engine /bin/true --hash 16,x", "--hash is a whole number from 0 to 65536"},
             {"1 --engine /bin/true --state /no/games", "/no/games cannot be written"},
             {"1 --engine /bin/true --sprt 0,5", "--sprt needs --against"},
             {"1 --engine /bin/true --against /bin/true --sprt 5,0", "the smaller one first"},
             {"1", "--engine is required"},
             {"--engine /bin/true", "GAMES is required"}}) {
        const ToolRun soak = run("/bin/sh", {"-c", "exec \"$0\" $1", ENGINE + "-soak", words});
        EXPECT_EQ(soak.status, 2) << words;
        EXPECT_NE(soak.errors.find(reason), std::string::npos) << soak.errors;
    }
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
    return lines;
}

TEST(SoakGame, Clocks) {
    EXPECT_EQ(goLines("1/0.001", {100, 100}), " movetime 1, movetime 1,");
    EXPECT_EQ(goLines("2+0.1", {300, 2050, 1, 1}), " wtime 2000 btime 2000 winc 100 binc 100,"
                                                   " wtime 1800 btime 2000 winc 100 binc 100,"
                                                   " wtime 1800 btime 50 winc 100 binc 100,"
                                                   " wtime 1899 btime 50 winc 100 binc 100,");
    EXPECT_EQ(goLines("2/5.25", {50, 60, 100, 5990, 0}),
              " wtime 5250 btime 5250 movestogo 2, wtime 5200 btime 5250 movestogo 2,"
              " wtime 5200 btime 5190 movestogo 1, wtime 10350 btime 5190 movestogo 1,"
              " wtime 10350 btime 5251 movestogo 2,");
}

TEST(SoakGame, MarginAndLength) {
    const GameOptions options = {.plies = 2, .margin = 50, .times = {"1/0.1"}};
    SoakGame game(options, 0);
    game.take(game.getBoard().legalMoves().front(), 150);
    EXPECT_THROW(game.take(game.getBoard().legalMoves().front(), 151), Fault);
    game.take(game.getBoard().legalMoves().front(), 90);
    EXPECT_EQ(game.record.result, "1/2-1/2");
    EXPECT_EQ(game.record.termination, "adjudication");
    SoakReport report;
    report.games = {game.record};
    EXPECT_TRUE(TextPattern("1/0.1 +3 +1 +50 +51 +51 +51 +51\n").isIn(reportOn(report, {})));
    report.games.resize(2, game.record);
    report.games[0].overruns = {{0, 40}, {50, 1}};
    report.games[1].overruns = {{0, 50}, {10, 9}};
    EXPECT_TRUE(TextPattern("1/0.1 +100 +90 +0 +0 +10 +50 +50\n").isIn(reportOn(report, {})));
}

TEST(SoakGame, ThirdRepetitionIsADraw) {
    const GameOptions options;
    SoakGame game(options, 5); // begins with its position
    for (std::size_t ply = 0; ply < 8; ++ply) {
        ASSERT_FALSE(game.isOver()) << ply;
        const std::string move = std::array{"g1f3", "g8f6", "f3g1", "f6g8"}.at(ply % 4);
        ASSERT_TRUE(std::ranges::count(game.getBoard().legalMoves(), move)) << move;
        game.take(move, 0);
    }
    EXPECT_EQ(game.record.result, "1/2-1/2");
}

TEST(SoakGame, FiftyMovesAreADraw) {
    const GameOptions options;
    SoakGame game(options, 5);
    std::set<std::string> seen;
    while (!game.isOver()) {
        const std::vector<std::string> moves = game.getBoard().legalMoves();
        const auto quiet = std::ranges::find_if(moves, [&](const std::string& move) {
            plain::Position after = game.getBoard();
            after.play(move);
            return after.clock > 0 && !after.legalMoves().empty() &&
                   seen.insert(after.identity()).second;
        });
        ASSERT_NE(quiet, moves.end());
        game.take(*quiet, 0);
    }
    EXPECT_EQ(game.getBoard().clock, 100);
    EXPECT_EQ(game.record.result, "1/2-1/2");
}

} // namespace
