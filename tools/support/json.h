// The JSON that programs print. Each object begins with "schema", a number that grows with every
// change that a reader could stumble over.
#pragma once

#include <nlohmann/json.hpp>
#include <ostream>

// Keeps the keys in the order in which they were added.
using Json = nlohmann::ordered_json;

// Prints an object in lines. Bytes that are not UTF-8 become replacement characters.
inline void printJson(const Json& json, std::ostream& stream) {
    stream << json.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}
