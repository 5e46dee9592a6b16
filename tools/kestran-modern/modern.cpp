// kestran-modern: the engine for current chess programs.

#include "search/searchParameters.h"
#include "support/cli.h"
#include "uci/modernEngine.h"

#include <optional>
#include <string>

namespace {

constexpr const char* DESCRIPTION =
    "Searches as kestran does, and speaks the Universal Chess Interface as current chess programs "
    "expect it: each report has depth, score, nodes and time before the line; mates are counted in "
    "moves; depth, nodes, mate and searchmoves are obeyed; and \"go\" alone searches until "
    "\"stop\". It checks the clock every millisecond.";

} // namespace

// The main function of the program.
int modernMain(int argc, const char* const* argv) {
    std::string word;
    std::optional<int> depth;
    Program program("kestran-modern", "[bench [DEPTH]]", DESCRIPTION, "there is no memory");
    program.addText("bench", word, "",
                    "search the positions of kestran-bench and print one line, \"N nodes M "
                    "nps\"; without DEPTH, N is the signature of the search");
    program.addNumber("depth", depth, 1, MAX_PASSES, "DEPTH", "plies to search");
    return program.run(argc, argv, [&] {
        if (!word.empty() && word != "bench") {
            throw UsageError("unknown word \"" + word + R"("; the only one is "bench")");
        }
        runModernEngine(word.empty() ? "" : "bench" + (depth ? ' ' + std::to_string(*depth) : ""));
        return 0;
    });
}
