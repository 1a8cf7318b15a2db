// Reading records straight out of unaligned file bytes.
#ifndef SPARLANE_FILE_RECORD_BYTES_ITERATOR_H_
#define SPARLANE_FILE_RECORD_BYTES_ITERATOR_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "sparlane/records.h"

namespace Sparlane {

// Lets vector::assign copy records straight out of unaligned mapped bytes in
// one pass, without value-initialising the array first.
class RecordBytesIterator {
 public:
  using iterator_category = std::random_access_iterator_tag;
  using value_type = CuttingParameter;
  using difference_type = std::ptrdiff_t;
  using pointer = const CuttingParameter*;
  using reference = CuttingParameter;

  explicit RecordBytesIterator(const std::uint8_t* p) : p_(p) {}
  CuttingParameter operator*() const {
    CuttingParameter record;
    std::memcpy(&record, p_, sizeof record);
    return record;
  }
  RecordBytesIterator& operator++() {
    p_ += sizeof(CuttingParameter);
    return *this;
  }
  RecordBytesIterator operator++(int) {
    RecordBytesIterator old = *this;
    ++*this;
    return old;
  }
  RecordBytesIterator& operator+=(difference_type n) {
    p_ += n * static_cast<difference_type>(sizeof(CuttingParameter));
    return *this;
  }
  RecordBytesIterator& operator--() {
    p_ -= sizeof(CuttingParameter);
    return *this;
  }
  RecordBytesIterator operator--(int) {
    RecordBytesIterator old = *this;
    --*this;
    return old;
  }
  RecordBytesIterator& operator-=(difference_type n) { return *this += -n; }
  RecordBytesIterator operator+(difference_type n) const {
    RecordBytesIterator it = *this;
    return it += n;
  }
  RecordBytesIterator operator-(difference_type n) const {
    RecordBytesIterator it = *this;
    return it -= n;
  }
  CuttingParameter operator[](difference_type n) const { return *(*this + n); }
  bool operator<(const RecordBytesIterator& o) const { return p_ < o.p_; }
  bool operator>(const RecordBytesIterator& o) const { return p_ > o.p_; }
  bool operator<=(const RecordBytesIterator& o) const { return p_ <= o.p_; }
  bool operator>=(const RecordBytesIterator& o) const { return p_ >= o.p_; }
  difference_type operator-(const RecordBytesIterator& o) const {
    return (p_ - o.p_) / static_cast<difference_type>(sizeof(CuttingParameter));
  }
  bool operator==(const RecordBytesIterator& o) const { return p_ == o.p_; }
  bool operator!=(const RecordBytesIterator& o) const { return p_ != o.p_; }

 private:
  const std::uint8_t* p_;
};

}  // namespace Sparlane

#endif  // SPARLANE_FILE_RECORD_BYTES_ITERATOR_H_
