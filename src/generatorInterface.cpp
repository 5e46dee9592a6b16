#include "generatorInterface.h"

GeneratorInterface::~GeneratorInterface() = default;
