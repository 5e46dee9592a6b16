#include "uci/uciEngine.h"

#include "base/clock.h"
#include "base/loggingService.h"
#include "base/process.h"
#include "search/hashTable.h"
#include "uci/standardPolicy.h"
#include "uci/uciReports.h"

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <utility>

namespace {

// ---- The words of the protocol, compared exactly ----

constexpr std::string_view UCI_COMMAND = "uci";
constexpr std::string_view IS_READY = "isready";
constexpr std::string_view QUIT = "quit";
constexpr std::string_view STOP = "stop";
constexpr std::string_view POSITION_COMMAND = "position";
constexpr std::string_view STARTPOS = "startpos";
constexpr std::string_view FEN = "fen";
constexpr std::string_view MOVES = "moves";
constexpr std::string_view GO_COMMAND = "go";
constexpr std::string_view SETOPTION_COMMAND = "setoption";

bool isSeparator(char c) {
    constexpr char LF = 10;
    constexpr char CR = 13;
    constexpr char SPACE = 32;
    constexpr char END_OF_C_STR = 0;
    return c == LF || c == CR || c == SPACE || c == END_OF_C_STR;
}

// The FEN text of a `position` line: from the word after `fen` (from the second word if that is not
// `fen`) to one character before the first "moves".
std::string fenTextOf(const std::string& line, const std::vector<std::string>& vec) {
    const std::size_t textWord = vec[1] == FEN ? 2 : 1;
    std::size_t start = 0;
    for (std::size_t word = 0; word <= textWord; ++word) {
        while (start < line.size() && isSeparator(line[start])) {
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

UciEngine::UciEngine(const EngineConfig& config)
    : UciEngine(config, std::make_unique<StandardPolicy>()) {
}

UciEngine::UciEngine(const EngineConfig& config, std::unique_ptr<UciPolicy> _policy)
    : policy(std::move(_policy)), engine(config, policy->getWaitPolicy()) {
    engine.setInfoListener(this);
    engine.setStopListener(this);
}

UciEngine::~UciEngine() {
    quitting = true;
    engine.wake();
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
    finish();
}

void UciEngine::start(const std::string& onlyLine) {
    handleLine(onlyLine);
    finish();
}

// Waits for the answers to all searches.
void UciEngine::finish() {
    inputEnded = true;
    engine.wake();
    goThread.join();
}

bool UciEngine::handleLine(const std::string& line) {
    const std::vector<std::string> vec = splitString(line);
    if (vec.empty()) {
        return true;
    }
    const std::string& command = vec[0];
    if (LongCommand longCommand = policy->readLongCommand(vec, engine.getGame())) {
        enqueue({}, std::move(longCommand));
    } else if (command == GO_COMMAND) {
        handleGoSeparateThread(vec);
    } else if (vec.size() == 1) {
        if (command == UCI_COMMAND) {
            sendAll(policy->getUciReply(mebibytesOf(engine.getHashTableSize())));
        } else if (command == IS_READY) {
            send(READY_OK);
        } else if (command == STOP) {
            stop = true;
            stoppedGo = lastGo;
            engine.wake();
        } else if (policy->startsClock(vec)) {
            startClock();
        } else {
            sendAll(policy->answerCommand(vec, engine.getGame()));
        }
        // `ucinewgame` needs no action: each search starts from scratch.
        return command != QUIT;
    } else if (command == POSITION_COMMAND) {
        handlePosition(line, vec);
    } else if (command == SETOPTION_COMMAND) {
        handleSetOption(vec);
    }
    return true;
}

// Writes a whole line in one call, so that lines of different threads never mix. Ends the process
// if the write fails.
void UciEngine::send(std::string_view str) {
    const std::string line = std::string(str) + '\n';
    std::fwrite(line.data(), 1, line.size(), stdout);
    if (std::fflush(stdout) != 0) {
        endProcess();
    }
    logger.info([&line] { return "---> " + line; });
}

void UciEngine::sendAll(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
        send(line);
    }
}

// Returns false at the end of input.
bool UciEngine::readLine(std::string& line) {
    if (!std::getline(std::cin, line)) {
        return false;
    }
    logger.info([&line] { return "<--- " + line + '\n'; });
    return true;
}

std::vector<std::string> UciEngine::splitString(const std::string& str) {
    std::vector<std::string> words;
    auto end = str.begin();
    for (;;) {
        const auto begin = std::find_if_not(end, str.end(), isSeparator);
        if (begin == str.end()) {
            return words;
        }
        end = std::find_if(begin, str.end(), isSeparator);
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
    const Milliseconds start = clockMilliseconds();
    std::optional<SearchLimits> limits = policy->readGo(vec, engine.getPosition(), start);
    if (limits) {
        enqueue(std::move(*limits), {});
    }
}

// Queues a search, or a long command if it is not empty.
void UciEngine::enqueue(SearchLimits limits, LongCommand command) {
    ++lastGo;
    {
        const std::lock_guard lock(goMutex);
        goQueue.push_back({{lastGo, std::move(limits), engine.getGame()}, std::move(command)});
        if (isGoThreadRunning) {
            return;
        }
        isGoThreadRunning = true;
    }
    if (!goThread.start([this] { runGoQueue(); })) {
        logger.error("Thread cannot be created, the engine now cannot be stopped");
        runGoQueue();
    }
}

void UciEngine::runGoQueue() {
    while (const std::optional<Go> go = takeFromGoQueue()) {
        currentGo = go->request.number;
        infinite = go->request.limits.time.infinite;
        pondering = go->request.limits.isPondering;
        if (go->command) {
            go->command({[this](const std::string& line) { send(line); },
                         [this] { return checkForStop(); }});
        } else {
            handleGo(go->request);
        }
    }
}

// Takes the next request. If there is none, or the engine is quitting, marks the go thread as
// ended.
std::optional<UciEngine::Go> UciEngine::takeFromGoQueue() {
    const std::lock_guard lock(goMutex);
    if (goQueue.empty() || quitting) {
        isGoThreadRunning = false;
        return std::nullopt;
    }
    Go go = std::move(goQueue.front());
    goQueue.pop_front();
    return go;
}

void UciEngine::handleGo(const SearchRequest& request) {
    openReports(request);
    const SearchResult result = engine.search(request);
    closeReports();
    if (quitting) {
        return;
    }
    sendAll(policy->getAnswerLines(result, request.game));
}

// Lets reports of a search be sent. It must live until closeReports().
void UciEngine::openReports(const SearchRequest& request) {
    const std::lock_guard lock(infoMutex);
    reported = &request;
}

// After this call, no report of a search is sent until the next openReports().
void UciEngine::closeReports() {
    const std::lock_guard lock(infoMutex);
    reported = nullptr;
}

void UciEngine::onInfo(const InfoStruct& info) {
    const std::lock_guard lock(infoMutex);
    if (reported != nullptr && info.number == reported->number) {
        send(policy->getReportLine(info, reported->game));
    }
}

void UciEngine::onCurrentMove(const CurrentMove& current) {
    const std::lock_guard lock(infoMutex);
    if (reported != nullptr && current.number == reported->number) {
        if (const std::optional<std::string> line = policy->getCurrentMoveLine(current)) {
            send(*line);
        }
    }
}

// Not by std::cerr, which two threads must not use at the same time.
void UciEngine::onTableMissing() {
    std::fputs("Hash rejected: not enough memory, searching without a table\n", stderr);
}

bool UciEngine::checkForStop() {
    if (isStandardOutputLost()) {
        endProcess();
    }
    const bool isStopped = policy->keepsIdleStop() ? stop.exchange(false) : stoppedGo >= currentGo;
    const bool isEndless = infinite || (pondering && hitGo < currentGo);
    return isStopped || quitting || (inputEnded && isEndless);
}

// Lets the time of the pondering searches so far run.
void UciEngine::startClock() {
    if (hitGo != lastGo) {
        hitTime = clockMilliseconds();
        hitGo = lastGo;
        engine.wake();
    }
}

std::optional<Milliseconds> UciEngine::getClockStart() {
    return hitGo >= currentGo ? std::optional<Milliseconds>(hitTime) : std::nullopt;
}

// ---- Options ----

// The new size shows in the next `uci` reply. The table itself is resized when the next search
// starts, as a search may be using it now. A size that no table can have is rejected at once.
void UciEngine::handleSetOption(const std::vector<std::string>& vec) {
    const std::optional<int> hash = policy->setOption(vec);
    if (!hash) {
        return;
    }
    const int entries = entriesOf(*hash);
    engine.setHashTableSize(entries);
    if (*hash > 0 && entries == 0) {
        onTableMissing();
    }
}
