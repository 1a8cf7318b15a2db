#include "file_bytes.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace filetest {

std::string ScratchDir(const std::string& test_name) {
  const std::filesystem::path dir = std::filesystem::path("file_scratch") / test_name;
  std::error_code ec;
  std::filesystem::remove_all(dir, ec);
  std::filesystem::create_directories(dir, ec);
  if (ec) return "";
  return dir.generic_string();
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
  std::error_code ec;
  return std::filesystem::exists(path, ec);
}

}  // namespace filetest
