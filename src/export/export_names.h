// Names as the exports write them: looked up by id without failing, and
// prepared once per table in CSV or JSON form.
#ifndef SPARLANE_EXPORT_EXPORT_NAMES_H_
#define SPARLANE_EXPORT_EXPORT_NAMES_H_

#include <cstdint>
#include <string>
#include <vector>

namespace Sparlane {

// Quoted, with inner quotes doubled, only when the name holds ',' or '"'.
// Line breaks alone do not cause quoting.
std::string CsvField(const std::string& name);

// Backslash escapes for \b \t \n \f \r " and \; every other byte as it is.
std::string JsonEscape(const std::string& name);

// A name table in written form, indexed by record id: entry 0 and every id
// past the end give the empty string.
class WrittenNames {
 public:
  template <typename Transform>
  WrittenNames(const std::vector<std::string>& table, Transform transform) {
    written_.reserve(table.size() + 1);
    written_.emplace_back();
    for (const std::string& name : table) written_.push_back(transform(name));
  }

  const std::string& ForId(std::uint16_t id) const {
    return id < written_.size() ? written_[id] : written_[0];
  }

 private:
  std::vector<std::string> written_;
};

}  // namespace Sparlane

#endif  // SPARLANE_EXPORT_EXPORT_NAMES_H_
