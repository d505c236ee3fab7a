#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "kestol/findings/ElementGroups.h"
#include "kestol/findings/Geometry.h"
#include "kestol/findings/Inspection.h"
#include "kestol/findings/ModelRules.h"

namespace kestol {

// One node that was typed wrongly makes several triangles or tetrahedra flat: they are one finding.
void FindZeroSizes(Inspection& deck) {
  static constexpr std::string_view kMeasures[] = {"", "length", "area", "", "volume"};
  Group beams, flat;
  ForEachSoundElement(deck, deck.project, [&](const Mesh& mesh, const Elem& elem) {
    if (HasNoSize(deck.project, elem)) (mesh.elemType == Linear ? beams : flat).push_back(&elem);
  });
  std::vector<Group> groups = GroupsOf(flat);
  for (const Elem* beam : beams) groups.push_back({beam});
  for (const Group& group : groups) {
    const std::vector<int> numbers = NumbersOf(group);
    deck.Add(deck.PlaceOfRecord(RecordKind::Element, numbers.front()),
             std::string(numbers.size() == 1 ? "element " : "elements ") + ListText(numbers) +
                 (numbers.size() == 1 ? " has no " : " have no ") +
                 std::string(kMeasures[group.front()->mesh->elemType]))
        .elements = numbers;
  }
  for (const SourceMap::Refusal& refusal : deck.map.Refusals())
    if (refusal.cause == SourceMap::Cause::Reader &&
        refusal.message.find("have both nodes equal") != std::string::npos)
      deck.Add({refusal.record.offset, 0}, "element " + std::to_string(refusal.record.number) +
                                               " has no length: both its nodes are the same")
          .elements = {refusal.record.number};
}

// --- shapes -----------------------------------------------------------------------------------

namespace {

constexpr double kLargestAspect = 20.0;
constexpr double kSmallestAngle = 10.0;  // degrees

/// Smallest angle of a triangle in degrees.
double SmallestAngle(const Elem& elem, int i, int j, int k) {
  const auto angleAt = [&](int p, int q, int r) {
    const Sides sides = SidesAt(elem, p, q, r);
    return std::atan2(Norm(Cross(sides.a, sides.b)), Dot(sides.a, sides.b));
  };
  constexpr double kDegrees = 57.29577951308232;
  return kDegrees * std::min({angleAt(i, j, k), angleAt(j, k, i), angleAt(k, i, j)});
}

struct Shape {
  double angle, aspect;
  bool IsBad() const { return angle < kSmallestAngle || aspect > kLargestAspect; }
};

/// The aspect is the longest edge over the smallest height.
Shape ShapeOf(const Elem& elem) {
  const double longest = LongestEdge(elem);
  if (elem.mesh->elemType == Triangle)
    return {SmallestAngle(elem, 0, 1, 2),
            longest * longest / (2.0 * SidesAt(elem, 0, 1, 2).Area())};
  constexpr int kFaces[4][3] = {
      {0, 1, 2},
      {1, 2, 3},
      {2, 3, 0},
      {3, 0, 1}
  };
  double angle = 180.0, largest = 0.0;
  for (const auto& face : kFaces) {
    angle = std::min(angle, SmallestAngle(elem, face[0], face[1], face[2]));
    largest = std::max(largest, SidesAt(elem, face[0], face[1], face[2]).Area());
  }
  return {angle, longest * largest / (3.0 * std::abs(VolumeOf(elem)))};
}

std::string ShapeText(const Elem& elem, const Shape& shape) {
  const std::string text = "element " + std::to_string(elem.number) + " has ";
  if (shape.angle < kSmallestAngle)
    return text + "an angle of " + NumberText(shape.angle) + " degrees";
  return text + "an aspect of " + NumberText(shape.aspect);
}

}  // namespace

// One node that was typed wrongly spoils all elements around it: they are one finding.
void FindBadShapes(Inspection& deck) {
  std::vector<const Elem*> bad;
  ForEachSoundElement(deck, deck.project, [&](const Mesh& mesh, const Elem& elem) {
    const bool hasShape = mesh.elemType == Triangle || mesh.elemType == Tetrahedra;
    if (hasShape && !HasNoSize(deck.project, elem) && ShapeOf(elem).IsBad()) bad.push_back(&elem);
  });
  for (const Group& group : GroupsOf(bad)) {
    const Elem& worst = **std::min_element(group.begin(), group.end(), [](auto* a, auto* b) {
      return ShapeOf(*a).angle < ShapeOf(*b).angle;
    });
    std::string text = ShapeText(worst, ShapeOf(worst));
    if (group.size() > 1)
      text += ", and " + std::to_string(group.size() - 1) +
              (group.size() == 2 ? " beside it is bad too" : " beside it are bad too");
    deck.Add(deck.PlaceOfRecord(RecordKind::Element, worst.number), text).elements =
        NumbersOf(group);
  }
}

}  // namespace kestol
