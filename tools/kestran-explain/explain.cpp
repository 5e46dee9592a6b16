#include "kestran-explain/explain.h"

#include "explain/lineAnswer.h"
#include "explain/recorder.h"
#include "explain/review.h"
#include "explain/searchText.h"
#include "explain/watchedLine.h"
#include "kestran-explain/bookText.h"
#include "kestran-explain/explainTree.h"
#include "kestran-explain/jsonReport.h"
#include "kestran-explain/question.h"
#include "kestran-explain/reportLength.h"
#include "kestran-explain/searchLimit.h"
#include "kestran-explain/webPage.h"
#include "support/requireTable.h"
#include "support/settings.h"
#include "support/terminal.h"
#include "support/text.h"
#include "support/textFile.h"

#include <algorithm>
#include <functional>
#include <iostream>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

// Parts of the whole time: the first goes to finding a line if none is given, and what the
// second leaves to the question what a single move is worth.
constexpr double TIME_TO_FIND = 0.4;
constexpr double TIME_TO_WATCH = 0.8;

constexpr int INTERRUPTED = 130; // exit status, as of a process that Ctrl-C ends

// Shows on standard error how deep the search has come.
class ShownProgress {
public:
    explicit ShownProgress(std::string _work) : work(std::move(_work)) {}

    void operator()(const PassReport& pass) {
        nodes += pass.nodes;
        progress.show(work + ": depth " + std::to_string(pass.depth) + " done, " +
                      std::to_string(nodes) + " nodes");
    }

private:
    Progress progress;
    std::string work;
    std::int64_t nodes = 0;
};

// The line of the deepest good pass of an unwatched search. Sets the depth of the
// question to what that pass has shown to be within reach.
void findLine(Question& question, const EngineConfig& config, SearchLimit& limit) {
    ShownProgress progress("finding the line");
    const auto ida = makeSearch(config);
    requireTable(ida->getTreeGenerator().state.table.getSize(), config.hashTableSize);
    const auto passes = searchPasses(*ida, depthRequest(question.game, question.depth),
                                     &limit.begin(TIME_TO_FIND), std::ref(progress));
    const PassReport* const good = findLastGood(passes);
    if (good == nullptr) {
        return;
    }
    question.line = movesOf(good->line);
    question.line.resize(std::min<std::size_t>(question.line.size(), Explain::MAX_LINE));
    question.depth = good->depth;
    if (question.line.empty()) {
        throw UsageError("the search has no line of its own: the game is over in this position");
    }
}

std::string passesText(const Question& question, const std::vector<std::string>& passes) {
    return joinShortened(passes, question.maxLines.value_or(std::numeric_limits<int>::max()));
}

// The numbers of the passes to show out of `count`.
std::pair<int, int> chosenPasses(const Question& question, int count) {
    if (!question.pass) {
        return {0, count};
    }
    if (*question.pass >= count) {
        throw UsageError("there is no pass " + std::to_string(*question.pass) +
                         "; the last one is " + std::to_string(count - 1));
    }
    return {*question.pass, *question.pass + 1};
}

std::string plainReport(const Question& question, const Explain& explain, int passCount) {
    // The record also has the pass that was under way, in a line that stays with the
    // pass before it.
    const auto [first, end] = chosenPasses(question, passCount + 1);
    std::vector<std::string> passes;
    for (int pass = first; pass < end; ++pass) {
        std::ostringstream stream;
        explain.explainPass(at(pass), question.all, stream);
        if (pass == passCount && !passes.empty()) {
            passes.back() += stream.str();
        } else {
            passes.push_back(stream.str());
        }
    }
    const std::string book = bookText(question.game.position);
    return passesText(question, passes) + book + (book.empty() ? "" : "\n");
}

// Columns to wrap at.
std::size_t widthOf(const Question& question) {
    const std::size_t width = question.output ? 0 : getTerminalWidth();
    return width > 0 ? width : std::numeric_limits<std::size_t>::max();
}

std::string treeReport(const Question& question, const WatchedLine& line) {
    const TreeReport report(line, question.all, !question.output && isColourWanted(),
                            widthOf(question));
    const auto [first, end] = chosenPasses(question, line.getPassCount());
    std::vector<std::string> passes;
    for (int pass = first; pass < end; ++pass) {
        passes.push_back(report.getPass(pass));
    }
    return report.getHead() + passesText(question, passes);
}

