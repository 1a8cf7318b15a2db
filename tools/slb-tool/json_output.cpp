#include "json_output.h"

#include <cmath>

#include "number_format.h"

namespace slb {
namespace {

constexpr int kIndent = 2;

std::string Scalar(const Json& value) {
  if (value.is_number_float()) {
    const double number = value.get<double>();
    if (!std::isfinite(number)) return "null";
    const float as_float = static_cast<float>(number);
    return static_cast<double>(as_float) == number ? ExactFloat(as_float) : ExactDouble(number);
  }
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

void Write(const Json& value, int depth, std::string& out) {
  if (!value.is_structured()) {
    out += Scalar(value);
    return;
  }
  const bool object = value.is_object();
  out += object ? '{' : '[';
  if (value.empty()) {
    out += object ? '}' : ']';
    return;
  }
  const std::string inner(static_cast<std::size_t>((depth + 1) * kIndent), ' ');
  bool first = true;
  for (auto it = value.begin(); it != value.end(); ++it) {
    out += first ? "\n" : ",\n";
    first = false;
    out += inner;
    if (object) out += Scalar(Json(it.key())) + ": ";
    Write(it.value(), depth + 1, out);
  }
  out += '\n' + std::string(static_cast<std::size_t>(depth * kIndent), ' ');
  out += object ? '}' : ']';
}

}  // namespace

Json JsonFloat(float value) {
  if (!std::isfinite(value)) return Json(nullptr);
  return Json(static_cast<double>(value));
}

std::string JsonText(const Json& document) {
  std::string text;
  Write(document, 0, text);
  return text + "\n";
}

}  // namespace slb
