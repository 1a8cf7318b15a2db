#include "file_bytes.h"

#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace filetest {

std::string ScratchDir(const std::string& test_name) {
  const std::string dir = "file_scratch/" + test_name;
  const std::string cmd = "rm -rf '" + dir + "' && mkdir -p '" + dir + "'";
  if (std::system(cmd.c_str()) != 0) return "";
  return dir;
}

bool WriteFile(const std::string& path, const Bytes& bytes) {
  // Unlink rather than truncate: replacing by truncation makes ext4 flush
  // the data at close, which slows the byte-by-byte loops a hundredfold.
  std::remove(path.c_str());
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  return out.good();
}

Bytes ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

bool FileExists(const std::string& path) {
  struct stat st {};
  return ::stat(path.c_str(), &st) == 0;
}

}  // namespace filetest
