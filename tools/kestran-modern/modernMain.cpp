// kestran-modern: the engine for current chess programs.

#include "kestran-modern/modern.h"

int main(int argc, char** argv) {
    return modernMain(argc, argv);
}
