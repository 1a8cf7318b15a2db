#include "safe_output.h"

#include <filesystem>
#include <system_error>

#include "platform_files.h"

namespace slb {
namespace {

namespace fs = std::filesystem;

const char* KindOf(fs::file_type type) {
  switch (type) {
    case fs::file_type::directory: return "a directory";
    case fs::file_type::fifo: return "a FIFO";
    case fs::file_type::character: return "a character device";
    case fs::file_type::block: return "a block device";
    case fs::file_type::socket: return "a socket";
    default: break;
  }
  return "not a regular file";
}

// Gives the staged file the target's permission bits, then renames it over
// the target, which is checked again: it may have changed meanwhile.
std::string Install(const std::string& staging, const std::string& target) {
  std::string problem = TargetProblem(target);
  if (!problem.empty()) return problem;
  std::error_code ec;
  const fs::path staged = fs::u8path(staging);
  if (!fs::is_regular_file(fs::symlink_status(staged, ec))) {
    return "cannot write " + target + ": the new content was not written";
  }
  const fs::file_status old = fs::symlink_status(fs::u8path(target), ec);
  if (fs::is_regular_file(old)) {
    fs::permissions(staged, old.permissions(), fs::perm_options::replace, ec);
    if (ec) return "cannot write " + target + ": cannot keep its permissions: " + ec.message();
  }
  std::string error;
  if (!platform::RenameOver(staging, target, error)) {
    return "cannot write " + target + ": " + error;
  }
  return std::string();
}

}  // namespace

std::string TargetProblem(const std::string& target) {
  std::error_code ec;
  const fs::path path = fs::u8path(target);
  const fs::file_status status = fs::symlink_status(path, ec);
  switch (status.type()) {
    case fs::file_type::not_found:
      return std::string();
    case fs::file_type::regular: {
      const auto links = fs::hard_link_count(path, ec);
      if (!ec && links > 1) {
        return target + " has " + std::to_string(links) +
               " hard links; replacing it would separate them, so it is left alone";
      }
      return std::string();
    }
    case fs::file_type::symlink:
      return target + " is a symbolic link; it is not replaced by a file (name the file it "
                      "points to, or remove the link)";
    case fs::file_type::none:
    case fs::file_type::unknown:
      return "cannot inspect " + target + ": " + ec.message();
    default:
      break;
  }
  return target + " is " + KindOf(status.type()) + "; only a regular file is replaced";
}

std::string ReplaceFile(const std::string& target, const StagedWrite& write) {
  std::string problem = TargetProblem(target);
  if (!problem.empty()) return problem;
  const fs::path target_path = fs::u8path(target);
  const fs::path directory = target_path.parent_path();
  std::string error;
  const std::string staging_dir =
      platform::MakePrivateDirectory((directory / ".slb-tool-").u8string(), error);
  if (staging_dir.empty()) {
    return "cannot write " + target + ": no temporary directory can be made in " +
           directory.u8string() + ": " + error;
  }
  const std::string staging = (fs::u8path(staging_dir) / target_path.filename()).u8string();
  platform::GuardStaging(staging_dir, staging);
  problem = write(staging);
  if (problem.empty()) problem = Install(staging, target);
  std::error_code ec;
  fs::remove_all(fs::u8path(staging_dir), ec);
  platform::ReleaseStaging();
  return problem;
}

bool SameFile(const std::string& a, const std::string& b) {
  std::error_code ec;
  const bool same = fs::equivalent(fs::u8path(a), fs::u8path(b), ec);
  return !ec && same;
}

std::string OutputProblem(const std::string& out_given, const std::string& out_path,
                          const std::string& input) {
  if (SameFile(input, out_path)) {
    return "refusing to write " + out_given + ": it is the input file " + input;
  }
  return TargetProblem(out_path);
}

}  // namespace slb
