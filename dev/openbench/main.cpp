// kestran-modern without a command line library: `NAME bench [DEPTH]`, or the protocol.

#include "uci/modernEngine.h"

#include <string>

int main(int argc, char** argv) {
    std::string line;
    for (int i = 1; i < argc; ++i) {
        line.append(i > 1 ? " " : "").append(argv[i]);
    }
    runModernEngine(line);
    return 0;
}
