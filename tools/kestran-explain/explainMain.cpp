#include "kestran-explain/explain.h"

int main(int argc, char** argv) {
    return explainMain(argc, argv);
}
