// Conversations with the built engine, correct and incorrect ones. UciTalk checks what holds for
// all of them: the form of each line, one closing line and one answer for each `go`, no other line,
// nothing on standard error, and status 0 after `quit`.

#include "testing/uciTalk.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <ostream>

namespace {

struct Conversation {
    std::string name;
    std::string script; // of UciTalk::hold(), with the names below for positions
};
using Conversations = std::vector<Conversation>;

void PrintTo(const Conversation& conversation, std::ostream* stream) {
    *stream << conversation.name;
}

const std::map<std::string, std::string> POSITIONS = {
    // One legal move, a1a2, so that the position is known by its answer.
    {"$one", "8/8/8/8/8/8/8/K1k5 w - - 0 1"},
    // Not in the book. The first passes are short, and the search never ends by itself.
    {"$busy", "6k1/pp3p1p/2p2np1/3r4/3N4/1PR3P1/P4P1P/6K1 w - - 0 1"},
    {"$black", "6k1/pp3p1p/2p2np1/3r4/3N4/1PR3P1/P4P1P/6K1 b - - 0 1"},
    // A first pass of about 100 milliseconds.
    {"$slow", "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1"},
    // 15 queens a side, where no pass ends, and the greatest number of moves.
    {"$queens", "qqqqqqqk/qqqqqqqq/8/8/8/8/QQQQQQQQ/QQQQQQQK w - - 0 1"},
    {"$many", "R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w - - 0 1"},
    {"$mate", "6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1"}, // by a1a8
    {"$stale", "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1"},
    // h7 promotes to mate with queen and rook; otherwise Black has the one move a8b8.
    {"$pawn", "k7/7P/1K6/8/8/8/8/8 w - - 0 1"},
    {"$start", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"},
};

std::string withPositions(std::string script) {
    for (const auto& [name, fen] : POSITIONS) {
        for (std::size_t at = 0; (at = script.find(name, at)) != std::string::npos;) {
            script.replace(at, name.size(), fen);
        }
    }
    return script;
}

std::string repeated(int count, const std::string& text) {
    std::string result;
    for (int i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

// Every way to start a search of the current position, and the required answer.
std::string eachGo(const std::string& answer) {
    std::string script;
    for (const char* go : {"nodes 1", "movetime 250", "wtime 1 btime 1",
                           "wtime 4000 winc 100 btime 4000 binc 100"}) {
        script += std::string(" | > go ") + go + " | " + answer;
    }
    return script + " | > go infinite | think 130 | > stop | " + answer;
}

constexpr int MEBIBYTE = 1 << 20;

// ---- The command loop ----

Conversations words() {
    const std::string NUL(1, '\0');
    return {
        {"Greeting", "> uci | greet 192 | silent 100"},
        {"CarriageReturns", ">> uci\r\n | greet 192 | >> \r\risready\r\r\n | = readyok"
                            " | >> position fen $one\r\ngo infinite\r\n | think 130 | >> stop\r\n"
                            " | answer a1a2 | >> quit\r\n | end"},
        {"CarriageReturnEndsNoLine", ">> uci\risready\r | silent 100 | >> \n | silent 100"},
        {"TabIsNoSeparator", "> uci\t | > \tisready | > go\tinfinite | > quit\t | silent 200"},
        {"EmptyLines", ">> \n\n   \n\r\n\n | silent 100 | ready"},
        {"CaseMatters", "> UCI | > IsReady | > GO infinite | > Quit | silent 200 | ready"},
        {"UnknownLines", "> hello | > register later | > ponderhit | > go2 depth 1 | > debug on"
                         " | > debug maybe | silent 200"},
        {"NothingAfterTheWord", "> go | > position | > setoption | > debug | silent 250 | ready"},
        {"MoreAfterTheWord", "> uci now | > isready ? | > ucinewgame 1 | > quit now | silent 100"
                             " | > go infinite | > stop now | think 300 | > stop | answer"},
        {"NulSeparates", ">> " + NUL + "uci" + NUL + "\n | greet 192 | > position" + NUL +
                             "fen $one | > go" + NUL + NUL + "depth" + NUL + "1 | answer a1a2"},
        {"BytesAbove127", "> \xff\xfe\x80 | > isready\xa0 | > \xef\xbb\xbfuci | silent 100"
                          " | > setoption name Hash value \xb2 | > uci | greet 0"},
        {"LongWord", "> " + std::string(MEBIBYTE, 'u') + " | ready | silent 50"},
        {"ManyWords", "> position fen $busy | > go infinite" + repeated(MEBIBYTE / 2, " x") +
                          " | think 200 | > stop | answer | reported"},
        {"ManyLines", ">> " + repeated(2000, "isready\n") + repeated(2000, " | = readyok")},
        {"NothingAfterQuit", ">> isready\nquit\nisready\nuci\n | = readyok | end"},
    };
}

Conversations readiness() {
    return {
        {"AheadOfALongPass", "> position fen $queens | > go infinite | ready | think 100 | ready"
                             " | > stop | answer"},
        {"AfterAFinishedSearch", "> position fen $mate | > go infinite | reports 1 | silent 150"
                                 " | ready | silent 150 | > stop | answer a1a8"},
        {"NewGameAnyTime", "> ucinewgame | ready | > position fen $busy | > ucinewgame"
                           " | > go infinite | > ucinewgame | ready | think 150 | > stop | answer"
                           " | legal $busy | > ucinewgame | ready | > go depth 1 | answer"
                           " | legal $busy"},
    };
}

// ---- The option ----

std::string shows(const std::string& value, int hash) {
    return " | > setoption name Hash value " + value + " | > uci | greet " + std::to_string(hash);
}

Conversations options() {
    const std::string search =
        " | > position fen $busy | > go movetime 200 | answer | reported | legal $busy";
    return {
        {"SizesRoundDown", "ready" + shows("0", 0) + shows("1", 0) + shows("2", 1) + shows("3", 3) +
                               shows("16", 15) + shows("64", 63) + shows("128", 127) +
                               shows("192", 192) + shows("512", 511)},
        {"OtherNames", "> setoption name hash value 128 | > setoption name HASH value 128"
                       " | > setoption name Clear Hash | > setoption name Threads value 8"
                       " | > setoption name Hash Size value 64 | > SetOption name Hash value 64"
                       " | > uci | greet 192"},
        {"WithoutAValue", "> setoption name Hash | > setoption name Hash value | > setoption name"
                          " | > setoption Hash value 64 | > setoption name Hash 64"
                          " | > setoption name Hash Value 64 | > uci | greet 192"},
        {"NumberAndMore", "ready" + shows("64MB", 63) + shows("128 now", 127) + shows("+3", 3)},
        {"NoneByNoNumber", "ready" + shows("many", 0) + shows("-99999999999", 0) + shows("-1", 0) +
                               search + shows("16", 15) + search},
        {"HugeIsNone", "ready" + shows("2147483647", 0) + " | complain" +
                           shows("99999999999999999999", 0) + " | complain" + search},
        {"LastsThroughNewGame", "ready" + shows("16", 15) + " | > ucinewgame | > uci | greet 15"},
        {"RightAfterBestMove",
         "> position fen $slow" +
             repeated(5, " | > go depth 1 | answer | > setoption name Hash value 1"
                         " | > go depth 1 | answer | > setoption name Hash value 64") +
             search},
        {"RightAfterGo", "> position fen $busy | >> go movetime 200\nsetoption name Hash value 0\n"
                         " | answer | legal $busy | > uci | greet 0"},
    };
}

// ---- The game ----

Conversations positions() {
    const std::string mated = "\\(none\\)";
    const std::string go = " | > go depth 1 | answer ";
    return {
        {"StartWithoutPosition", "> go depth 1 | answer | legal $start"},
        {"EmptyMoves", "> position startpos moves" + go + "| legal $start"},
        {"MovesNeedTheirWord", "> position startpos e2e4 e7e5 d2d4" + go + "| legal $start"},
        {"OneMove", "> position startpos moves e2e4" + go + "[a-h][78].*"},
        {"StrangeMovesAreSkipped",
         "> position startpos moves f2f3 0000 e7e5 z9z9 e2e5 moves g2g4 \xff d8h4" + go + mated},
        {"ShortMovesAreSkipped",
         "> position startpos moves f f2f3 e7 e7e5 g2g g2g4 d d8h4" + go + mated},
        {"MovesIntoCheckAreSkipped",
         "> position fen $one moves a1b1 a1b2 a1a2 c1b1 c1c2" + go + "a2a[13]"},
        {"Queen", "> position fen $pawn moves h7h8q" + go + mated},
        {"NoLetterIsAKnight", "> position fen $pawn moves h7h8" + go + "a8b8"},
        {"OwnPromotion", "> position fen $pawn" + eachGo("answer h7h8[qr]")},
        {"CastlingIsTheKingsMove",
         "> position fen 5k2/8/8/8/8/8/8/4K2R w K - 0 1 moves e1h1" + go + "[eh]1.*" +
             " | > position fen 5k2/8/8/8/8/8/8/4K2R w K - 0 1 moves e1g1" + go + "f8[eg][78]"},
        {"FenWithMovesAndNone", "> position fen $one moves" + go + "a1a2"},
        {"FenWithoutItsWord", "> position $one" + go + "a1a2"},
        {"FenOfFourFields", ">  position   fen    8/8/8/8/8/8/8/k1K5 b - - " + go + "a1a2"},
        {"NewGameKeepsThePosition", "> position fen $one | > ucinewgame" + go + "a1a2"},
        {"DuringASearch", "> position fen $busy | > go infinite | think 50 | > position fen $mate"
                          " | > position fen $one | ready | think 200 | > stop | answer | reported"
                          " | legal $busy | > go movetime 5000 | answer a1a2 | bare"},
        {"ThreeThousandPlies", "> position startpos moves" + repeated(750, " g1f3 g8f6 f3g1 f6g8") +
                                   " | ready" + eachGo("answer | legal $start")},
    };
}

// Extreme positions under every kind of `go`. A draw by the fifty-move rule still has a move to
// play.
Conversations edges() {
    struct Edge {
        const char* name;
        const char* fen;
        const char* moves = "*"; // a pattern of the answer
    };
    Conversations conversations;
    for (const Edge& edge : std::initializer_list<Edge>{
             {"MostMoves", "$many"},
             {"FifteenQueens", "$queens"},
             {"BareKings", "8/8/3k4/8/8/3K4/8/8 w - - 0 1"},
             {"LockedPawns", "8/k7/3p4/p2P1p2/P2P1P2/8/8/K7 w - - 0 1"},
             {"PawnBeforeKing", "4k3/4P3/4K3/8/8/8/8/8 w - - 0 1"},
             {"Clock99", "6k1/pp3p1p/2p2np1/3r4/3N4/1PR3P1/P4P1P/6K1 w - - 99 90"},
             {"Clock99AndMate", "7k/8/6K1/8/8/8/8/R7 w - - 99 80"},
             {"Clock100", "7k/8/8/8/8/8/R7/K7 b - - 100 80"},
             {"Clock30000", "6k1/pp3p1p/2p2np1/3r4/3N4/1PR3P1/P4P1P/6K1 w - - 30000 90"},
             {"Mated", "R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1", "\\(none\\)"},
             {"MatedAtClock100", "R5k1/5ppp/8/8/8/8/8/6K1 b - - 100 1", "\\(none\\)"},
             {"Stalemated", "$stale", "\\(none\\)"}}) {
        const std::string answer =
            std::string("answer ") + edge.moves + " 0-500 | legal " + edge.fen;
        conversations.push_back(
            {edge.name, std::string("> position fen ") + edge.fen + eachGo(answer)});
    }
    return conversations;
}

// Positions that cannot be played: one line on standard error, none on standard output,
// and the game stays as it was.
Conversations rejections() {
    Conversations rows = {
        {"NoFen", "fen"},
        {"AnyWord", "nonsense"},
        {"MisspeltStart", "startposition moves a1a2"},
        {"MovesAfterAFen", "fen 8/8/8/8/8/8/8/8 w - - 0 1 moves a1a2 c1c2"},
    };
    for (Conversation& row : rows) {
        row.script = "> position fen $one | > position " + row.script +
                     " | complain | > go movetime 5000 | answer a1a2 | bare";
    }
    rows.push_back({"DuringASearch", "> position fen $busy | > go infinite | > position fen"
                                     " | complain | think 150 | > stop | answer | legal $busy"
                                     " | > go depth 1 | answer | legal $busy"});
    return rows;
}

// ---- The time for a move ----

// The words of `go` reach the search; goCommandTest.cpp tests their meaning. A search may end
// early, when no further pass is worth its time, but not before two thirds of its budget. Otherwise
// it ends at the first step of 100 ms that is at most 50 ms before the end of its budget.
Conversations allocations() {
    return {
        {"ClockOfTheSideToMove", "> position fen $black | ready"
                                 " | > go wtime 400000 btime 8000 winc 9000 binc 500"
                                 " | answer * 466-950 | legal $black"},
        {"FixedTime", "> position fen $busy | ready | > go wtime 1000 movetime 600"
                      " | answer * 400-850 | legal $busy"},
        {"NoTime", "> position fen $busy | ready | > go depth 5 | answer * 100-350 | legal $busy"},
        {"LargestTimeIsALimit",
         "> position fen $mate | > go movetime 2147483647 | answer a1a8 100-350"},
        {"MateAnswersEarly",
         "> position fen $mate | ready | > go movetime 9000 | answer a1a8 100-350 | bare"},
    };
}

// ---- The course of a search ----

Conversations searches() {
    return {
        {"OneMoveWithoutLimit", "> position fen $one | > go infinite | think 350 | > stop"
                                " | answer a1a2 0-350 | reported"},
        {"BookMove", "> position startpos | ready | > go movetime 9000 | answer * 100-350 | bare"
                     " | legal $start"},
        {"NoBookWithoutLimit",
         "> position startpos | > go infinite | reports 2 | think 100 | > stop | answer"
         " | reported | legal $start"},
        {"TwentyPassesAndSilence", "> position fen $stale | > go infinite | reports 20 | silent 300"
                                   " | > stop | answer \\(none\\) 0-350"},
        {"NoReportAfterTheAnswer",
         "> position fen $slow" + repeated(12, " | > go depth 1 | answer | legal $slow")},
        {"StopAtOnce",
         "> position fen $busy | >> go infinite\nstop\n | answer * 0-350 | legal $busy"
         " | > go movetime 90000 | pause 30 | > stop | answer * 0-350"},
        {"StopsDoNotAddUp", "> stop | > stop | > stop | > position fen $busy | > go movetime 9000"
                            " | answer * 0-350 | > stop | silent 200 | > go infinite"
                            " | answer * 0-350 | > go infinite | think 300 | > stop | answer"},
        {"StopOutlastsASearchWithoutSteps", "> stop | > position fen $one | > go depth 1"
                                            " | answer a1a2 | > position fen $busy | > go infinite"
                                            " | answer * 0-350"},
        {"GoDuringASearch", "> position fen $busy | > go infinite | > position fen $one"
                            " | > go movetime 5000 | think 300 | > stop | answer | legal $busy"
                            " | answer a1a2 | silent 200"},
        {"TenGoesAtOnce", "> position fen $busy | >> " + repeated(10, "go depth 1\n") +
                              repeated(10, " | answer") + " | silent 200"},
        {"NextSearchWaitsForNoHardOne",
         "> position fen $queens | > go infinite | think 150 | > stop"
         " | answer | > position fen $busy | > go movetime 200"
         " | answer * 0-450 | legal $busy"},
    };
}

// ---- The end of the process, at every moment ----

const Conversations MOMENTS = {
    {"Infinite", ">> isready\nposition fen $busy\ngo infinite\n | = readyok"},
    {"FixedTime", ">> isready\nposition fen $busy\ngo movetime 5000\n | = readyok"},
    {"HardPosition", ">> isready\nposition fen $queens\ngo infinite\n | = readyok"},
    {"Finished", ">> isready\nposition fen $mate\ngo infinite\n | = readyok"},
    {"Queue", ">> isready\nposition fen $busy\n" + repeated(3, "go infinite\n") + " | = readyok"},
};

// The process ends without an answer, whatever it is doing.
void addMoments(Conversations& into, const std::string& ending) {
    for (const Conversation& moment : MOMENTS) {
        for (const char* delay : {"0", "90", "250"}) { // at once, just before a look, in between
            into.push_back({moment.name + "After" + delay,
                            moment.script + " | pause " + delay + " | " + ending});
        }
    }
}

Conversations quits() {
    Conversations conversations = {
        {"WithGoInOneWrite", ">> position fen $busy\ngo infinite\nquit\n | end"},
        {"AfterBestMove", "> position fen $queens | > go depth 1 | answer | > quit | end"},
    };
    addMoments(conversations, "> quit | end");
    return conversations;
}

Conversations endsOfInput() {
    return {
        {"AtOnce", "eof | end"},
        {"LastLineWithoutItsEnd", ">> isready | eof | = readyok | end"},
        {"QuitWithoutItsEnd", ">> go infinite\nquit | eof | end"},
        {"Infinite", "> position fen $busy | > go infinite | think 250 | eof | answer * 0-350"
                     " | legal $busy | end"},
        {"HardPosition", "> position fen $queens | > go infinite | think 250 | eof"
                         " | answer * 0-350 | end"},
        {"Finished", "> position fen $mate | > go infinite | reports 1 | silent 200 | eof"
                     " | answer a1a8 0-350 | end"},
        {"FixedTimeRunsOn",
         "> position fen $busy | > go movetime 900 | eof | answer * 600-1150 | end"},
        {"QueueIsWorkedOff", ">> position fen $busy\ngo infinite\ngo movetime 200\ngo infinite\n"
                             " | eof | answer | answer | answer | end"},
    };
}

Conversations signals() {
    Conversations conversations = {
        {"Idle", "> uci | greet 192 | term | end 500"},
        {"AmidALine", "ready | >> go infi | pause 50 | term | end 500"},
    };
    addMoments(conversations, "term | end 500");
    return conversations;
}

// The output is closed: the engine ends, although its input is still open.
Conversations lostReaders() {
    Conversations conversations = {
        {"BeforeAReply", "ready | lose | > isready | end 1200"},
        {"BeforeAnAnswer", "ready | lose | > position fen $one | > go depth 1 | end 1200"},
        {"ThenEndOfInput", "ready | lose | eof | end"},
        {"ThenQuit", "ready | lose | > quit | end"},
    };
    addMoments(conversations, "lose | end 1200");
    return conversations;
}

class ConversationTest : public testing::TestWithParam<Conversation> {};

// A process that ends during a search joins no threads. ThreadSanitizer must not report that.
void allowThreadsToBeLeft() {
    const char* present = std::getenv("TSAN_OPTIONS");
    const std::string options = present == nullptr ? "" : std::string(present) + ':';
    setenv("TSAN_OPTIONS", (options + "report_thread_leaks=0").c_str(), 1);
}

TEST_P(ConversationTest, Holds) {
    const std::string& script = GetParam().script;
    if (script.find("| term") != std::string::npos || script.find("| lose") != std::string::npos) {
        allowThreadsToBeLeft();
    }
    UciTalk talk;
    talk.hold(withPositions(script));
}

using testing::ValuesIn;
const testing::PrintToStringParamName NAMES;
INSTANTIATE_TEST_SUITE_P(Words, ConversationTest, ValuesIn(words()), NAMES);
INSTANTIATE_TEST_SUITE_P(Readiness, ConversationTest, ValuesIn(readiness()), NAMES);
INSTANTIATE_TEST_SUITE_P(Options, ConversationTest, ValuesIn(options()), NAMES);
INSTANTIATE_TEST_SUITE_P(Positions, ConversationTest, ValuesIn(positions()), NAMES);
INSTANTIATE_TEST_SUITE_P(Edges, ConversationTest, ValuesIn(edges()), NAMES);
INSTANTIATE_TEST_SUITE_P(Rejections, ConversationTest, ValuesIn(rejections()), NAMES);
INSTANTIATE_TEST_SUITE_P(Allocations, ConversationTest, ValuesIn(allocations()), NAMES);
INSTANTIATE_TEST_SUITE_P(Searches, ConversationTest, ValuesIn(searches()), NAMES);
INSTANTIATE_TEST_SUITE_P(Quits, ConversationTest, ValuesIn(quits()), NAMES);
INSTANTIATE_TEST_SUITE_P(EndsOfInput, ConversationTest, ValuesIn(endsOfInput()), NAMES);
INSTANTIATE_TEST_SUITE_P(Signals, ConversationTest, ValuesIn(signals()), NAMES);
INSTANTIATE_TEST_SUITE_P(LostReaders, ConversationTest, ValuesIn(lostReaders()), NAMES);

TEST(StartTest, ArgumentsAreIgnored) {
    UciTalk talk({"--help", "bench", "-x"});
    talk.hold("silent 100 | > uci | greet 192");
}

// ---- Bounds of time ----

// The median of an odd number of measurements, of which at most one may exceed `most`, because a
// virtual machine may pause.
long medianOf(std::size_t count, int most, const std::function<long()>& measure) {
    std::vector<long> values(count);
    std::generate(values.begin(), values.end(), measure);
    std::sort(values.begin(), values.end());
    EXPECT_LE(values[values.size() - 2], patience(most).count());
    return values[values.size() / 2];
}

TEST(ResponseTest, ReplyIsQuick) {
    struct Case {
        const char *before, *script, *after;
        std::size_t count;
        int most, median; // milliseconds
    };
    for (const auto& [before, script, after, count, most, usual] : std::initializer_list<Case>{
             // Early in the first step of the polling loop, and just after it.
             {"$busy", "> go infinite | think 30 | > stop | answer", "ready", 5, 350, 150},
             {"$busy", "> go infinite | think 105 | > stop | answer", "ready", 5, 350, 150},
             {"$one", "ready | > go movetime 5000 | answer a1a2 0-80 | bare", "ready", 9, 350, 80},
             {"$busy | > go infinite | think 300", "think 20 | ready", "> stop | answer", 21, 100,
              20}}) {
        UciTalk talk;
        talk.hold(withPositions(std::string("> position fen ") + before));
        const auto measure = [&talk, step = std::string(script)] {
            talk.hold(step);
            return static_cast<long>(talk.getAge().count());
        };
        EXPECT_LE(medianOf(count, most, measure), patience(usual).count()) << script;
        talk.hold(after);
    }
}

// The search ends at the step nearest to the end of its time, which may be before it. If it is
// late, as on a busy machine, the test tries again.
TEST(ResponseTest, AnswersHalfAStepBeforeTheEnd) {
    UciTalk talk;
    talk.hold(withPositions("> position fen $queens"));
    long least = 1000;
    for (int i = 0; i < 8 && least >= 300; ++i) {
        talk.hold("ready | > go movetime 250 | answer * 190");
        least = std::min(least, static_cast<long>(talk.getAnswer().age.count()));
    }
    EXPECT_LT(least, 300);
}

// Processor time that a process has used.
long processorMillisOf(const UciProcess& process) {
    clockid_t clock = 0;
    timespec used{};
    EXPECT_EQ(clock_getcpuclockid(process.getPid(), &clock), 0);
    EXPECT_EQ(clock_gettime(clock, &used), 0);
    return used.tv_sec * 1000 + used.tv_nsec / 1000000;
}

// Half a second without a search uses hardly any processor time; with one it does.
TEST(ResponseTest, IdlenessIsFree) {
    UciTalk talk;
    const auto timeOf = [&talk](const std::string& script) {
        const long before = processorMillisOf(talk.getProcess());
        talk.hold(script);
        return processorMillisOf(talk.getProcess()) - before;
    };
    talk.hold("ready");
    EXPECT_LT(timeOf("silent 500"), patience(20).count()) << "after the start";
    talk.hold(withPositions("> position fen $busy | > go infinite"));
    EXPECT_GT(timeOf("think 500"), 20) << "in a search";
    talk.hold("> stop | answer | silent 100");
    EXPECT_LT(timeOf("silent 500"), patience(20).count()) << "after a search";
    talk.hold(withPositions("> position fen $mate | > go infinite | reports 1"));
    EXPECT_LT(timeOf("silent 500"), patience(20).count()) << "after a finished search";
    talk.hold("> stop | answer a1a8");
}

} // namespace