// A report that answers in words.
std::string answeredReport(const Question& question, const EngineConfig& config,
                           const WatchedLine& line, SearchLimit& limit) {
    chosenPasses(question, line.getPassCount());
    const std::string book = bookText(question.game.position);
    const Answer answer =
        answerLine(config, question.game, line, [&limit] { return &limit.begin(1.0); });
    if (question.format == ReportFormat::HTML) {
        return withSearch(WEB_PAGE, embeddedSearch(line, answer, question.depth,
                                                   hashOption(config.hashTableSize)));
    }
    const std::string words = answer.getText();
    if (question.format == ReportFormat::JSON) {
        const auto [first, end] = chosenPasses(question, line.getPassCount());
        std::ostringstream stream;
        printJson(makeJson(line, {words, question.all, first, end}), stream);
        return stream.str();
    }
    return treeReport(question, line) + '\n' + wrapText(words, 0, widthOf(question)) + '\n' + book +
           (book.empty() ? "" : "\n");
}

void print(const Question& question, const std::string& text) {
    if (question.output) {
        writeWhole(*question.output, text);
    } else {
        std::cout << text;
    }
}

// Searches again and writes the record of every move.
void writeRecord(const Question& question, const EngineConfig& config, SearchLimit& limit) {
    ShownProgress progress("recording");
    const auto ida = makeSearch(config);
    Recorder recorder;
    ida->watchBy(recorder);
    std::ostringstream stream;
    searchPasses(*ida, depthRequest(question.game, question.depth), &limit.begin(1.0),
                 [&](const PassReport& pass) {
                     writeRecords(stream, recorder, pass);
                     progress(pass);
                 });
    writeWhole(*question.record, stream.str());
}

Review reviewWithProgress(const Question& question, const EngineConfig& config, IdaVariant& slot) {
    const PgnGame& game = *question.review;
    Progress progress;
    const auto showMove = [&](const ReviewedMove& move) {
        progress.show("reviewing: move " + std::to_string(move.ply + 1) + " of " +
                      std::to_string(game.moves.size()));
    };
    return reviewGame(config, game, question.nodes, showMove, &slot);
}

// Prints the game of the question with comments, as far as the review came. Returns the exit
// status.
int annotateGame(const Question& question, const EngineConfig& config) {
    const PgnGame& game = *question.review;
    SearchLimit limit(std::nullopt);
    IdaVariant& slot = limit.begin(1.0);
    const Review review = reviewWithProgress(question, config, slot);
    print(question, toPgn(annotate(game, review)));
    if (!slot.isReady()) {
        return 0;
    }
    std::cerr << "kestran-explain: interrupted after reviewing " << review.moves.size() << " of "
              << game.moves.size() << " moves\n";
    return INTERRUPTED;
}

// Returns the exit status.
int answer(Question question) {
    const auto config = EngineConfig::getProdConfig();
    config->hashTableSize = question.hashTableSize.value_or(config->hashTableSize);
    applySettings(question.settings, *config);
    if (question.review) {
        return annotateGame(question, *config);
    }
    SearchLimit limit(question.time);
    if (question.line.empty()) {
        findLine(question, *config, limit);
    }
    Explain explain;
    std::vector<PassReport> passes;
    if (!question.line.empty()) {
        ShownProgress progress("watching");
        const auto ida = makeSearch(*config);
        requireTable(ida->getTreeGenerator().state.table.getSize(), config->hashTableSize);
        passes = watchSearch(*ida, depthRequest(question.game, question.depth), question.line,
                             explain, &limit.begin(TIME_TO_WATCH), std::ref(progress));
    }
    if (passes.empty()) {
        throw std::runtime_error("the search was ended before its first pass, and there is "
                                 "nothing to report");
    }

    const WatchedLine line(question.game, explain, passes);
    const std::string text = question.format == ReportFormat::PLAIN
                                 ? plainReport(question, explain, line.getPassCount())
                                 : answeredReport(question, *config, line, limit);
    if (question.record) {
        writeRecord(question, *config, limit);
    }
    print(question, text);
    return 0;
}

} // namespace

int explainMain(int argc, const char* const* argv) {
    return ask(argc, argv, answer);
}
