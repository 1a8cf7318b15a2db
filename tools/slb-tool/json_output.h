// --json output: documents built with nlohmann-json, keys kept in the order
// they are added, written with two-space indents like nlohmann's own dump.
#ifndef SLB_TOOL_JSON_OUTPUT_H_
#define SLB_TOOL_JSON_OUTPUT_H_

#include <nlohmann/json.hpp>
#include <string>

namespace slb {

using Json = nlohmann::ordered_json;

// A float of the library as a JSON number holding exactly that float, or
// null when it is not finite (JSON has no NaN or infinity).
Json JsonFloat(float value);

// The document as text with a final line feed.  A number that holds a
// float exactly is written in the shortest form that reads back to that
// float (ExactFloat), any other floating number in the shortest form of its
// double, integers as they are.  Strings are escaped by nlohmann-json, and
// bytes that are not UTF-8 (a name in a hostile file) become U+FFFD, so the
// text is always valid JSON.
std::string JsonText(const Json& document);

}  // namespace slb

#endif  // SLB_TOOL_JSON_OUTPUT_H_
