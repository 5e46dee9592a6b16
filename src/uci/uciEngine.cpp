#include "uci/uciEngine.h"

#include "base/loggingService.h"
#include "base/platform.h"
#include "notation/ioFuncs.h"
#include "notation/longAlgebraicMove.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <limits>
#include <sstream>
#include <string_view>
#include <utility>

namespace {

// ---- The words of the protocol, compared exactly ----

constexpr std::string_view UCI_COMMAND = "uci";
constexpr const char* ID_NAME = "id name KESTRAN CHESS 1.1.2";
constexpr const char* ID_AUTHOR = "id author Bremo Talvik";
constexpr const char* UCI_OK = "uciok";
constexpr std::string_view IS_READY = "isready";
constexpr const char* READY_OK = "readyok";
constexpr std::string_view QUIT = "quit";
constexpr std::string_view STOP = "stop";
constexpr std::string_view POSITION_COMMAND = "position";
constexpr std::string_view STARTPOS = "startpos";
constexpr std::string_view FEN = "fen";
constexpr std::string_view MOVES = "moves";
constexpr std::string_view DEBUG_COMMAND = "debug";
constexpr std::string_view ON = "on";
constexpr std::string_view OFF = "off";

constexpr std::string_view GO_COMMAND = "go";
constexpr std::string_view WTIME = "wtime";
constexpr std::string_view BTIME = "btime";
constexpr std::string_view WINC = "winc";
constexpr std::string_view BINC = "binc";
constexpr std::string_view MOVETIME = "movetime";
constexpr std::string_view MOVES_TO_GO = "movestogo";
constexpr std::string_view INFINITE_UCI = "infinite";
constexpr const char* BEST_MOVE_SPACE = "bestmove ";
constexpr const char* NO_MOVE = "(none)";

constexpr std::string_view SETOPTION_COMMAND = "setoption";
constexpr std::string_view NAME = "name";
constexpr std::string_view VALUE = "value";
constexpr const char* HASH = "Hash";
constexpr const char* OPTION_COMMAND = "option";
constexpr const char* MIN_COMMAND = "min";
constexpr const char* MAX_COMMAND = "max";
constexpr const char* DEFAULT_COMMAND = "default";

constexpr const char* UCI_INFO_ = "info ";
constexpr const char* UCI_PV = "pv";
constexpr const char* UCI_SCORE_ = "score ";
constexpr const char* UCI_CP_ = "cp ";
constexpr const char* UCI_DEPTH_ = "depth ";
constexpr const char* UCI_SELDEPTH_ = "seldepth ";
constexpr const char* UCI_NODES_ = "nodes ";
constexpr const char* UCI_TIME_ = "time ";
constexpr const char* UCI_NPS_ = "nps ";

// ---- Numbers ----

constexpr Milliseconds NOT_GIVEN = -1;
constexpr Milliseconds DEFAULT_MOVES_TO_GO = 40;
constexpr int CENTIPAWN = 10; // in the unit of a score
constexpr int MEBIBYTE_SHIFT = 20;

// The number that a text begins with, 0 if it does not, brought to 32 bits.
Milliseconds parseMillis(const std::string& str) {
    return std::clamp<long>(std::strtol(str.c_str(), nullptr, 10),
                            std::numeric_limits<std::int32_t>::min(),
                            std::numeric_limits<std::int32_t>::max());
}

int getIntOption(const std::string& name, const std::string& value) {
    int number = 0;
    std::istringstream(value) >> number;
    logger.info("Setting option " + name + " to " + value);
    return number;
}

// The table's entries for a size in mebibytes; 0 where no such table can be.
int entriesOf(int mebibytes) {
    const std::int64_t bytes = std::int64_t{mebibytes} << MEBIBYTE_SHIFT;
    const std::int64_t entries = bytes / static_cast<std::int64_t>(sizeof(GenericEntry));
    const bool isPossible = 0 <= entries && entries <= std::numeric_limits<int>::max();
    return isPossible ? static_cast<int>(entries) : 0;
}

bool isLimitingChar(char c) {
    constexpr char LF = 10;
    constexpr char CR = 13;
    constexpr char SPACE = 32;
    constexpr char END_OF_C_STR = 0;
    return c == LF || c == CR || c == SPACE || c == END_OF_C_STR;
}

// "pv" and the moves of the line in the order of play.
std::string getPvInfo(const Variant& variant) {
    std::string text = UCI_PV;
    for (int i = 0; i < variant.varLength; ++i) {
        text += ' ' + LongAlgebraicMove(variant.get(i).move).toString();
    }
    return text;
}

std::string getScoreInfo(int evaluation) {
    return std::string(UCI_SCORE_) + UCI_CP_ + std::to_string(evaluation / CENTIPAWN);
}

// If the word at `index` is `name` and a word follows it, stores that word's number.
bool checkForValueParam(std::string_view name, Milliseconds& into,
                        const std::vector<std::string>& words, std::size_t index) {
    if (words[index] != name || index + 1 >= words.size()) {
        return false;
    }
    into = parseMillis(words[index + 1]);
    return true;
}

// The FEN text of a `position` line: behind the word `fen`, or, without it, from the
// second word on; up to one character before the first "moves" of the line.
std::string fenTextOf(const std::string& line, const std::vector<std::string>& vec) {
    const std::size_t textWord = vec[1] == FEN ? 2 : 1;
    std::size_t start = 0;
    for (std::size_t word = 0; word <= textWord; ++word) {
        while (start < line.size() && isLimitingChar(line[start])) {
            ++start;
        }
        if (word < textWord) {
            start += vec[word].size();
        }
    }
    const std::size_t moves = line.find(MOVES);
    const std::size_t end = moves == std::string::npos ? line.size() : moves - 1;
    return start < end ? line.substr(start, end - start) : "";
}

} // namespace

