#include "search/generatorInterface.h"

GeneratorInterface::~GeneratorInterface() = default;
