#include "json_writer.h"

#include <cmath>
#include <cstdio>

#include "number_format.h"

namespace slb {

std::string JsonQuote(const std::string& value) {
  std::string out = "\"";
  for (unsigned char c : value) {
    switch (c) {
      case '"': out += "\\\""; break;
      case '\\': out += "\\\\"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      default:
        if (c < 0x20) {
          char escape[8];
          std::snprintf(escape, sizeof escape, "\\u%04x", c);
          out += escape;
        } else {
          out += static_cast<char>(c);
        }
    }
  }
  return out + "\"";
}

void JsonWriter::BeforeValue() {
  if (after_key_) {
    after_key_ = false;
    return;
  }
  if (levels_.empty()) return;
  if (levels_.back().count++ > 0) text_ += ',';
  text_ += '\n';
  text_.append(levels_.size() * 2, ' ');
}

void JsonWriter::Open(char bracket) {
  BeforeValue();
  text_ += bracket;
  levels_.push_back(Level{});
}

void JsonWriter::Close(char bracket) {
  const bool empty = levels_.back().count == 0;
  levels_.pop_back();
  if (!empty) {
    text_ += '\n';
    text_.append(levels_.size() * 2, ' ');
  }
  text_ += bracket;
}

JsonWriter& JsonWriter::BeginObject() { Open('{'); return *this; }
JsonWriter& JsonWriter::EndObject() { Close('}'); return *this; }
JsonWriter& JsonWriter::BeginArray() { Open('['); return *this; }
JsonWriter& JsonWriter::EndArray() { Close(']'); return *this; }

JsonWriter& JsonWriter::Key(const std::string& key) {
  BeforeValue();
  text_ += JsonQuote(key) + ": ";
  after_key_ = true;
  return *this;
}

JsonWriter& JsonWriter::String(const std::string& value) {
  BeforeValue();
  text_ += JsonQuote(value);
  return *this;
}

JsonWriter& JsonWriter::Float(float value) {
  if (!std::isfinite(value)) return Null();
  BeforeValue();
  text_ += FormatExactFloat(value);
  return *this;
}

JsonWriter& JsonWriter::Double(double value) {
  if (!std::isfinite(value)) return Null();
  BeforeValue();
  char text[64];
  std::snprintf(text, sizeof text, "%.10g", value);
  text_ += text;
  return *this;
}

JsonWriter& JsonWriter::Integer(std::int64_t value) {
  BeforeValue();
  text_ += std::to_string(value);
  return *this;
}

JsonWriter& JsonWriter::Bool(bool value) {
  BeforeValue();
  text_ += value ? "true" : "false";
  return *this;
}

JsonWriter& JsonWriter::Null() {
  BeforeValue();
  text_ += "null";
  return *this;
}

}  // namespace slb
