// kestran-bench: searches a fixed set of positions and prints the signature of the search.

#include "kestran-bench/bench.h"

int main(int argc, char** argv) {
    return benchMain(argc, argv);
}
