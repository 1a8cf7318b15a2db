// RFC 4180 reading: quoted fields may hold commas, doubled quotes and line
// breaks; records end at LF or CRLF outside quotes.  The text is read from
// a stream in blocks, so a file of any size takes little memory; a UTF-8
// byte order mark at its start is skipped.
#ifndef SLB_TOOL_CSV_READER_H_
#define SLB_TOOL_CSV_READER_H_

#include <cstddef>
#include <istream>
#include <string>
#include <vector>

namespace slb {

class CsvReader {
 public:
  explicit CsvReader(std::istream& in);

  // Reads the next record into fields.  False at the end of the text or on a
  // malformed record (then error() says why).  line() is the 1-based line on
  // which the record just read starts.
  bool Next(std::vector<std::string>& fields);

  std::size_t line() const { return record_line_; }
  const std::string& error() const { return error_; }
  // True when the stream failed for another reason than its end.
  bool read_failed() const { return read_failed_; }

 private:
  static constexpr int kEnd = -1;

  // The byte at offset ahead of the read position, or kEnd.
  int Peek(std::size_t ahead = 0);
  void Skip(std::size_t count) { pos_ += count; }
  bool Fill(std::size_t wanted);
  bool ReadQuoted(std::string& field);
  bool AtRecordEnd();

  std::istream& in_;
  std::vector<char> buffer_;
  std::size_t pos_ = 0;
  std::size_t end_ = 0;
  bool read_failed_ = false;
  std::size_t current_line_ = 1;
  std::size_t record_line_ = 0;
  std::string error_;
};

}  // namespace slb

#endif  // SLB_TOOL_CSV_READER_H_
