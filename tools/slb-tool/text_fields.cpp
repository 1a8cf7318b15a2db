#include "text_fields.h"

#include <cerrno>
#include <charconv>
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

std::optional<double> ParseNumber(std::string_view text) {
  text = Trim(text);
  if (text.empty()) return std::nullopt;
  if (text.front() == '+') text.remove_prefix(1);
  double value = 0.0;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  // Out-of-range values come back as an error; the rest must be consumed.
  if (ec != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::optional<float> ParseFloat(std::string_view text) {
  text = Trim(text);
  if (text.empty()) return std::nullopt;
  if (text.front() == '+') text.remove_prefix(1);
  float value = 0.0f;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (ec != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
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

bool ReadFile(const std::string& path, std::string& contents) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  std::ostringstream buffer;
  buffer << in.rdbuf();
  if (in.bad()) return false;
  contents = buffer.str();
  return true;
}

std::vector<std::string> SplitLines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(std::move(line));
    start = end + 1;
  }
  return lines;
}

}  // namespace slb
