#include "csv_reader.h"

namespace slb {

bool CsvReader::ReadQuoted(std::string& field) {
  ++pos_;  // opening quote
  while (pos_ < text_.size()) {
    const char c = text_[pos_++];
    if (c == '"') {
      if (pos_ < text_.size() && text_[pos_] == '"') {
        field += '"';
        ++pos_;
        continue;
      }
      return true;
    }
    if (c == '\n') ++current_line_;
    field += c;
  }
  error_ = "unterminated quoted field";
  return false;
}

bool CsvReader::Next(std::vector<std::string>& fields) {
  fields.clear();
  error_.clear();
  if (pos_ >= text_.size()) return false;
  record_line_ = current_line_;
  std::string field;
  while (true) {
    if (pos_ < text_.size() && text_[pos_] == '"' && field.empty()) {
      if (!ReadQuoted(field)) return false;
      // After the closing quote only a separator or the record end may follow.
      if (pos_ < text_.size() && text_[pos_] != ',' && text_[pos_] != '\n' &&
          !(text_[pos_] == '\r' && pos_ + 1 < text_.size() && text_[pos_ + 1] == '\n')) {
        error_ = "text after a closing quote";
        return false;
      }
    }
    if (pos_ >= text_.size()) {
      fields.push_back(std::move(field));
      return true;
    }
    const char c = text_[pos_];
    if (c == ',') {
      fields.push_back(std::move(field));
      field.clear();
      ++pos_;
    } else if (c == '\n' || (c == '\r' && pos_ + 1 < text_.size() && text_[pos_ + 1] == '\n')) {
      pos_ += c == '\r' ? 2 : 1;
      ++current_line_;
      fields.push_back(std::move(field));
      return true;
    } else if (c == '"') {
      error_ = "quote inside an unquoted field";
      return false;
    } else {
      field += c;
      ++pos_;
    }
  }
}

}  // namespace slb
