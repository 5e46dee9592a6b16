// What the tests of the engine share.
#pragma once

#include "engine/engine.h"
#include "testing/searchSupport.h"

// A timed search of the present game that begins now.
inline SearchResult searchFor(Engine& engine, Milliseconds milliseconds, bool infinite) {
    SearchLimits limits;
    limits.time = {clockMilliseconds(), milliseconds, infinite};
    return engine.search(requestFor(engine.getGame(), limits));
}
