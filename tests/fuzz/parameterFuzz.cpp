// Lines of parameters and of statistics.

#include "fuzz/fuzz.h"

#include "search/engineParameters.h"
#include "search/statistics.h"
#include "testing/readLines.h"

#include <sstream>

namespace {

std::string printed(const EngineConfig& config) {
    std::ostringstream stream;
    config.print(stream);
    return stream.str();
}

void readConfig(const std::string& text) {
    EngineConfig config;
    readLines(config, text);
    EngineConfig copy;
    readLines(copy, printed(config));
    require(printed(copy) == printed(config), "parameters are not read back as written");
}

void readStatistics(const std::string& text) {
    static TestStatistics statistics;
    static TestStatistics copy;
    statistics.reset();
    copy.reset();
    readLines(statistics, text);
    const int run = statistics.getRunPointer();
    if (run < 0) {
        return;
    }
    statistics.sumStatistics();
    std::ostringstream stream;
    statistics.printStatistics(run, stream);
    readLines(copy, stream.str());
    require(copy.getRunPointer() == run, "another run is read back");
    for (int type = 0; type < N_TYPES; ++type) {
        for (int ply = 0; ply < MAX_PLIES; ++ply) {
            require(copy.get(run, type, ply) == statistics.get(run, type, ply),
                    "another counter is read back");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    readConfig(textOf(data, size));
    readStatistics(textOf(data, size));
    return 0;
}
