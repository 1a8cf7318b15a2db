// Writes small valid parameter files (raw, LZ4, Reserved, empty) into a
// directory as fuzz seeds, each behind the harness's mode byte.
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "sparlane/sparlane.h"

namespace {

bool Copy(const std::string& from, const std::string& to, unsigned char mode) {
  std::ifstream in(from, std::ios::binary);
  std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  std::ofstream out(to, std::ios::binary | std::ios::trunc);
  out.put(static_cast<char>(mode));
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return in.good() || in.eof() ? out.good() : false;
}

// Through the public calls only; every record passes the record check.
bool Fill(Sparlane::Database& db, int records) {
  using Sparlane::ErrorCode;
  db.Create();
  bool ok = db.AddMachine("Acme", "Cutter 1", "") == ErrorCode::Success &&
            db.AddMachine("Borealis", "Cutter 2", "") == ErrorCode::Success;
  for (const char* material : {"Mild Steel", "Stainless", "Aluminium"}) {
    ok = ok && db.AddMaterial(material) == ErrorCode::Success;
  }
  for (int i = 0; i < records; ++i) {
    Sparlane::CuttingParameter p{};
    p.vendor_id = static_cast<std::uint16_t>(1 + i % 2);
    p.machine_model_id = static_cast<std::uint16_t>(1 + i % 2);
    p.material_id = static_cast<std::uint16_t>(1 + i % 3);
    p.aux_id = static_cast<std::uint16_t>(i);
    p.thickness_mm = 1.0f + static_cast<float>(i % 20);
    p.cut_speed_mm_min = 3000.0f - 50.0f * static_cast<float>(i % 20);
    p.cut_height_mm = 1.5f;
    p.pierce_height_mm = 3.0f;
    p.transfer_height_mm = 3.5f;
    p.arc_voltage_v = 120.0f;
    p.pierce_time_s = 0.5f;
    p.kerf_width_mm = 1.2f;
    p.current_amps = 45;
    p.flags = static_cast<std::uint32_t>(i) << 8;
    ok = ok && db.AddParameter(p) == ErrorCode::Success;
  }
  return ok;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s <corpus-dir>\n", argv[0]);
    return 2;
  }
  const std::string dir = argv[1];
  struct Seed {
    const char* name;
    int records;
    Sparlane::CompressionType compression;
  };
  const Seed seeds[] = {
      {"raw", 5, Sparlane::CompressionType::None},
      {"lz4", 70, Sparlane::CompressionType::LZ4},
      {"reserved", 0, Sparlane::CompressionType::Reserved},
      {"empty", 0, Sparlane::CompressionType::None},
  };
  for (const Seed& seed : seeds) {
    Sparlane::Database db;
    if (!Fill(db, seed.records)) {
      std::fprintf(stderr, "cannot fill seed %s: %s\n", seed.name, db.GetLastError().c_str());
      return 1;
    }
    const std::string file = dir + "/" + seed.name + ".bin";
    if (db.SaveToBinary(file, seed.compression) != Sparlane::ErrorCode::Success) {
      std::fprintf(stderr, "cannot write %s: %s\n", file.c_str(), db.GetLastError().c_str());
      return 1;
    }
    for (unsigned char mode : {0, 3}) {
      const std::string seed_path = dir + "/" + seed.name + "-mode" + std::to_string(mode);
      if (!Copy(file, seed_path, mode)) return 1;
    }
    std::remove(file.c_str());
  }
  return 0;
}
