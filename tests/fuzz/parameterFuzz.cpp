// Lines of parameters and of statistics.

#include "fuzz/fuzz.h"

#include "search/engineParameters.h"
#include "search/statistics.h"

#include <sstream>

namespace {

std::string printed(const EngineConfig& config) {
    std::ostringstream stream;
    config.print(stream);
    return stream.str();
}

template <class Reader> void readLines(const std::string& text, Reader& reader) {
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        reader.readLine(line);
    }
}

void readConfig(const std::string& text) {
    EngineConfig config;
    readLines(text, config);
    EngineConfig copy;
    readLines(printed(config), copy);
    require(printed(copy) == printed(config), "parameters are not read back as written");
}

void readStatistics(const std::string& text) {
    static TestStatistics statistics;
    static TestStatistics copy;
    statistics.reset();
    copy.reset();
    readLines(text, statistics);
    const int run = statistics.getRunPointer();
    if (run < 0) {
        return;
    }
    statistics.sumStatistics();
    std::ostringstream stream;
    statistics.printStatistics(run, stream);
    readLines(stream.str(), copy);
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
