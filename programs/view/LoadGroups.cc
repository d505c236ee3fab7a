#include "programs/view/LoadGroups.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace kestol {

namespace {

const char* NameOf(int kind) {
  switch (kind) {
    case LocalPressure:
      return "local";
    case GlobalProjected:
      return "projected";
    case FaceLoad:
      return "face";
    default:
      return "global";
  }
}

std::array<double, 4> ValueOf(const PreassureLT& load, bool plane) {
  std::array<double, 4> value{};
  for (int c = 1; c <= std::min(plane ? 2 : 4, load.values.n); ++c) value[c - 1] = load.values(c);
  return value;
}

}  // namespace

std::vector<LoadGroup> LoadGroupsOf(const Project& project, const std::vector<const Elem*>& elems) {
  using Key = std::tuple<int, int, std::array<double, 4>>;
  std::map<Key, Runs> groups;
  for (std::size_t place = 0; place < elems.size(); ++place)
    for (const PreassureLT* load = project.loads.Get(elems[place]->number); load != nullptr;
         load = load->next.get())
      groups[{load->kind, load->face, ValueOf(*load, project.problemType == Plane)}].Add(
          static_cast<std::int64_t>(place));

  std::vector<LoadGroup> list;
  list.reserve(groups.size());
  for (const auto& [key, runs] : groups)
    list.push_back({NameOf(std::get<0>(key)), std::get<1>(key), std::get<2>(key), runs});
  return list;
}

std::array<double, 6> SixComponents(const ReaVecT& values, const Project& project) {
  std::array<double, 6> six{};
  const bool plane = project.problemType == Plane;
  for (int d = 0; d < std::min(project.dofsPerNode, values.n); ++d)
    six[plane && d == 2 ? 5 : d] = values(d + 1);
  return six;
}

}  // namespace kestol
