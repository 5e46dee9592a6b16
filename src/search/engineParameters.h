// The tunable values of the engine.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>

// Created at process start, shared by reference, and unchanged while the engine runs.
class EngineConfig {
public:
    static constexpr int DEFAULT_HASH_TABLE_SIZE = 8388608; // table entries
    static constexpr int DEFAULT_TREE_MAX_DEPTH = 3;        // plies
    static constexpr int QUI_DEFAULT_MAX_DEPTH = 15;        // plies
    static constexpr int DEFAULT_DELTA_WINDOW = 2000;       // thousandths of a pawn
    static constexpr int HASH_MIN = 0;                      // mebibytes
    static constexpr int HASH_MAX = 512;                    // mebibytes

    // The settings of the playing engine; also logs them.
    static std::unique_ptr<EngineConfig> getProdConfig();

    // Sends the text of print() to the log as one message.
    void log() const;
    // Writes the values as five lines of text, each understood by readLine().
    void print(std::ostream& stream) const;
    // Reads one line of print(). A line with no known key changes nothing.
    void readLine(const std::string& line);

    // Depth in plies of a search that is given neither time nor depth.
    int treeMaxDepth = DEFAULT_TREE_MAX_DEPTH;
    // Maximum plies of quiescence below the tree; 0 switches quiescence off.
    int quiscenceMaxDepth = QUI_DEFAULT_MAX_DEPTH;
    // Margin of delta pruning in quiescence, in thousandths of a pawn.
    int quiscenceDeltaWindow = DEFAULT_DELTA_WINDOW;
    // Whether the tree search reads and writes the transposition table.
    bool useTable = true;
    // Whether the quiescence search tries to stand pat at its entry.
    bool _new_feature_quiscence_optimization = true;
    // Initial number of entries of the transposition table, 0 for none.
    int hashTableSize = DEFAULT_HASH_TABLE_SIZE;
};
