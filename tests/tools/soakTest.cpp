// The long run itself: a healthy engine gets through it, and one that does wrong does not.

#include "kestran-soak/soak.h"
#include "kestran-soak/checkedGame.h"
#include "kestran-soak/outputWatch.h"
#include "support/commandLine.h"
#include "support/processorWaits.h"
#include "support/textPattern.h"
#include "support/uciProcess.h"
#include "testing/toolSupport.h"

#include <chrono>
#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sched.h>
#include <set>
#include <sstream>
#include <sys/resource.h>
#include <thread>
#include <tuple>
#include <unistd.h>

namespace {

const std::string ENGINE = KESTRAN_BINARY_DIR "/kestran";

// The shell's arguments for an engine whose words go through a filter.
std::vector<std::string> filtered(const std::string& filter) {
    return {"-c", "\"$0\" | " + filter, ENGINE};
}

SoakReport playFiltered(const std::string& filter) {
    return runSoak({.engine = "/bin/sh",
                    .arguments = filtered(filter),
                    .plies = 6,
                    .records = TestFolder().path});
}

TEST(Soak, HealthyEngines) {
    for (const std::string& engine : {ENGINE, ENGINE + "-tester"}) {
        const SoakReport report = runSoak({.engine = engine, .plies = 40});
        EXPECT_EQ(report.games, 1);
        EXPECT_EQ(report.resumed, 0);
        EXPECT_GT(report.plies, 0);
        EXPECT_EQ(report.illegalMoves, std::vector<std::string>());
        EXPECT_EQ(report.protocolFaults, std::vector<std::string>());
        ASSERT_EQ(report.engines.size(), 1U);
        EXPECT_GT(report.engines[0].settled, 1000);
    }
}

// A shell before an engine that takes 10 MiB for itself in each game behind the first `games`.
std::vector<std::string> growingBehind(int games, const std::string& pipe) {
    return {"-c",
            "mkfifo \"$1\"; \"$0\" < \"$1\" & exec 3> \"$1\"\n"
            "while read -r line; do\n"
            "    case $line in quit) break ;; ucinewgame) games=$((games + 1)) ;; esac\n"
            "    if [ \"$line\" = ucinewgame ] && [ \"$games\" -gt " +
                std::to_string(games) +
                " ]; then\n"
                "        kept=$kept$(head -c 10485760 /dev/zero | tr '\\0' x)\n"
                "    fi\n"
                "    echo \"$line\" >&3\n"
                "done; exec 3>&-; wait",
            ENGINE, pipe};
}

TEST(Soak, GrowingMemoryIsAFault) {
    // What grows, behind how many games: in the first ten, behind them, and not at all.
    for (const auto& [games, behind, settles, grows] :
         {std::tuple(2, 1, true, false), {11, 10, false, true}, {2, 2, false, false}}) {
        const TestFolder folder;
        const SoakReport report = runSoak({.engine = "/bin/sh",
                                           .arguments = growingBehind(behind, folder.path + "/in"),
                                           .games = games,
                                           .plies = 1,
                                           .times = {parseTimeControl("1/0.001")},
                                           .grace = 5000});
        EXPECT_EQ(report.countFaults(), 0U);
        EXPECT_EQ(report.games, games);
        EXPECT_EQ(report.getSettling() > 10000, settles) << report.getSettling();
        EXPECT_EQ(report.getGrowth() > 10000, grows) << report.getGrowth();
        EXPECT_EQ(report.isClean(), !settles && !grows);
    }
}

TEST(Soak, EngineThatIsNotThere) {
    EXPECT_THROW(runSoak({.engine = ENGINE + "-not", .games = 3, .jobs = 2}), CannotStart);
}

TEST(Soak, TellsThatNoDescriptorIsLeft) {
#ifdef KESTRAN_SANITIZED
    GTEST_SKIP() << "a sanitizer needs descriptors itself";
#endif
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    const int next = dup(STDIN_FILENO);
    close(next);
    const rlimit small = {static_cast<rlim_t>(next), limit.rlim_max};
    setrlimit(RLIMIT_NOFILE, &small);
    EXPECT_THROW(OutputWatch(), CannotStart);
    setrlimit(RLIMIT_NOFILE, &limit);
    EXPECT_NO_THROW(OutputWatch());
}

TEST(Soak, StopsWhenItIsToldTo) {
    int asked = 0;
    const SoakReport report =
        runSoak({.engine = ENGINE, .games = 5, .isStopWanted = [&asked] { return ++asked > 3; }});
    EXPECT_EQ(report.games, 1);
    EXPECT_EQ(report.unfinished, 1);
    EXPECT_TRUE(report.isClean());
    ASSERT_EQ(report.record.size(), 1U);
    EXPECT_EQ(report.record[0].termination, "unterminated");
}

TEST(Soak, PausesBeforeItsMoves) {
    const auto playFor = [](int pause) {
        const auto start = std::chrono::steady_clock::now();
        const SoakReport report = runSoak({.engine = ENGINE,
                                           .plies = 6,
                                           .pause = pause,
                                           .times = {parseTimeControl("1/0.001")},
                                           .hashes = {1},
                                           .grace = 5000});
        EXPECT_TRUE(report.isClean());
        return std::chrono::steady_clock::now() - start;
    };
    EXPECT_GT(playFor(1000), playFor(0) + std::chrono::milliseconds(1000));
}

TEST(Soak, EndInAPause) {
    const auto start = std::chrono::steady_clock::now();
    const SoakReport report = runSoak({.engine = "/bin/sh",
                                       .arguments = filtered("sed -u '/bestmove/{n;q}'"),
                                       .plies = 6,
                                       .pause = 10000,
                                       .records = TestFolder().path});
    ASSERT_EQ(report.protocolFaults.size(), 1U);
    EXPECT_NE(report.protocolFaults[0].find("its output has ended"), std::string::npos);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST(Soak, IllegalMoveLeavesItsGameInAFile) {
    const TestFolder folder;
    const std::string filter = R"(sed -u '/score/!s/^\(info pv\|bestmove\) .*/\1 a1a1/')";
    const SoakReport report = runSoak({.engine = "/bin/sh",
                                       .arguments = filtered(filter),
                                       .first = 3,
                                       .records = folder.path + "/new"});
    ASSERT_EQ(report.illegalMoves.size(), 1U);
    EXPECT_EQ(report.protocolFaults, std::vector<std::string>());
    EXPECT_FALSE(report.isClean());
    const std::string name = folder.path + "/new/soak-seed1-game3.txt";
    EXPECT_TRUE(report.illegalMoves[0].ends_with("all of it in " + name)) << report.illegalMoves[0];
    std::ostringstream text;
    text << std::ifstream(name).rdbuf();
    for (const char* part :
         {"^Fault: game 3, ply 0: a1a1, load .*\n", "\nAgain: tools/soak 1 --seed 1 --first 3\n",
          "\nStart: \\S+ [wb] .* 1\n", "\nMoves:\n", "\nPosition: \\S+ [wb] \\S+ \\S+ \\d+\n",
          "\n +\\d+ > uci\n", "\n +\\d+ > position fen .*\n", "\n +\\d+ < bestmove a1a1\n"}) {
        EXPECT_TRUE(TextPattern(part).isIn(text.str())) << part << text.str();
    }
}

TEST(Soak, GamesInPgn) {
    const PlayedGame game = {.number = 7,
                             .seed = 2,
                             .fen = "6k1/5ppp/8/8/8/8/1P6/R5K1 b - - 3 1",
                             .moves = "h7h6 a1a8 g8h7 b2b4",
                             .termination = "abandoned",
                             .timeControl = "40/5",
                             .fault = "said {\"x\"}, which is a text that is longer than a line"};
    const std::string text = toPgn(game);
    EXPECT_EQ(TextPattern("20\\d\\d\\.\\d\\d\\.\\d\\d").replaceAll(text, "today"),
              "[Event \"Soak, seed 2\"]\n[Site \"?\"]\n[Date \"today\"]\n[Round \"7\"]\n"
              "[White \"Kestran\"]\n[Black \"Kestran\"]\n[Result \"*\"]\n"
              "[Termination \"abandoned\"]\n[TimeControl \"40/5\"]\n[SetUp \"1\"]\n"
              "[FEN \"6k1/5ppp/8/8/8/8/1P6/R5K1 b - - 3 1\"]\n\n"
              "1... h6 2. Ra8+ Kh7 3. b4 {said \"x\", which is a text that is longer than a\n"
              "line} *\n\n");
}

TEST(Soak, HelpTellsTheDefaults) {
    const SoakOptions defaults;
    std::string times;
    std::string hashes;
    for (const TimeControl& time : defaults.times) {
        times += times.empty() ? "" : ",";
        times += time.text;
    }
    for (const int hash : defaults.hashes) {
        hashes += hashes.empty() ? "" : ",";
        hashes += std::to_string(hash);
    }
    UciProcess soak(ENGINE + "-soak", {"--help"});
    std::string help;
    while (const auto line = soak.readLine(UciProcess::Timeout(20000))) {
        help += *line + '\n';
    }
    for (const std::string& value :
         {times, hashes, std::to_string(defaults.plies), std::to_string(defaults.margin),
          std::to_string(defaults.grace)}) {
        EXPECT_NE(help.find(' ' + value + " by default"), std::string::npos) << value;
    }
}

// What it refuses before it plays.
TEST(Soak, RefusesWhatMakesNoSense) {
    for (const auto& [words, reason] : std::vector<std::pair<std::string, std::string>>{
             {"1 --engine /no/engine", "cannot start "},
             {"1 --engine /bin/true --pgn /no/games", "/no/games cannot be written"},
             {"1 --engine /bin/true --pgn /", "file / cannot be written"},
             {"1 --engine /bin/true --time 2+0.1,", "a time is like"},
             {"1 --engine /bin/true --hash 16,1000", "--hash is a whole number from 0 to 512"},
             {"1 --engine /bin/true --state /no/games", "the state file /no/games cannot be"},
             {"0 --engine /bin/true", "GAMES is a whole number from 1"},
             {"--engine /bin/true", "how many games"},
         }) {
        UciProcess soak("/bin/sh", {"-c", "exec \"$0\" $1", ENGINE + "-soak", words});
        const auto end = soak.waitForEnd(UciProcess::Timeout(20000));
        ASSERT_TRUE(end && end->exited) << words;
        EXPECT_EQ(end->status, 2) << words;
        EXPECT_NE(soak.readErrors().find(reason), std::string::npos) << soak.readErrors();
    }
}

TEST(Soak, HundredsAtOncePlayEachGameOnce) {
    const int games = 120;
    const SoakReport report = runSoak({.engine = ENGINE,
                                       .games = games,
                                       .plies = 2,
                                       .jobs = 60,
                                       .times = {parseTimeControl("1/0.001")},
                                       .hashes = {1},
                                       .grace = 5000,
                                       .records = TestFolder().path});
    // Where engines start slowly, the first ones have played all before the last could begin.
    EXPECT_GT(report.engines.size(), 10U);
    EXPECT_TRUE(report.isClean());
    ASSERT_EQ(report.record.size(), 120U);
    std::set<std::string> openings;
    for (int number = 0; number < games; ++number) {
        const PlayedGame& game = report.record[static_cast<std::size_t>(number)];
        EXPECT_EQ(game.number, number);
        openings.insert(game.fen + game.moves);
    }
    EXPECT_GT(openings.size(), 110U);
}

TEST(Soak, CrashOfTheEngine) {
    const SoakReport report = runSoak({.engine = "/bin/sh",
                                       .arguments = {"-c", "read line; kill -SEGV $$"},
                                       .games = 2,
                                       .records = TestFolder().path});
    ASSERT_EQ(report.protocolFaults.size(), 2U);
    EXPECT_NE(report.protocolFaults[1].find("game 1, ply 0: its output has ended; the process was "
                                            "ended by signal 11"),
              std::string::npos)
        << report.protocolFaults[1];
}

// All that a script or a person is told.
std::string reportText(const SoakReport& report) {
    std::ostringstream text;
    writeReport(text, report, std::chrono::seconds(0));
    for (const PlayedGame& game : report.record) {
        text << toPgn(game);
    }
    return TextPattern("\n(elapsed|nobody).*| seconds=.*").replaceAll(text.str(), "");
}

TEST(Soak, GoesOnAfterAStop) {
    const TestFolder folder;
    int played = 0;
    int asked = 0; // since two have been played: before the third game, and in it
    SoakOptions options = {.engine = "/bin/sh",
                           .arguments = filtered("sed -u 's/^bestmove d7d5/& /'"),
                           .games = 9,
                           .plies = 4,
                           .times = {parseTimeControl("1/0.001"), parseTimeControl("2+0.1")},
                           .records = folder.path,
                           .state = folder.path + "/state"};
    options.isStopWanted = [&played, &asked] { return played >= 2 && ++asked > 1; };
    const SoakReport stopped =
        runSoak(options, [&played](const SoakReport& report) { played = report.games; });
    EXPECT_EQ(stopped.games, 3);
    EXPECT_EQ(stopped.stopped, 1);

    std::ofstream(options.state, std::ios::app) << "game\t0\t1"; // as a crash would leave it
    options.isStopWanted = {};
    options.jobs = 3;
    const SoakReport whole = runSoak(options);
    EXPECT_GT(whole.resumed, 0);
    EXPECT_EQ(whole.resumed, stopped.games - stopped.stopped);
    ASSERT_EQ(whole.record.size(), 9U);
    for (int number = 0; number < options.games; ++number) {
        EXPECT_EQ(whole.record[static_cast<std::size_t>(number)].number, number);
    }

    const SoakReport again = runSoak(options);
    EXPECT_EQ(again.resumed, 9);
    EXPECT_EQ(reportText(again), reportText(whole));

    options.seed = 2;
    EXPECT_THROW(runSoak(options), UsageError);
    for (const char* text : {"notes", "notes\n"}) {
        options.state = folder.path + "/notes";
        std::ofstream(options.state) << text;
        EXPECT_THROW(runSoak(options), UsageError);
        std::string kept(std::istreambuf_iterator<char>(std::ifstream(options.state).rdbuf()), {});
        EXPECT_EQ(kept, text);
    }
}

TEST(Soak, Clocks) {
    for (const auto& [text, used, lines] :
         std::vector<std::tuple<std::string, std::vector<long>, std::string>>{
             {"1/0.001", {100, 100}, "go movetime 1, go movetime 1"},
             {"2+0.1",
              {300, 2050, 1},
              "go wtime 2000 btime 2000 winc 100 binc 100, "
              "go wtime 2000 btime 1800 winc 100 binc 100, "
              "go wtime 50 btime 1800 winc 100 binc 100"},
             {"2/5.25",
              {50, 60, 100, 6000},
              "go wtime 5250 btime 5250 movestogo 2, "
              "go wtime 5250 btime 5200 movestogo 2, "
              "go wtime 5190 btime 5200 movestogo 1, "
              "go wtime 5190 btime 10350 movestogo 1"},
             {"1/3+1", {4}, "go wtime 3000 btime 3000 movestogo 1 winc 1000 binc 1000"},
             {"60", {4}, "go wtime 60000 btime 60000"},
         }) {
        Clocks clocks(parseTimeControl(text), false);
        std::string said;
        for (const long millis : used) {
            said += (said.empty() ? "" : ", ") + clocks.getGoLine();
            const auto allowed = clocks.getAllowed();
            EXPECT_EQ(clocks.take(millis), millis - allowed) << text;
        }
        EXPECT_EQ(said, lines);
    }
    for (const char* text : {"", "0", "0/1", "1/0.0001", "2+", "+1", "-1", "1/1/1", "2 + 1"}) {
        EXPECT_THROW(parseTimeControl(text), UsageError) << text;
    }
}

TEST(Soak, LateIsOnlyWhoHadAProcessor) {
    const SoakOptions options = {
        .times = {parseTimeControl("1/0.1"), parseTimeControl("1+1")}, .margin = 50, .grace = 200};
    struct Case {
        int number; // of the game: by moves, by the clock
        long used;
        long excuse;
        int losses;
        int overruns;
        int starved;
    };
    for (const auto& [number, used, excuse, losses, overruns, starved] :
         {Case{0, 300, 0, 0, 0, 0}, Case{0, 301, 0, 1, 0, 0}, Case{0, 400, 99, 1, 0, 0},
          Case{0, 400, 100, 0, 0, 1}, Case{1, 1000, 0, 0, 0, 0}, Case{1, 1050, 0, 0, 1, 0},
          Case{1, 1051, 0, 1, 0, 0}, Case{1, 1051, 1, 0, 0, 1}}) {
        CheckedGame game(options, number);
        game.take(game.getBoard().getLegalMoves()[0], used, excuse, "");
        SoakReport report;
        report.add(game.getResult());
        EXPECT_EQ(report.timeLosses.size(), static_cast<std::size_t>(losses)) << used;
        EXPECT_EQ(report.overruns.size(), static_cast<std::size_t>(overruns)) << used;
        EXPECT_EQ(report.starved, starved) << used;
        EXPECT_EQ(game.isOver(), losses > 0) << used;
    }
}

// Three that want one processor wait for two thirds of the time, one that sleeps does not.
TEST(Soak, WaitsForAProcessorAreCounted) {
    if (!std::ifstream("/proc/self/schedstat")) {
        GTEST_SKIP() << "the system does not tell";
    }
    const std::string processor = std::to_string(sched_getcpu());
    const std::vector<std::string> work = {"-c", processor, "/bin/sh", "-c",
                                           "echo; while :; do :; done"};
    UciProcess busy("/usr/bin/taskset", work);
    UciProcess second("/usr/bin/taskset", work);
    UciProcess third("/usr/bin/taskset", work);
    UciProcess asleep("/bin/sleep", {"60"});
    for (UciProcess* process : {&busy, &second, &third}) {
        ASSERT_TRUE(process->readLine(PATIENCE));
    }
    ProcessorWaits busyWaits(busy.getPid());
    const ProcessorWaits asleepWaits(asleep.getPid());
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    const std::int64_t waited = busyWaits.getMillis();
    EXPECT_GE(waited, 250);
    EXPECT_LT(asleepWaits.getMillis(), waited / 2);
    busyWaits.restart();
    EXPECT_LT(busyWaits.getMillis(), waited / 2);
    busy.sendSignal(SIGKILL);
    ASSERT_TRUE(busy.waitForEnd(PATIENCE));
    EXPECT_EQ(busyWaits.getMillis(), 0);
}

// Two moves of each side, of which the second takes the first one back.
std::vector<std::string> findToAndFro(const NaiveBoard& start) {
    const auto back = [](const std::string& move) { return move.substr(2) + move.substr(0, 2); };
    for (const std::string& first : start.getLegalMoves()) {
        NaiveBoard behindFirst = start;
        behindFirst.play(first);
        for (const std::string& second : behindFirst.getLegalMoves()) {
            NaiveBoard board = behindFirst;
            if (board.play(second) && board.play(back(first)) && board.play(back(second)) &&
                board.getIdentity() == start.getIdentity()) {
                return {first, second, back(first), back(second)};
            }
        }
    }
    return {};
}

TEST(Soak, GameEndsWithTheThirdRepetition) {
    const SoakOptions options;
    CheckedGame game(options, 1); // begins with its position
    const std::vector<std::string> moves = findToAndFro(game.getBoard());
    ASSERT_EQ(moves.size(), 4U);
    for (std::size_t ply = 0; ply < 8; ++ply) {
        EXPECT_FALSE(game.isOver()) << ply;
        game.take(moves[ply % 4], 0, 0, "");
    }
    EXPECT_TRUE(game.isOver());
    EXPECT_EQ(game.getResult().game.result, "1/2-1/2");
}

TEST(Soak, Lateness) {
    Lateness late;
    EXPECT_EQ(late.getPermille(500), 0);
    late.add(-20, 500);
    late.add(7, 499);
    Lateness other;
    other.add(90);
    late.add(other);
    EXPECT_EQ(late.getMovesWithin(0), 500);
    EXPECT_EQ(late.getMovesWithin(89), 999);
    EXPECT_EQ(late.getPermille(500), 0);
    EXPECT_EQ(late.getPermille(501), 7);
    EXPECT_EQ(late.getPermille(999), 7);
    EXPECT_EQ(late.getPermille(1000), 90);
}

TEST(Soak, LateAnswer) {
    const SoakReport report =
        playFiltered("while IFS= read -r line; do case \"$line\" in bestmove*) sleep 0.4;; esac;"
                     " printf '%s\\n' \"$line\"; done");
    EXPECT_EQ(report.timeLosses.size(), 1U);
    EXPECT_EQ(report.whiteWins + report.blackWins, 1);
    EXPECT_FALSE(report.isClean());
}

TEST(Soak, ProtocolFaults) {
    for (const char* filter : {
             "sed -u '/^bestmove/p'",                  // two answers
             "sed -u '/^info pv/{/score/!d}'",         // no closing line
             R"(sed -u 's/\( nps .*\) $/\1/')",        // a report without its last blank
             "sed -u '/score/s/pv [^ ]*/& a1a1/'",     // a line that is not legal
             "sed -u '/score/s/pv /&&/;s/pv pv/pv /'", // one blank too many
             "sed -u 's/^bestmove .*/bestmove a1a1/'", // another answer than the closing line
             R"(sed -u 's/^readyok/&\n/')",            // an unknown line
             "sed -u 's/Hash/hash/'",                  // another greeting
             "head -n 9",                              // an early end
         }) {
        const SoakReport report = playFiltered(filter);
        ASSERT_EQ(report.protocolFaults.size(), 1U) << filter;
        // Nothing is wrong with an engine that did not start in the first place.
        EXPECT_EQ(report.protocolFaults[0].find("its output has ended"), std::string::npos)
            << filter << ": " << report.protocolFaults[0];
        EXPECT_EQ(report.illegalMoves, std::vector<std::string>()) << filter;
        EXPECT_FALSE(report.isClean()) << filter;
    }
}

} // namespace
