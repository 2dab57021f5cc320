// Removal of repeated points from a host's own buffers, with its own indicator.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/c_api/boundary.h"

namespace orv2_geo::testing_support {
namespace {

constexpr char member[] = "Quita_Puntos_Repetidos_XY_con_indice1";

struct Column {
  std::vector<double> elements;

  static std::int32_t resize(void* context, std::int32_t, std::uint32_t, std::int32_t lower,
                             std::uint32_t count, std::int16_t keep, void** data) {
    auto& column = *static_cast<Column*>(context);
    EXPECT_EQ(lower, 0);
    EXPECT_NE(keep, 0);
    column.elements.resize(count);
    *data = column.elements.data();
    return 0;
  }
  orv2_handle adopted(bool fixed) {
    orv2_handle array = 0;
    orv2_array_adopt(ORV2_DOUBLE_ARRAY, elements.data(), 0,
                     static_cast<std::uint32_t>(elements.size()), fixed ? nullptr : resize, this,
                     &array);
    return array;
  }
};

struct Indicator {
  std::vector<std::string> names;
  std::vector<std::uint16_t> tags;
  double max = 0.0;

  static std::int32_t set(void* context, const char* name, const orv2_value* value) {
    auto& indicator = *static_cast<Indicator*>(context);
    indicator.names.emplace_back(name);
    indicator.tags.push_back(value->tag);
    if (indicator.names.back() == "max") indicator.max = value->as.f64;
    return 0;
  }
};

class RepeatedPoints : public ::testing::Test {
 protected:
  std::int32_t remove(bool fixed) {
    const orv2_host_object callbacks{sizeof(callbacks), Indicator::set, nullptr, nullptr};
    orv2_handle handle = 0;
    orv2_host_object_new(&callbacks, &indicator, &handle);
    const Owned bar(handle), sorts(new_object("Orv2_Geo.cgeo_Ordena"));
    const Owned of_x(x.adopted(fixed)), of_y(y.adopted(false)), of_z(z.adopted(false));
    const Owned of_index(new_array(ORV2_LONG_ARRAY));
    const orv2_value arguments[] = {pointing_at(&points),
                                    tagged(ORV2_DOUBLE_ARRAY, of_x),
                                    tagged(ORV2_DOUBLE_ARRAY, of_y),
                                    tagged(ORV2_DOUBLE_ARRAY, of_z),
                                    tagged(ORV2_LONG_ARRAY, of_index),
                                    tagged(ORV2_OBJECT, bar)};
    const std::int32_t status =
        orv2_call_name(sorts, member, arguments, std::size(arguments), nullptr);
    void* data = nullptr;
    orv2_array_data(of_index, &data);
    const auto* entries = static_cast<const std::int32_t*>(data);
    if (entries != nullptr) index.assign(entries, entries + 5);
    return status;
  }

  Column x{{0, 9, 0, 0, 5}}, y{{0, 0, 0, 0, 0}}, z{{0, 1, 2, 3, 4}};
  std::int32_t points = 4;
  std::vector<std::int32_t> index;
  Indicator indicator;
};

TEST_F(RepeatedPoints, AreRemovedFromTheHostsOwnBuffers) {
  EXPECT_EQ(remove(false), 0);
  EXPECT_EQ(points, 3);
  EXPECT_EQ(x.elements, (std::vector<double>{0, 0, 0, 9}));
  EXPECT_EQ(z.elements, (std::vector<double>{0, 2, 3, 1}));
  EXPECT_EQ(index, (std::vector<std::int32_t>{0, 2, 3, 1, 3}));
  EXPECT_EQ(indicator.names, (std::vector<std::string>{"Visible", "Min", "max", "Visible"}));
  EXPECT_EQ(indicator.tags, (std::vector<std::uint16_t>{ORV2_BOOL, ORV2_I16, ORV2_F64, ORV2_BOOL}));
  EXPECT_EQ(indicator.max, 4.0 / 8001.0);
}

TEST_F(RepeatedPoints, OfABufferThatCannotShrinkAre10AfterTheElementsAndTheNumber) {
  EXPECT_EQ(remove(true), 10);
  EXPECT_EQ(last_failure().source, "Orv2_Geo.cgeo_Ordena");
  EXPECT_EQ(points, 3);
  EXPECT_EQ(x.elements, (std::vector<double>{0, 0, 0, 9, 5}));
  EXPECT_EQ(y.elements.size(), 5U);
}

}  // namespace
}  // namespace orv2_geo::testing_support
