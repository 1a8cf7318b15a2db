// Helpers for the Windows-only tests: wide paths, a throwaway directory,
// raw file access through the Win32 calls themselves, and a small saved
// parameter file to load.
#ifndef SPARLANE_TESTS_WINDOWS_WINDOWS_TEST_SUPPORT_H_
#define SPARLANE_TESTS_WINDOWS_WINDOWS_TEST_SUPPORT_H_

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "sparlane/sparlane.h"

namespace sparlane_windows_test {

using Sparlane::CompressionType;
using Sparlane::CuttingParameter;
using Sparlane::Database;
using Sparlane::ErrorCode;

// UTF-16 form of a UTF-8 (or, with CP_ACP, an ANSI) string.
inline std::wstring Widen(const std::string& text, UINT code_page = CP_UTF8) {
  if (text.empty()) return std::wstring();
  const int length = MultiByteToWideChar(code_page, 0, text.data(),
                                         static_cast<int>(text.size()), nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(code_page, 0, text.data(), static_cast<int>(text.size()), &wide[0],
                      length);
  return wide;
}

inline std::string Narrow(const std::wstring& wide) {
  if (wide.empty()) return std::string();
  const int length = WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()),
                                         nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(length), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), &text[0], length,
                      nullptr, nullptr);
  return text;
}

inline bool Exists(const std::wstring& path) {
  return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

// Whole-file bytes through CreateFileW (no text-mode translation anywhere).
inline std::vector<std::uint8_t> ReadAll(const std::wstring& path) {
  std::vector<std::uint8_t> bytes;
  HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return bytes;
  char chunk[4096];
  DWORD got = 0;
  while (ReadFile(file, chunk, sizeof chunk, &got, nullptr) && got > 0) {
    bytes.insert(bytes.end(), chunk, chunk + got);
  }
  CloseHandle(file);
  return bytes;
}

inline bool WriteAll(const std::wstring& path, const std::vector<std::uint8_t>& bytes) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  const bool ok = bytes.empty() ||
                  (WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written,
                             nullptr) &&
                   written == bytes.size());
  CloseHandle(file);
  return ok;
}

inline DWORD HandleCount() {
  DWORD count = 0;
  GetProcessHandleCount(GetCurrentProcess(), &count);
  return count;
}

// A fresh, uniquely named directory under the temporary folder, removed with
// everything in it when the object goes.
class TempDir {
 public:
  TempDir() {
    wchar_t base[MAX_PATH + 1];
    const DWORD length = GetTempPathW(MAX_PATH + 1, base);
    static unsigned serial = 0;
    for (unsigned attempt = 0; attempt < 1000; ++attempt) {
      path_ = std::wstring(base, length) + L"sparlane-win-" +
              std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++serial);
      if (CreateDirectoryW(path_.c_str(), nullptr)) return;
    }
    ADD_FAILURE() << "cannot create a temporary directory";
  }
  ~TempDir() { RemoveTree(path_); }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::wstring& wide() const { return path_; }
  std::wstring Wide(const std::string& utf8_name) const { return path_ + L"\\" + Widen(utf8_name); }
  // UTF-8 path of an entry, as the library takes it.
  std::string Utf8(const std::string& utf8_name) const { return Narrow(path_) + "\\" + utf8_name; }

 private:
  static void RemoveTree(const std::wstring& dir) {
    WIN32_FIND_DATAW entry;
    HANDLE find = FindFirstFileW((dir + L"\\*").c_str(), &entry);
    if (find != INVALID_HANDLE_VALUE) {
      do {
        const std::wstring name = entry.cFileName;
        if (name == L"." || name == L"..") continue;
        const std::wstring full = dir + L"\\" + name;
        if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
          RemoveTree(full);
        } else {
          SetFileAttributesW(full.c_str(), FILE_ATTRIBUTE_NORMAL);
          DeleteFileW(full.c_str());
        }
      } while (FindNextFileW(find, &entry));
      FindClose(find);
    }
    RemoveDirectoryW(dir.c_str());
  }

  std::wstring path_;
};

inline CuttingParameter SampleRecord(float thickness) {
  CuttingParameter p{};
  p.vendor_id = 1;
  p.machine_model_id = 1;
  p.material_id = 1;
  p.thickness_mm = thickness;
  p.cut_speed_mm_min = 2540.5f;
  p.cut_height_mm = 1.5f;
  p.pierce_height_mm = 3.8f;
  p.transfer_height_mm = 3.8f;
  p.arc_voltage_v = 128.0f;
  p.pierce_time_s = 0.4f;
  p.kerf_width_mm = 1.6f;
  p.current_amps = 45;
  return p;
}

// A created database with one vendor, machine and material and the given
// records (vendor, machine and material ids 1).
inline void FillSample(Database& db, const std::vector<CuttingParameter>& records) {
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  ASSERT_EQ(db.AddMachine("Air plasma", "AIR-45A", ""), ErrorCode::Success);
  ASSERT_EQ(db.AddMaterial("Mild steel"), ErrorCode::Success);
  for (const CuttingParameter& p : records) ASSERT_EQ(db.AddParameter(p), ErrorCode::Success);
}

// A valid parameter file with two records, as the library writes it, at an
// ASCII path.
inline void SaveSampleFile(const std::string& path) {
  Database db;
  FillSample(db, {SampleRecord(3.0f), SampleRecord(6.0f)});
  ASSERT_EQ(db.SaveToBinary(path, CompressionType::None), ErrorCode::Success) << db.GetLastError();
}

}  // namespace sparlane_windows_test

#endif  // SPARLANE_TESTS_WINDOWS_WINDOWS_TEST_SUPPORT_H_
