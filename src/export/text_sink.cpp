#include "export/text_sink.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <locale>

#include "export/float_format.h"

namespace Sparlane {

// Under the classic locale and default flags a stream writes a float as
// printf("%.6g") does in the "C" locale (FormatFloatGeneral6) and an integer
// as std::to_chars does.  Any other locale (decimal comma, digit grouping,
// custom facets) is honoured by formatting through the locale itself.
TextSink::TextSink(std::ostream& out)
    : out_(out),
      classic_numbers_(out.getloc() == std::locale::classic() &&
                       out.flags() == (std::ios_base::dec | std::ios_base::skipws) &&
                       out.precision() == 6 && out.width() == 0) {
  if (!classic_numbers_) {
    localized_.imbue(out.getloc());
    localized_.flags(out.flags());
    localized_.precision(out.precision());
    localized_.fill(out.fill());
  }
}

void TextSink::Put(const char* text, std::size_t length) {
  while (length > 0) {
    if (used_ == kCapacity) Flush();
    std::size_t n = kCapacity - used_;
    if (n > length) n = length;
    std::memcpy(buffer_ + used_, text, n);
    used_ += n;
    text += n;
    length -= n;
  }
}

void TextSink::PutFloat(float value) {
  // Infinities and NaNs are spelled as the platform's stream spells them
  // (glibc writes "-nan" for a negative NaN, the Windows runtime "nan").
  if (!classic_numbers_ || !std::isfinite(value)) return PutThroughLocale(value);
  Reserve(kNumberRoom);
  used_ = static_cast<std::size_t>(FormatFloatGeneral6(value, buffer_ + used_) - buffer_);
}

void TextSink::PutUnsigned(std::uint32_t value) {
  if (!classic_numbers_) return PutThroughLocale(value);
  Reserve(kNumberRoom);
  std::to_chars_result r = std::to_chars(buffer_ + used_, buffer_ + kCapacity, value);
  used_ = static_cast<std::size_t>(r.ptr - buffer_);
}

template <typename T>
void TextSink::PutThroughLocale(T value) {
  localized_.str(std::string());
  localized_ << value;
  Put(localized_.str());
}

void TextSink::Flush() {
  if (used_ == 0) return;
  out_.write(buffer_, static_cast<std::streamsize>(used_));
  used_ = 0;
}

}  // namespace Sparlane
