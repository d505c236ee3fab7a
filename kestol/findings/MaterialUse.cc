#include "kestol/findings/MaterialUse.h"

#include <algorithm>
#include <map>

#include "kestol/findings/Geometry.h"

namespace kestol {

namespace {

Family FamilyOf(const Project& project, const Mesh& mesh) {
  switch (mesh.elemType) {
    case Linear:
      return project.problemType == Plane ? PlaneBeam : SpaceBeam;
    case Triangle:
      return Shell;
    case Tetrahedra:
      return Solid;
    default:
      return OtherFamily;
  }
}

/// Calls look(mesh, elem) for elements that were read as written, wherever their nodes are.
template <class Look>
void ForEachReadElement(const Inspection& deck, Look look) {
  for (const auto& mesh : deck.project.meshes)
    for (const auto [number, elem] : mesh->elems)
      if (!deck.IsSpoilt(RecordKind::Element, number)) look(*mesh, *elem);
}

/// Solids beside other elements, which is refused: it cannot be told what their materials need.
bool AreMixed(const Project& project) {
  const auto isSolid = [](const auto& mesh) { return mesh->elemType == Tetrahedra; };
  return std::any_of(project.meshes.begin(), project.meshes.end(), isSolid) &&
         !std::all_of(project.meshes.begin(), project.meshes.end(), isSolid);
}

}  // namespace

std::vector<UsedMaterial> UsedMaterials(const Inspection& deck) {
  if (AreMixed(deck.project)) return {};
  std::map<std::pair<RecordKind, int>, UsedMaterial> used;
  ForEachReadElement(deck, [&](const Mesh& mesh, const Elem& elem) {
    const Material* const material = elem.GetMaterial(deck.project.materials);
    if (material == nullptr) return;
    const bool isOwn = elem.material != nullptr;
    const RecordKind kind = isOwn ? RecordKind::Element : RecordKind::Material;
    const int number = isOwn ? elem.number : elem.materialNumber;
    if (deck.IsSpoilt(kind, number)) return;
    UsedMaterial& entry = used[{kind, number}];
    entry.material = material;
    entry.kind = kind;
    entry.number = number;
    entry.familyOf.push_back(FamilyOf(deck.project, mesh));
    entry.families |= Bit(entry.familyOf.back());
    entry.elements.push_back(elem.number);
    if (mesh.elemType != Linear || !IsSound(deck, elem)) return;
    entry.shortest = std::min(entry.shortest, elem.Length());
    entry.longest = std::max(entry.longest, elem.Length());
  });
  std::vector<UsedMaterial> list;
  list.reserve(used.size());
  for (auto& [key, entry] : used) list.push_back(std::move(entry));
  return list;
}

const Written& WrittenOf(const Inspection& deck, const UsedMaterial& used) {
  static const Written kNothing;
  const auto found = deck.written.find({used.kind, used.number});
  return found == deck.written.end() ? kNothing : found->second;
}

/// The last value written for one of the keys; null when there is none.
const Inspection::WrittenValue* FindWritten(const Written& written,
                                            std::span<const std::string_view> keys) {
  const Inspection::WrittenValue* last = nullptr;
  for (const Inspection::WrittenValue& value : written)
    if (std::find(keys.begin(), keys.end(), value.key) != keys.end()) last = &value;
  return last;
}

Place PlaceOf(const Inspection& deck, const UsedMaterial& used) {
  return deck.PlaceOfRecord(used.kind, used.number);
}

std::string NameOf(const UsedMaterial& used) {
  if (used.kind == RecordKind::Element)
    return "the material of element " + std::to_string(used.number);
  return "material " + std::to_string(used.number);
}

std::string UsersText(const UsedMaterial& used) {
  if (used.kind == RecordKind::Element) return "";
  return (used.elements.size() == 1 ? " (element " : " (elements ") + ListText(used.elements, 3) +
         ")";
}

}  // namespace kestol
