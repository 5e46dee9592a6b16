// kestran-perft: counts the sequences of legal moves from a position.

#include "kestran-perft/perft.h"
#include "support/commandLine.h"

int main(int argc, char** argv) {
    return runTool("kestran-perft", PERFT_HELP, argc, argv, runPerft);
}
