#include "kestran-explain/webPage.h"

#include "messages/messages.h"

#include <stdexcept>

namespace {

constexpr std::string_view PLACE = R"(<script type="application/json" id="search">)";
constexpr std::string_view NO_SEARCH = "null";

// The text inside a script element: "<" could end it.
std::string inScript(const std::string& json) {
    std::string text;
    for (const char letter : json) {
        text += letter == '<' ? R"(\u003c)" : std::string(1, letter);
    }
    return text;
}

} // namespace

std::string embeddedSearch(const WatchedLine& line, const Answer& answer, int depth,
                           int hashMebibytes) {
    Json passes = Json::array();
    for (int i = 0; i < line.getPassCount(); ++i) {
        passes.push_back(passToJson(line.getPosition(0), i, line.getPass(i)));
    }
    return inScript(textOf({{"fen", line.getFen()},
                            {"moves", Json::array()},
                            {"line", lineToJson(line.getPosition(0), line.getMoves())},
                            {"depth", depth},
                            {"hash", hashMebibytes},
                            {"passes", std::move(passes)},
                            {"answer", answerToJson(answer, line)}}));
}

std::string withSearch(std::string_view page, const std::string& search) {
    const std::size_t place = page.find(std::string(PLACE).append(NO_SEARCH));
    if (place == std::string_view::npos) {
        throw std::runtime_error("the page has no place for a search");
    }
    std::string text(page);
    return text.replace(place + PLACE.size(), NO_SEARCH.size(), search);
}
