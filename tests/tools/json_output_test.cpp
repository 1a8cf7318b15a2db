// --json documents: nlohmann-json's layout, numbers in their shortest exact
// form, always valid JSON.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <sstream>

#include "json_output.h"
#include "number_format.h"

using slb::Json;

TEST(JsonText, LaysOutLikeNlohmannsIndentedDump) {
  const Json doc = {{"name", "Mild \"steel\"\n"},
                    {"count", 229},
                    {"big", std::uint64_t{18446744073709551615u}},
                    {"negative", -5},
                    {"valid", true},
                    {"machine", nullptr},
                    {"empty_list", Json::array()},
                    {"empty_object", Json::object()},
                    {"names", {"a", "b"}},
                    {"nested", {{"inner", {{"x", 1}}}, {"list", {1, {{"y", false}}}}}}};
  EXPECT_EQ(slb::JsonText(doc), doc.dump(2) + "\n");
}

TEST(JsonText, FloatsAreWrittenInTheirShortestExactForm) {
  const Json doc = {{"speed", slb::JsonFloat(1021.19995f)},
                    {"thickness", slb::JsonFloat(8.0f)},
                    {"kerf", slb::JsonFloat(1.5494f)},
                    {"huge", slb::JsonFloat(1e30f)}};
  EXPECT_EQ(slb::JsonText(doc),
            "{\n  \"speed\": 1021.19995,\n  \"thickness\": 8,\n  \"kerf\": 1.5494,\n"
            "  \"huge\": 1e+30\n}\n");
}

TEST(JsonText, EveryFloatReadsBackAsTheSameFloat) {
  std::mt19937 random(9);
  std::vector<float> values;
  Json doc = Json::array();
  while (values.size() < 20000) {
    const std::uint32_t bits = static_cast<std::uint32_t>(random());
    float value;
    std::memcpy(&value, &bits, sizeof value);
    if (!std::isfinite(value)) continue;
    values.push_back(value);
    doc.push_back(slb::JsonFloat(value));
  }
  const std::string text = slb::JsonText(doc);
  const Json parsed = Json::parse(text);
  ASSERT_EQ(parsed.size(), values.size());
  std::istringstream lines(text);
  std::string line;
  std::getline(lines, line);  // "["
  for (std::size_t i = 0; i < values.size(); ++i) {
    const float back = parsed[i].get<float>();
    ASSERT_EQ(std::memcmp(&back, &values[i], sizeof back), 0) << slb::ExactFloat(values[i]);
    std::getline(lines, line);
    ASSERT_EQ(line, "  " + slb::ExactFloat(values[i]) + (i + 1 < values.size() ? "," : ""));
  }
}

TEST(JsonText, NumbersThatAreNoFloatKeepTheirDouble) {
  EXPECT_EQ(slb::JsonText(Json{{"x", 0.1}}), "{\n  \"x\": 0.1\n}\n");
  EXPECT_EQ(slb::JsonText(Json{{"x", 1.0 / 3.0}}), "{\n  \"x\": 0.3333333333333333\n}\n");
}

TEST(JsonFloat, ValueThatIsNotFiniteIsNull) {
  EXPECT_TRUE(slb::JsonFloat(std::nanf("")).is_null());
  EXPECT_TRUE(slb::JsonFloat(std::numeric_limits<float>::infinity()).is_null());
  EXPECT_TRUE(slb::JsonFloat(-std::numeric_limits<float>::infinity()).is_null());
  EXPECT_EQ(slb::JsonText(Json{{"x", std::nan("")}}), "{\n  \"x\": null\n}\n");
}

TEST(JsonText, BytesThatAreNotUtf8BecomeReplacementCharacters) {
  const Json doc = {{"name\xff", "Steel \xC3 3\x01"}};
  const std::string text = slb::JsonText(doc);
  EXPECT_EQ(text, "{\n  \"name\xEF\xBF\xBD\": \"Steel \xEF\xBF\xBD 3\\u0001\"\n}\n");
  EXPECT_TRUE(Json::accept(text));
}
