#include "csv_reader.h"

#include <cstring>

namespace slb {
namespace {

constexpr std::size_t kBlockBytes = 1 << 16;
constexpr std::size_t kByteOrderMarkBytes = 3;  // EF BB BF

}  // namespace

CsvReader::CsvReader(std::istream& in) : in_(in), buffer_(kBlockBytes) {
  if (Peek(0) == 0xEF && Peek(1) == 0xBB && Peek(2) == 0xBF) Skip(kByteOrderMarkBytes);
}

// Keeps at least wanted bytes ahead of pos_ when the stream has them.
bool CsvReader::Fill(std::size_t wanted) {
  if (end_ - pos_ >= wanted) return true;
  std::memmove(buffer_.data(), buffer_.data() + pos_, end_ - pos_);
  end_ -= pos_;
  pos_ = 0;
  while (end_ < wanted && in_) {
    in_.read(buffer_.data() + end_, static_cast<std::streamsize>(buffer_.size() - end_));
    end_ += static_cast<std::size_t>(in_.gcount());
  }
  if (in_.bad()) read_failed_ = true;
  return end_ >= wanted;
}

int CsvReader::Peek(std::size_t ahead) {
  if (!Fill(ahead + 1)) return kEnd;
  return static_cast<unsigned char>(buffer_[pos_ + ahead]);
}

bool CsvReader::AtRecordEnd() {
  const int c = Peek();
  return c == kEnd || c == '\n' || (c == '\r' && Peek(1) == '\n');
}

bool CsvReader::ReadQuoted(std::string& field) {
  Skip(1);  // opening quote
  for (int c = Peek(); c != kEnd; c = Peek()) {
    Skip(1);
    if (c == '"') {
      if (Peek() == '"') {
        field += '"';
        Skip(1);
        continue;
      }
      return true;
    }
    if (c == '\n') ++current_line_;
    field += static_cast<char>(c);
  }
  error_ = "unterminated quoted field";
  return false;
}

bool CsvReader::Next(std::vector<std::string>& fields) {
  fields.clear();
  error_.clear();
  if (Peek() == kEnd) return false;
  record_line_ = current_line_;
  std::string field;
  while (true) {
    if (Peek() == '"' && field.empty()) {
      if (!ReadQuoted(field)) return false;
      // After the closing quote only a separator or the record end may follow.
      if (Peek() != ',' && !AtRecordEnd()) {
        error_ = "text after a closing quote";
        return false;
      }
    }
    const int c = Peek();
    if (c == kEnd) {
      fields.push_back(std::move(field));
      return true;
    }
    if (c == ',') {
      fields.push_back(std::move(field));
      field.clear();
      Skip(1);
    } else if (AtRecordEnd()) {
      Skip(c == '\r' ? 2 : 1);
      ++current_line_;
      fields.push_back(std::move(field));
      return true;
    } else if (c == '"') {
      error_ = "quote inside an unquoted field";
      return false;
    } else {
      field += static_cast<char>(c);
      Skip(1);
    }
  }
}

}  // namespace slb