UciEngine::UciEngine(EngineConfig* config) : engine(config) {
    init();
}

UciEngine::UciEngine() : ownConfig(std::make_unique<EngineConfig>()), engine(ownConfig.get()) {
    ownConfig->quiscenceMaxDepth = 4;
    ownConfig->log();
    init();
}

UciEngine::~UciEngine() {
    quitting = true;
    joinGoThread();
}

void UciEngine::init() {
    engine.setInfoListener(this);
    engine.setStopListener(this);
}

// ---- The command loop ----

void UciEngine::start() {
    std::string line;
    while (readLine(line)) {
        if (!handleLine(line)) {
            logger.trace("quitting...");
            return;
        }
    }
    inputEnded = true;
    joinGoThread();
}

bool UciEngine::handleLine(const std::string& line) {
    const std::vector<std::string> vec = splitString(line);
    if (vec.size() == 1) {
        const std::string& word = vec[0];
        if (word == UCI_COMMAND) {
            send(ID_NAME);
            send(ID_AUTHOR);
            sendAllOptions();
            send(UCI_OK);
        } else if (word == IS_READY) {
            send(READY_OK);
        } else if (word == STOP) {
            stop = true;
        }
        // `ucinewgame` asks for nothing: each search starts from scratch.
        return word != QUIT;
    }
    if (vec.size() >= 2) {
        const std::string& command = vec[0];
        if (command == POSITION_COMMAND) {
            handlePosition(line, vec);
        } else if (command == GO_COMMAND) {
            handleGoSeparateThread(vec);
        } else if (command == DEBUG_COMMAND) {
            debug = vec[1] == ON || (debug && vec[1] != OFF);
        } else if (command == SETOPTION_COMMAND) {
            handleSetOption(vec);
        }
    }
    return true;
}

// One call writes a whole line, so that lines of different threads never mix. When
// nobody reads any more, there is nothing left to do.
void UciEngine::send(const std::string& str) {
    const std::string line = str + '\n';
    std::fwrite(line.data(), 1, line.size(), stdout);
    if (std::fflush(stdout) != 0) {
        endProcess();
    }
    if constexpr (LOG_ENABLED) {
        logger.info("---> " + line);
    }
}

