// The parameters of the search as text.
#include "search/engineParameters.h"

#include "testing/readLines.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

std::string textOf(const EngineConfig& config) {
    std::ostringstream stream;
    config.print(stream);
    return stream.str();
}

TEST(EngineConfig, ReadsBackWhatItPrints) {
    EXPECT_EQ(textOf(*EngineConfig::getProdConfig()),
              "Using hash table\nHashTableSize: 16777216\nTreeMaxDepth: 3\n"
              "QuiscenceDeltaWindow: 2000\nQuiscenceMaxDepth: 10\n");
    const std::string other = "Not using hash table\nHashTableSize: 11\nTreeMaxDepth: 12\n"
                              "QuiscenceDeltaWindow: -13\nQuiscenceMaxDepth: 14\n";
    EngineConfig config;
    readLines(config, other + "Unknown: 5\n\n hashTableSize: 6\n");
    EXPECT_EQ(textOf(config), other);
    config.readLine("HashTableSize: ");
    EXPECT_EQ(config.hashTableSize, 11);
    config.readLine("HashTableSize: many");
    EXPECT_EQ(config.hashTableSize, 0);
    config.readLine("HashTableSize: 99999999999");
    EXPECT_EQ(config.hashTableSize, 2147483647);
    readLines(config, textOf(EngineConfig()));
    EXPECT_EQ(textOf(config), "Using hash table\nHashTableSize: 8388608\nTreeMaxDepth: 3\n"
                              "QuiscenceDeltaWindow: 2000\nQuiscenceMaxDepth: 15\n");
}

} // namespace
