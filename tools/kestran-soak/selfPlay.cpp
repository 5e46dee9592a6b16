#include "kestran-soak/selfPlay.h"

#include "kestran-soak/answer.h"
#include "support/textFile.h"

#include <algorithm>
#include <filesystem>
#include <random>
#include <stdexcept>

namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;

constexpr milliseconds PATIENCE{10000}; // with an engine that owes an answer
// For an engine that is about to end, or to say more, when a fault is written down.
constexpr milliseconds LAST_WORDS_TIME{100};
// How often a process is asked whether it has ended.
constexpr milliseconds END_POLL{5};
// Games in which an engine may touch what it has for the first time.
constexpr int SETTLING_GAMES = 10;

const std::string SHRINKING_MOVES = "a2a3 a7a6 h2h3";

NaiveBoard getShrinkingBoard() {
    NaiveBoard board;
    for (const char* move : {"a2a3", "a7a6", "h2h3"}) {
        board.play(move);
    }
    return board;
}

std::string quoted(const std::string& line) {
    return '"' + line + '"';
}

void expectLine(const std::string& line, const std::string& wanted) {
    if (line != wanted) {
        throw ProtocolFault("not " + quoted(wanted) + " but " + quoted(line));
    }
}

} // namespace

SelfPlay::SelfPlay(const SoakOptions& soakOptions, SoakDesk& soakDesk, OutputWatch& outputWatch,
                   std::size_t _id)
    : options(soakOptions), desk(soakDesk), watch(outputWatch), id(_id),
      random(static_cast<std::minstd_rand::result_type>(_id + 1)) {
}

void SelfPlay::listen() {
    if (player) {
        player->listen();
    }
}

void SelfPlay::advance() {
    try {
        while (player) {
            const std::optional<std::string> line = player->takeLine();
            if (!line) {
                break;
            }
            hear(*line);
        }
        const bool isLate = Clock::now() >= wakeTime;
        const bool isSilent = player && player->isSilent();
        if (isLate || isSilent) {
            wake();
        }
    } catch (const ProtocolFault& protocolFault) {
        breakOff(protocolFault.what());
    }
}

void SelfPlay::enter(Phase next, milliseconds patience) {
    phase = next;
    deadline = Clock::now() + patience;
    wakeTime = deadline;
}

void SelfPlay::waitForEnd() {
    wakeTime = std::min(deadline, Clock::now() + END_POLL);
}

void SelfPlay::wake() {
    switch (phase) {
    case Phase::IDLE:
        beginGame();
        return;
    case Phase::BREAKING:
        player->getEnd() || Clock::now() >= deadline ? endBroken() : waitForEnd();
        return;
    case Phase::LEAVING:
        player->getEnd() || Clock::now() >= deadline ? expectEnd() : waitForEnd();
        return;
    case Phase::DONE:
        return;
    case Phase::PAUSING:
        if (player->isSilent()) {
            break;
        }
        think();
        return;
    default:
        break;
    }
    throw ProtocolFault(player->isSilent() ? "its output has ended" : "it does not answer in time");
}

void SelfPlay::hear(const std::string& line) {
    switch (phase) {
    case Phase::GREETING:
        hearGreeting(line);
        break;
    case Phase::SETTING:
        expectLine(line, "readyok");
        pause();
        break;
    case Phase::THINKING:
    case Phase::SHRINKING:
        hearAnswer(line);
        break;
    case Phase::RESTING:
        expectLine(line, "readyok");
        endGame();
        beginGame();
        break;
    case Phase::BREAKING: // it is in the conversation
        break;
    default:
        throw ProtocolFault("nobody has asked for " + quoted(line));
    }
}

// ---- An engine and its games ----

void SelfPlay::beginGame() {
    const std::optional<int> number = desk.takeNumber();
    if (!number) {
        leave();
        return;
    }
    isStopped = false;
    game = std::make_unique<CheckedGame>(options, *number);
    if (player) {
        player->forgetConversation();
        setUp();
    } else {
        greet();
    }
}

void SelfPlay::greet() {
    player = std::make_unique<Player>(options.engine, options.arguments);
    watch.add(player->getProcess(), id);
    memory = {};
    gamesOfEngine = 0;
    greeted = 0;
    enter(Phase::GREETING, PATIENCE);
    player->say("uci");
}

void SelfPlay::hearGreeting(const std::string& line) {
    if (greeted == 0) {
        dialect = &dialectOf(line);
    }
    expectLine(line, dialect->greeting.at(greeted));
    if (++greeted == dialect->greeting.size()) {
        setUp();
    }
}

void SelfPlay::setUp() {
    player->say("ucinewgame");
    player->say("setoption name Hash value " + std::to_string(game->getHash()));
    proceed();
}