// False at the end of input.
bool UciEngine::readLine(std::string& line) {
    if (!std::getline(std::cin, line)) {
        return false;
    }
    if constexpr (LOG_ENABLED) {
        logger.info("<--- " + line + '\n');
    }
    return true;
}

std::vector<std::string> UciEngine::splitString(const std::string& str) {
    std::vector<std::string> words;
    auto end = str.begin();
    for (;;) {
        const auto begin = std::find_if_not(end, str.end(), isLimitingChar);
        if (begin == str.end()) {
            return words;
        }
        end = std::find_if(begin, str.end(), isLimitingChar);
        words.emplace_back(begin, end);
    }
}

// ---- The game ----

void UciEngine::handlePosition(const std::string& line, const std::vector<std::string>& vec) {
    if (vec[1] == STARTPOS) {
        engine.init();
        if (vec.size() > 3 && vec[2] == MOVES) {
            playMoves(vec, 3);
        }
        return;
    }
    const std::string fault = engine.init(fenTextOf(line, vec));
    if (!fault.empty()) {
        std::cerr << "position rejected: " << fault << std::endl;
        return;
    }
    const auto moves = std::find(vec.begin(), vec.end(), MOVES);
    playMoves(vec, static_cast<std::size_t>(moves - vec.begin()) + 1);
}

void UciEngine::playMoves(const std::vector<std::string>& vec, std::size_t first) {
    for (std::size_t i = first; i < vec.size(); ++i) {
        engine.doMoveLongAlgebraic(vec[i]);
    }
}

// ---- go ----

void UciEngine::handleGoSeparateThread(const std::vector<std::string>& vec) {
    {
        const std::lock_guard lock(goMutex);
        goQueue.push_back({vec, engine.getGame(), clockMilliseconds()});
        if (isGoThreadRunning) {
            return;
        }
        isGoThreadRunning = true;
    }
    joinGoThread();
    pthread_t handle;
    if (createThread(handle, pthreadStart, this)) {
        goThread = handle;
        return;
    }
    logger.error("Thread cannot be created, the engine now cannot be stopped");
    workOffGoQueue();
}

void* UciEngine::pthreadStart(void* uciEngineVoid) {
    static_cast<UciEngine*>(uciEngineVoid)->workOffGoQueue();
    return nullptr;
}

void UciEngine::workOffGoQueue() {
    while (const std::optional<ThreadData> data = takeFromGoQueue()) {
        handleGo(*data);
    }
}

// The next `go`. If there is none, the go thread counts as ended.
std::optional<UciEngine::ThreadData> UciEngine::takeFromGoQueue() {
    const std::lock_guard lock(goMutex);
    if (goQueue.empty() || quitting) {
        isGoThreadRunning = false;
        return std::nullopt;
    }
    ThreadData data = std::move(goQueue.front());
    goQueue.pop_front();
    return data;
}

void UciEngine::handleGo(const ThreadData& data) {
    moveTime = NOT_GIVEN;
    infinite = false;
    handleGoCommandProps(data.vec, data.game.position.colorToMove);
    engine.joinThread(); // of the last search, which must not report any more
    setAnswered(false);
    const Variant variant = engine.search(data.game, moveTime, infinite, data.clockStart);
    setAnswered(true);
    if (quitting) {
        return;
    }
    sendPvInfo(variant);
    send(BEST_MOVE_SPACE +
         (variant.varLength > 0 ? LongAlgebraicMove(variant.get(0).move).toString() : NO_MOVE));
}

void UciEngine::setAnswered(bool answered) {
    const std::lock_guard lock(infoMutex);
    isAnswered = answered;
}

void UciEngine::joinGoThread() {
    if (goThread) {
        joinThread(*goThread);
        goThread.reset();
    }
}

