// RFC 4180 reading: quoted fields may hold commas, doubled quotes and line
// breaks; records end at LF or CRLF outside quotes.
#ifndef SLB_TOOL_CSV_READER_H_
#define SLB_TOOL_CSV_READER_H_

#include <cstddef>
#include <string>
#include <vector>

namespace slb {

class CsvReader {
 public:
  explicit CsvReader(std::string text) : text_(std::move(text)) {}

  // Reads the next record into fields.  False at the end of the text or on a
  // malformed record (then error() says why).  line() is the 1-based line on
  // which the record just read starts.
  bool Next(std::vector<std::string>& fields);

  std::size_t line() const { return record_line_; }
  const std::string& error() const { return error_; }

 private:
  bool ReadQuoted(std::string& field);

  std::string text_;
  std::size_t pos_ = 0;
  std::size_t current_line_ = 1;
  std::size_t record_line_ = 0;
  std::string error_;
};

}  // namespace slb

#endif  // SLB_TOOL_CSV_READER_H_
