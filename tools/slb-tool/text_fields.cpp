#include "text_fields.h"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <fstream>
#include <sstream>

namespace slb {

std::string_view Trim(std::string_view text) {
  const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  return text;
}

std::string Lower(std::string_view text) {
  std::string out(text);
  for (char& c : out) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return out;
}

const char* NumberProblemText(NumberProblem problem) {
  return problem == NumberProblem::kOutOfRange ? "is out of range" : "is not a number";
}

namespace {

template <typename T>
std::optional<T> ParseAs(std::string_view text, NumberProblem* problem) {
  NumberProblem unused;
  NumberProblem& why = problem != nullptr ? *problem : unused;
  why = NumberProblem::kNotANumber;
  text = Trim(text);
  // from_chars reads a leading minus but not a plus; "+-1" stays an error.
  if (text.size() > 1 && text.front() == '+' && text[1] != '-') text.remove_prefix(1);
  if (text.empty()) return std::nullopt;
  T value{};
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (ec == std::errc::invalid_argument || end != text.data() + text.size()) return std::nullopt;
  if (ec == std::errc::result_out_of_range) {
    why = NumberProblem::kOutOfRange;
    return std::nullopt;
  }
  why = NumberProblem::kNone;
  return value;
}

}  // namespace

std::optional<double> ParseNumber(std::string_view text, NumberProblem* problem) {
  return ParseAs<double>(text, problem);
}

std::optional<float> ParseFloat(std::string_view text, NumberProblem* problem) {
  return ParseAs<float>(text, problem);
}

std::optional<std::uint64_t> ParseUnsigned(std::string_view text, std::uint64_t max) {
  text = Trim(text);
  std::uint64_t value = 0;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || ec != std::errc() || end != text.data() + text.size() || value > max) {
    return std::nullopt;
  }
  return value;
}

std::string Printable(std::string_view text) {
  std::string out;
  for (unsigned char c : text) {
    if (c < 0x20 || c == 0x7F) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\x%02x", c);
      out += escape;
    } else {
      out += static_cast<char>(c);
    }
  }
  return out;
}

bool ReadTextLines(const std::string& path, std::vector<std::string>& lines) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  std::ostringstream buffer;
  buffer << in.rdbuf();
  if (in.bad()) return false;
  const std::string text = buffer.str();
  std::size_t start = text.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
  lines.clear();
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(std::move(line));
    start = end + 1;
  }
  return true;
}

}  // namespace slb
