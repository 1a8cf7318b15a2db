// A small pretty-printing JSON writer for --json output.
#ifndef SLB_TOOL_JSON_WRITER_H_
#define SLB_TOOL_JSON_WRITER_H_

#include <cstdint>
#include <string>
#include <vector>

namespace slb {

class JsonWriter {
 public:
  JsonWriter& BeginObject();
  JsonWriter& EndObject();
  JsonWriter& BeginArray();
  JsonWriter& EndArray();
  JsonWriter& Key(const std::string& key);
  JsonWriter& String(const std::string& value);
  JsonWriter& Float(float value);  // non-finite values become null
  JsonWriter& Double(double value);
  JsonWriter& Integer(std::int64_t value);
  JsonWriter& Bool(bool value);
  JsonWriter& Null();

  // The document with a final line feed.
  std::string Text() const { return text_ + "\n"; }

 private:
  void BeforeValue();
  void Open(char bracket);
  void Close(char bracket);

  struct Level {
    std::size_t count = 0;
  };
  std::string text_;
  std::vector<Level> levels_;
  bool after_key_ = false;
};

// The name as a JSON string literal, quotes included.
std::string JsonQuote(const std::string& value);

}  // namespace slb

#endif  // SLB_TOOL_JSON_WRITER_H_
