// The slow-load warning left as the last-error message.
#ifndef SPARLANE_FILE_LOAD_TIMING_H_
#define SPARLANE_FILE_LOAD_TIMING_H_

#include <string>

namespace Sparlane {

constexpr double kLoadTargetMs = 5.0;

// "Warning: Load time exceeded 5ms target (" + printf("%f", ms) + " ms)".
std::string SlowLoadWarning(double elapsed_ms);

}  // namespace Sparlane

#endif  // SPARLANE_FILE_LOAD_TIMING_H_
