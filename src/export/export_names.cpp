#include "export/export_names.h"

namespace Sparlane {

std::string CsvField(const std::string& name) {
  if (name.find_first_of(",\"") == std::string::npos) return name;
  std::string field;
  field.reserve(name.size() + 2);
  field.push_back('"');
  for (char c : name) {
    if (c == '"') field.push_back('"');
    field.push_back(c);
  }
  field.push_back('"');
  return field;
}

std::string JsonEscape(const std::string& name) {
  std::string escaped;
  escaped.reserve(name.size() + 2);
  for (char c : name) {
    switch (c) {
      case '\b': escaped += "\\b"; break;
      case '\t': escaped += "\\t"; break;
      case '\n': escaped += "\\n"; break;
      case '\f': escaped += "\\f"; break;
      case '\r': escaped += "\\r"; break;
      case '"': escaped += "\\\""; break;
      case '\\': escaped += "\\\\"; break;
      default: escaped.push_back(c); break;
    }
  }
  return escaped;
}

}  // namespace Sparlane
