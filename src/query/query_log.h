// The one-line query log on standard error and the detail texts it carries.
#ifndef SPARLANE_QUERY_QUERY_LOG_H_
#define SPARLANE_QUERY_QUERY_LOG_H_

#include <string>

namespace Sparlane {

// "[Sparlane] <operation>: <detail> (<us> µs)" in one formatted write, so
// concurrent lines stay whole.
void LogQuery(const char* operation, const std::string& detail, double elapsed_us);

// The detail texts.  Only built when logging is on: nobody can see them
// otherwise.
std::string FindExactDetail(const std::string& material, float thickness,
                            const std::string& machine_model, bool found);
std::string FindOptimalDetail(const std::string& material, float thickness, const float* speed);
std::string InterpolateDetail(const std::string& material, float thickness,
                              const std::string& machine_model, float confidence,
                              bool extrapolated);

}  // namespace Sparlane

#endif  // SPARLANE_QUERY_QUERY_LOG_H_
