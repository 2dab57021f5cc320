#include "survey_report/profile.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <stdexcept>

#include "orv2_geo/frame/run_failure.h"
#include "orv2_geo/orv2_geo.hpp"
#include "survey_report/choice_fault.h"
#include "survey_report/failure_words.h"
#include "survey_report/layout.h"
#include "survey_report/relief.h"
#include "survey_report/rounding.h"
#include "survey_report/words.h"

namespace survey_report {

namespace {

constexpr double on_the_axis = 0.0002;  // of its length
constexpr double fewest_steps = 8.0;

// ---- Points beside the axis

// A survey point seen from the axis.
struct Foot {
  std::size_t point = 0;
  double distance = 0.0;  // along the axis
  double offset = 0.0;    // from it, never negative
};

bool closer(const Foot& a, const Foot& b) { return a.offset < b.offset; }

Place place_at(const Section& axis, double distance) {
  const double part = distance / axis.length;
  return {axis.line.from.x + part * (axis.line.to.x - axis.line.from.x),
          axis.line.from.y + part * (axis.line.to.y - axis.line.from.y)};
}

// The offset of a point beyond an end is its distance from that end.
Foot foot_of(std::size_t i, const SurveyPoint& point, const Section& axis) {
  const double along_x = axis.line.to.x - axis.line.from.x;
  const double along_y = axis.line.to.y - axis.line.from.y;
  const double x = point.x - axis.line.from.x;
  const double y = point.y - axis.line.from.y;
  return {i, (x * along_x + y * along_y) / axis.length,
          orv2_geo::cgeo_Algorismos().Distancia_Punto_Linea(x, y, 0.0, 0.0, along_x, along_y)};
}

// Rounding must not lose the points from which the axis was taken: its ends
// are as wide as the axis itself.
std::vector<Foot> feet_beside(const std::vector<SurveyPoint>& points, const Section& axis,
                              double corridor) {
  const double tolerance = on_the_axis * axis.length;
  std::vector<Foot> feet;
  for (std::size_t i = 0; i < points.size(); ++i) {
    Foot foot = foot_of(i, points[i], axis);
    const double inside = std::clamp(foot.distance, 0.0, axis.length);
    if (foot.offset > corridor || std::abs(foot.distance - inside) > tolerance) continue;
    foot.distance = inside;
    feet.push_back(foot);
  }
  if (feet.size() <= most_terrain_points) return feet;
  std::stable_sort(feet.begin(), feet.end(), closer);
  feet.resize(most_terrain_points);
  return feet;
}

std::optional<double> elevation_of(const Foot& foot, const TriangleIndex& triangles,
                                   const Boundary& boundary, const Section& axis) {
  if (foot.offset <= on_the_axis * axis.length) return triangles.points()[foot.point].z;
  const Place place = place_at(axis, foot.distance);
  if (!contains(boundary, place)) return std::nullopt;
  const std::optional<Triangle> triangle = triangles.around(place);
  if (!triangle) return std::nullopt;
  return elevation_at(place, *triangle, triangles.points());
}

// ---- The library's view of a profile: numbered from 1

struct Terrain {
  std::int32_t count = 0;
  orv2_geo::DoubleArray distances;
  orv2_geo::DoubleArray elevations;
};

Terrain terrain_of(const std::vector<ProfilePoint>& points) {
  Terrain terrain;
  terrain.count = static_cast<std::int32_t>(points.size());
  terrain.distances.size(0, terrain.count);
  terrain.elevations.size(0, terrain.count);
  for (std::int32_t i = 1; i <= terrain.count; ++i) {
    const ProfilePoint& point = points[static_cast<std::size_t>(i - 1)];
    terrain.distances(i) = point.distance;
    terrain.elevations(i) = point.elevation;
  }
  return terrain;
}

// In order, and without repeated points.
void put_in_order(Terrain& terrain) {
  const orv2_geo::cgeo_Terreno library;
  library.Ordena_terreno_y_quita_repetidos(terrain.count, terrain.distances, terrain.elevations);
  if (!library.TF_DistaOrigen_estan_ordenadas(terrain.distances)) {
    throw std::range_error(words::distances_not_in_order.text());
  }
}

bool has_length(const Terrain& terrain) {
  return terrain.count > 1 && terrain.distances(1) < terrain.distances(terrain.count);
}

// The first of the points found that lies there.
std::size_t point_at(double distance, double elevation, const std::vector<ProfilePoint>& found) {
  const auto at = std::find_if(found.begin(), found.end(), [&](const ProfilePoint& point) {
    return point.distance == distance && point.elevation == elevation;
  });
  return (at == found.end() ? found.front() : *at).point;
}

void describe(Profile& profile, const Terrain& terrain, const std::vector<ProfilePoint>& found) {
  for (std::int32_t i = 1; i <= terrain.count; ++i) {
    const double distance = terrain.distances(i);
    const double elevation = terrain.elevations(i);
    profile.terrain.push_back({distance, elevation, point_at(distance, elevation, found)});
    if (i == 1) continue;
    profile.widest_gap =
        std::max(profile.widest_gap, terrain.distances(i) - terrain.distances(i - 1));
  }
  const orv2_geo::cgeo_Terreno library;
  profile.lowest = library.TF_Yminima_del_Terreno(terrain.elevations);
  profile.highest = library.TF_Ymaxima_del_Terreno(terrain.elevations);
}

// ---- Stations

std::vector<double> station_distances(const Range& range, double step) {
  if ((range.max - range.min) / step > most_stations - 2.0) {
    throw ChoiceFault(words::too_many_stations.with({fixed(most_stations, 0)}));
  }
  const double apart = 1e-6 * step;  // a multiple nearer to an end is that end
  std::vector<double> distances = {range.min};
  for (const double distance : multiples(range, step)) {
    if (distance > range.min + apart && distance < range.max - apart) distances.push_back(distance);
  }
  distances.push_back(range.max);
  return distances;
}

std::vector<Station> stations_of(const Terrain& terrain, const Section& axis, double step) {
  const std::vector<double> at =
      station_distances({terrain.distances(1), terrain.distances(terrain.count)}, step);
  const auto count = static_cast<std::int32_t>(at.size());
  orv2_geo::DoubleArray distances(0, count);
  for (std::int32_t i = 1; i <= count; ++i) distances(i) = at[static_cast<std::size_t>(i - 1)];
  orv2_geo::DoubleArray elevations;
  orv2_geo::cgeo_Terreno().TR_Cotas_en_unTerreno_dando_DistOr(terrain.distances, terrain.elevations,
                                                              distances, elevations);
  std::vector<Station> stations;
  for (std::int32_t i = 1; i <= count; ++i) {
    stations.push_back({place_at(axis, distances(i)), distances(i), elevations(i)});
  }
  return stations;
}

// ---- All of it

std::vector<ProfilePoint> points_on(const Section& axis, const TriangleIndex& triangles,
                                    const Boundary& boundary, double corridor) {
  std::vector<ProfilePoint> found;
  for (const Foot& foot : feet_beside(triangles.points(), axis, corridor)) {
    const std::optional<double> elevation = elevation_of(foot, triangles, boundary, axis);
    if (elevation) found.push_back({foot.distance, *elevation, foot.point});
  }
  return found;
}

void work_out(Profile& profile, const std::vector<ProfilePoint>& found, const Section& axis,
              const std::optional<double>& step) {
  if (found.empty()) return;
  Terrain terrain = terrain_of(found);
  put_in_order(terrain);
  if (!has_length(terrain)) return;
  describe(profile, terrain, found);
  const double length = terrain.distances(terrain.count) - terrain.distances(1);
  profile.step = step.value_or(default_station_step(length));
  profile.stations = stations_of(terrain, axis, profile.step);
}

Profile without_numbers(double corridor, const std::string& fault) {
  Profile profile;
  profile.corridor = corridor;
  profile.fault = fault;
  return profile;
}

}  // namespace

double default_corridor(const Box& box) { return default_step(box) / 2.0; }

double default_station_step(double length) { return round_down(length / fewest_steps); }

Profile profile_of(const TriangleIndex& triangles, const Boundary& boundary, const Section& axis,
                   double corridor, const std::optional<double>& step) {
  try {
    Profile profile;
    profile.corridor = corridor;
    work_out(profile, points_on(axis, triangles, boundary, corridor), axis, step);
    return profile;
  } catch (const orv2_geo::RunFailure& failure) {
    return without_numbers(corridor, words_of(failure));
  } catch (const std::range_error& fault) {
    return without_numbers(corridor, fault.what());
  }
}

}  // namespace survey_report