void UciEngine::handleGoCommandProps(const std::vector<std::string>& commands, Color colorToMove) {
    // The own and the opponent's clock, by colour; the opponent's is never looked at.
    std::array<Milliseconds, 2> time = {NOT_GIVEN, NOT_GIVEN};
    std::array<Milliseconds, 2> increment = {NOT_GIVEN, NOT_GIVEN};
    Milliseconds moveTimeLocal = NOT_GIVEN;
    Milliseconds movesToGo = NOT_GIVEN;
    for (std::size_t i = 0; i < commands.size(); ++i) {
        checkForValueParam(WTIME, time[WHITE], commands, i);
        checkForValueParam(BTIME, time[BLACK], commands, i);
        checkForValueParam(WINC, increment[WHITE], commands, i);
        checkForValueParam(BINC, increment[BLACK], commands, i);
        checkForValueParam(MOVETIME, moveTimeLocal, commands, i);
        checkForValueParam(MOVES_TO_GO, movesToGo, commands, i);
        if (commands[i] == INFINITE_UCI) {
            logger.info("set infinite");
            infinite = true;
            return;
        }
    }
    if (movesToGo <= 0) {
        movesToGo = DEFAULT_MOVES_TO_GO;
    }

    const Milliseconds ownTime = time[at(colorToMove)];
    const Milliseconds ownIncrement = increment[at(colorToMove)];
    if (moveTimeLocal != NOT_GIVEN) {
        moveTime = moveTimeLocal;
        logger.debug("fixed time for a move");
    } else if (ownTime > 0 && ownIncrement >= 0) {
        moveTime = ownTime / movesToGo + ownIncrement;
        logger.debug("incremental game");
    } else if (ownTime > 0 && ownIncrement == NOT_GIVEN) {
        moveTime = ownTime / movesToGo;
        logger.debug("fixed time for the next fixed number of moves");
    } else {
        logger.warn("cannot understand go command parameters");
    }
}

// ---- Options and reports ----

void UciEngine::sendAllOptions() {
    const std::int64_t bytes =
        std::int64_t{engine.getConfig()->hashTableSize} * static_cast<int>(sizeof(GenericEntry));
    sendOption(HASH, "spin", EngineConfig::HASH_MIN, EngineConfig::HASH_MAX,
               static_cast<int>(bytes >> MEBIBYTE_SHIFT));
}

void UciEngine::sendOption(const std::string& name, const std::string& type, int min, int max,
                           int defaultVal) {
    std::ostringstream text;
    text << OPTION_COMMAND << ' ' << NAME << ' ' << name << " type " << type << ' ' << MIN_COMMAND
         << ' ' << min << ' ' << MAX_COMMAND << ' ' << max << ' ' << DEFAULT_COMMAND << ' '
         << defaultVal << ' ';
    send(text.str());
}

// An option's name and its value are one word each. An option without a value, as a
// button would be, does not exist.
void UciEngine::handleSetOption(const std::vector<std::string>& vec) {
    if (vec.size() > 4 && vec[1] == NAME && vec[3] == VALUE) {
        setOption(vec[2], vec[4]);
    }
}

// The size shows at once; the table follows when the next search starts, as a search
// may be using it now.
void UciEngine::setOption(const std::string& name, const std::string& value) {
    if (name == HASH) {
        engine.getConfig()->hashTableSize = entriesOf(getIntOption(name, value));
    }
}

void UciEngine::onInfo(const InfoStruct& info) {
    const std::lock_guard lock(infoMutex);
    if (isAnswered) {
        return;
    }
    std::ostringstream text;
    text << UCI_INFO_ << getPvInfo(info.pv) << ' ' << getScoreInfo(info.pv.evaluation) << ' '
         << UCI_DEPTH_ << info.depth << ' ' << UCI_SELDEPTH_ << info.selDepth << ' ' << UCI_NODES_
         << info.nodesSearched << ' ' << UCI_TIME_ << info.time << ' ' << UCI_NPS_
         << info.nodesPerSec << ' ';
    send(text.str());
}

bool UciEngine::checkForStop() {
    if (isStandardOutputLost()) {
        endProcess();
    }
    const bool localStop = stop.exchange(false);
    return localStop || quitting || (inputEnded && infinite);
}

void UciEngine::sendPvInfo(const Variant& variant) {
    send(UCI_INFO_ + getPvInfo(variant));
}
