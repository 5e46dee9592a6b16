#include "search/engineParameters.h"

#include "base/loggingService.h"
#include "search/parameterMacros.h"

#include <algorithm>
#include <limits>
#include <ostream>
#include <sstream>

namespace {

constexpr const char* USING_HASH_TABLE_STR = "Using hash table";
constexpr const char* NOT_USING_HASH_TABLE_STR = "Not using hash table";
constexpr const char* HASH_TABLE_SIZE_STR = "HashTableSize: ";
constexpr const char* TREE_MAX_DEPTH_STR = "TreeMaxDepth: ";
constexpr const char* QUISCENCE_DELTA_WINDOW_STR = "QuiscenceDeltaWindow: ";
constexpr const char* QUISCENCE_MAX_DEPTH_STR = "QuiscenceMaxDepth: ";

// The settings of the playing engine; the others are the defaults.
constexpr int PROD_HASH_TABLE_SIZE = 16777216;
constexpr int PROD_TREE_MAX_DEPTH = 3;
constexpr int PROD_QUISCENCE_MAX_DEPTH = 10;

// If `line` starts with `key`, stores the number after it, clamped to the range of int, and returns
// true.
bool readInt(const std::string& line, const std::string& key, int& value) {
    long number = value;
    if (!readLong(line, key, number)) {
        return false;
    }
    value = static_cast<int>(
        std::clamp<long>(number, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
    return true;
}

} // namespace

std::unique_ptr<EngineConfig> EngineConfig::getProdConfig() {
    auto config = std::make_unique<EngineConfig>();
    config->hashTableSize = PROD_HASH_TABLE_SIZE;
    config->treeMaxDepth = PROD_TREE_MAX_DEPTH;
    config->quiscenceMaxDepth = PROD_QUISCENCE_MAX_DEPTH;
    config->log();
    return config;
}

void EngineConfig::log() const {
    logger.info([this] {
        std::ostringstream stream;
        print(stream);
        return stream.str();
    });
}

void EngineConfig::print(std::ostream& stream) const {
    stream << (useTable ? USING_HASH_TABLE_STR : NOT_USING_HASH_TABLE_STR) << '\n'
           << HASH_TABLE_SIZE_STR << hashTableSize << '\n'
           << TREE_MAX_DEPTH_STR << treeMaxDepth << '\n'
           << QUISCENCE_DELTA_WINDOW_STR << quiscenceDeltaWindow << '\n'
           << QUISCENCE_MAX_DEPTH_STR << quiscenceMaxDepth << '\n';
}

void EngineConfig::readLine(const std::string& line) {
    if (startsWith(line, USING_HASH_TABLE_STR)) {
        useTable = true;
    } else if (startsWith(line, NOT_USING_HASH_TABLE_STR)) {
        useTable = false;
    } else {
        // Stops at the first key that matches.
        readInt(line, HASH_TABLE_SIZE_STR, hashTableSize) ||
            readInt(line, TREE_MAX_DEPTH_STR, treeMaxDepth) ||
            readInt(line, QUISCENCE_DELTA_WINDOW_STR, quiscenceDeltaWindow) ||
            readInt(line, QUISCENCE_MAX_DEPTH_STR, quiscenceMaxDepth);
    }
}
