// kestran-perft: counts sequences of legal moves.

#include "kestran-perft/perft.h"

int main(int argc, char** argv) {
    return perftMain(argc, argv);
}