void SelfPlay::proceed() {
    if (!game->isOver() && desk.isStopWanted()) {
        game->stop();
        isStopped = true;
    }
    if (game->isOver()) {
        shrink();
        return;
    }
    player->say(game->getPositionLine());
    player->say("isready"); // nothing else stands in the pipe, and the engine hears
    enter(Phase::SETTING, PATIENCE);
}

void SelfPlay::pause() {
    if (options.pause == 0) {
        think();
        return;
    }
    enter(Phase::PAUSING, milliseconds(std::uniform_int_distribution(0, options.pause)(random)));
}

void SelfPlay::think() {
    answer.clear();
    player->beginWaits();
    awayBefore = desk.getAway();
    asked = Clock::now();
    player->say(game->getGoLine());
    enter(Phase::THINKING, PATIENCE + milliseconds(game->getAllowed()));
}

void SelfPlay::hearAnswer(const std::string& line) {
    answer.push_back(line);
    if (!isLastOfAnswer(line)) {
        return;
    }
    if (phase == Phase::THINKING) {
        takeAnswer();
        return;
    }
    readAnswer(answer, getShrinkingBoard(), *dialect);
    player->say("isready");
    enter(Phase::RESTING, PATIENCE);
}

void SelfPlay::takeAnswer() {
    const auto used = duration_cast<milliseconds>(player->getHeard() - asked).count();
    const std::string move = readAnswer(answer, game->getBoard(), *dialect);
    const std::int64_t waited = game->isTooLate(used) ? player->getWaitedMillis() : 0;
    const std::int64_t away = desk.getAway() - awayBefore;
    game->take(move, used, waited + away,
               desk.describeCircumstances() + ", the engine waited " + std::to_string(waited) +
                   " ms for a processor, nobody looked for " + std::to_string(away) + " ms");
    proceed();
}

void SelfPlay::shrink() {
    answer.clear();
    player->say("setoption name Hash value 1");
    player->say("position startpos moves " + SHRINKING_MOVES);
    player->say("go movetime 0");
    enter(Phase::SHRINKING, PATIENCE);
}

void SelfPlay::endGame() {
    if (phase == Phase::RESTING) {
        memory.last = player->getProcess().getResidentKib();
        if (++gamesOfEngine == 1) {
            memory.first = memory.last;
        }
        if (gamesOfEngine <= SETTLING_GAMES) {
            memory.settled = std::max(memory.settled, memory.last);
        }
    }
    GameResult result = game->getResult();
    const std::string faults = joinFaults(result.findings);
    if (!faults.empty()) {
        const std::string name = "soak-seed" + std::to_string(options.seed) + "-game" +
                                 std::to_string(result.game.number) + ".txt";
        const std::string where = writeRecord(name, faults);
        for (Finding& finding : result.findings) {
            finding.text += finding.isFault() ? "; " + where : "";
        }
        result.game.fault = joinFaults(result.findings);
    }
    desk.add(result, isStopped);
    game.reset();
}

// ---- The end of an engine ----

void SelfPlay::leave() {
    if (!player) {
        phase = Phase::DONE;
        return;
    }
    enter(Phase::LEAVING, PATIENCE);
    player->say("quit");
    waitForEnd();
}

void SelfPlay::expectEnd() {
    const std::optional<UciProcess::End> end = player->getEnd();
    if (!end || !end->exited || end->status != 0) {
        throw ProtocolFault("no clean end after quit");
    }
    if (!player->getErrors().empty()) {
        throw ProtocolFault("on standard error: " + player->getErrors());
    }
    desk.add(memory);
    player.reset();
    phase = Phase::DONE;
}

void SelfPlay::breakOff(const std::string& protocolFault) {
    fault = protocolFault;
    enter(Phase::BREAKING, LAST_WORDS_TIME);
    waitForEnd();
}

void SelfPlay::endBroken() {
    fault += "; the process " + player->describeEnd();
    if (game) {
        game->breakOff(fault + desk.describeCircumstances());
        endGame();
    } else {
        const std::string pid = std::to_string(player->getProcess().getPid());
        memory.fault = toOneLine(fault) + "; " + writeRecord("soak-quit" + pid + ".txt", fault);
    }
    desk.add(memory);
    player.reset();
    beginGame();
}

std::string SelfPlay::writeRecord(const std::string& name, const std::string& found) {
    const std::string path = (std::filesystem::path(options.records) / name).string();
    const std::string errors = player->getErrors();
    try {
        std::filesystem::create_directories(options.records);
        writeWhole(path, "Fault: " + found + '\n' + (game ? game->describe() : "") +
                             "Engine: " + options.engine + ", " + player->describeEnd() +
                             (errors.empty() ? ", said nothing on standard error\n"
                                             : ", said on standard error:\n" + errors) +
                             "Conversation, milliseconds since the engine was started:\n" +
                             player->getConversation());
        return "all of it in " + path;
    } catch (const std::runtime_error& failure) {
        return std::string("no record, as ") + failure.what();
    }
}
