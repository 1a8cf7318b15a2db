// Small text helpers shared by the importers.
#ifndef SLB_TOOL_TEXT_FIELDS_H_
#define SLB_TOOL_TEXT_FIELDS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace slb {

std::string_view Trim(std::string_view text);

// ASCII lower case; other bytes (UTF-8 included) are kept.
std::string Lower(std::string_view text);

// Why a text is not read as a number.
enum class NumberProblem { kNone, kNotANumber, kOutOfRange };

// "is not a number" or "is out of range".
const char* NumberProblemText(NumberProblem problem);

// A whole field as a number in the C locale ("1", "-2.5", "+2.4e-17",
// "nan").  Surrounding blanks are allowed; anything else is not.  A value
// too large or too small for the type is out of range, never a number of
// another size.  On failure, *problem (when given) says which.
std::optional<double> ParseNumber(std::string_view text, NumberProblem* problem = nullptr);
std::optional<float> ParseFloat(std::string_view text, NumberProblem* problem = nullptr);
std::optional<std::uint64_t> ParseUnsigned(std::string_view text, std::uint64_t max);

// The text with control bytes shown as "\xNN", for quoting input in
// messages without sending a terminal control sequences.
std::string Printable(std::string_view text);

// Reads a whole text file into lines: a UTF-8 byte order mark at the start
// is dropped, lines end at LF, and a CR before the LF is dropped.  False
// when the file cannot be read.
bool ReadTextLines(const std::string& path, std::vector<std::string>& lines);

}  // namespace slb

#endif  // SLB_TOOL_TEXT_FIELDS_H_
