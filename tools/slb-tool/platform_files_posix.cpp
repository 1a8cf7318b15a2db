// POSIX: mkdtemp makes the private directory (mode 0700), rename(2)
// replaces the target atomically, and a signal handler cleans up staging.
#include <signal.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>
#include <vector>

#include "platform_files.h"

namespace slb {
namespace platform {
namespace {

// Paths the interrupt handler removes; fixed buffers, since the handler may
// only use async-signal-safe calls.
constexpr std::size_t kGuardedPathBytes = 4200;
char g_staging_dir[kGuardedPathBytes];
char g_staging_file[kGuardedPathBytes];
char g_staging_tmp[kGuardedPathBytes];
volatile sig_atomic_t g_guarding = 0;
// SIGXFSZ: a write past the file size limit ends the program like an interrupt.
const int kCleanupSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGXFSZ};

void RemoveStaging(int signal_number) {
  if (g_guarding) {
    unlink(g_staging_tmp);
    unlink(g_staging_file);
    rmdir(g_staging_dir);
  }
  // End the way the signal would have ended the program.
  struct sigaction original {};
  original.sa_handler = SIG_DFL;
  sigemptyset(&original.sa_mask);
  sigaction(signal_number, &original, nullptr);
  raise(signal_number);
}

bool CopyPath(char* to, const std::string& from) {
  if (from.size() + 1 > kGuardedPathBytes) return false;
  std::memcpy(to, from.c_str(), from.size() + 1);
  return true;
}

std::string ErrnoText() { return std::generic_category().message(errno); }

}  // namespace

std::string MakePrivateDirectory(const std::string& prefix, std::string& error) {
  std::vector<char> name(prefix.begin(), prefix.end());
  const char kUnique[] = "XXXXXX";
  name.insert(name.end(), kUnique, kUnique + sizeof kUnique);  // with its NUL
  if (mkdtemp(name.data()) == nullptr) {
    error = ErrnoText();
    return std::string();
  }
  return std::string(name.data());
}

bool RenameOver(const std::string& from, const std::string& to, std::string& error) {
  if (std::rename(from.c_str(), to.c_str()) == 0) return true;
  error = ErrnoText();
  return false;
}

void GuardStaging(const std::string& directory, const std::string& file) {
  g_guarding = 0;
  if (!CopyPath(g_staging_dir, directory) || !CopyPath(g_staging_file, file) ||
      !CopyPath(g_staging_tmp, file + ".tmp")) {
    return;  // too long to guard; the normal clean-up still runs
  }
  struct sigaction action {};
  action.sa_handler = RemoveStaging;
  sigemptyset(&action.sa_mask);
  for (int s : kCleanupSignals) {
    struct sigaction current {};
    // A signal the caller chose to ignore stays ignored.
    if (sigaction(s, nullptr, &current) == 0 && current.sa_handler != SIG_IGN) {
      sigaction(s, &action, nullptr);
    }
  }
  g_guarding = 1;
}

void ReleaseStaging() { g_guarding = 0; }

}  // namespace platform
}  // namespace slb
