// Buffered text output onto an export stream, with numbers formatted exactly
// as the stream's own operator<< would format them.
#ifndef SPARLANE_EXPORT_TEXT_SINK_H_
#define SPARLANE_EXPORT_TEXT_SINK_H_

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <sstream>
#include <string>

namespace Sparlane {

class TextSink {
 public:
  // out keeps its own locale and flags; they decide the number format.
  explicit TextSink(std::ostream& out);
  ~TextSink() { Flush(); }
  TextSink(const TextSink&) = delete;
  TextSink& operator=(const TextSink&) = delete;

  void Put(char c) {
    if (used_ == kCapacity) Flush();
    buffer_[used_++] = c;
  }
  void Put(const std::string& text) { Put(text.data(), text.size()); }
  void Put(const char* text, std::size_t length);
  template <std::size_t N>
  void PutLiteral(const char (&text)[N]) {
    Put(text, N - 1);
  }

  // General notation, precision 6: what `out << value` writes.
  void PutFloat(float value);
  // Plain decimal: what `out << value` writes.
  void PutUnsigned(std::uint32_t value);

  // Hands everything buffered to the stream.
  void Flush();

 private:
  // Pieces handed to the stream stay this small so that the stream's own
  // buffer decides when bytes reach the file, exactly as with piecewise
  // insertion (a large single write would go to the file at once).
  static constexpr std::size_t kCapacity = 512;
  // Room that one formatted number needs ("-1.17549e-38", "4294967295").
  static constexpr std::size_t kNumberRoom = 32;

  void Reserve(std::size_t bytes) {
    if (kCapacity - used_ < bytes) Flush();
  }
  // Formats through a string stream sharing out's locale and flags: used when
  // that locale is not the classic one, so its punctuation is honoured.
  template <typename T>
  void PutThroughLocale(T value);

  std::ostream& out_;
  bool classic_numbers_;
  std::ostringstream localized_;
  char buffer_[kCapacity];
  std::size_t used_ = 0;
};

}  // namespace Sparlane

#endif  // SPARLANE_EXPORT_TEXT_SINK_H_
