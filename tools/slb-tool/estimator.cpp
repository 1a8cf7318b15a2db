#include "estimator.h"

#include <CLI/CLI.hpp>

namespace slb {

const char* EstimatorName(Estimator estimator) {
  return estimator == Estimator::Power ? "power" : "linear";
}

CLI::Option* AddModelOption(CLI::App* command, Estimator& estimator) {
  return command
      ->add_option_function<std::string>(
          "--model",
          [&estimator](const std::string& name) {
            estimator = name == "power" ? Estimator::Power : Estimator::Linear;
          },
          "Settings between and beyond the listed rows: linear (the default) or power "
          "(cut speed as a power law of thickness)")
      ->check(CLI::IsMember({"linear", "power"}))
      ->type_name("linear|power");
}

Sparlane::InterpolationResult EstimateSettings(const Sparlane::Database& db, Estimator estimator,
                                               const std::string& material, float thickness_mm,
                                               const std::string& machine_model) {
  return estimator == Estimator::Power ? db.Estimate(material, thickness_mm, machine_model)
                                       : db.Interpolate(material, thickness_mm, machine_model);
}

}  // namespace slb
