#include "analysis/MaterialOf.h"

#include "input/Project.h"
#include "main/ErrorChannel.h"

namespace kestol {

const Material& MaterialOf(const Project& project, const Elem& elem) {
  const Material* const material = elem.GetMaterial(project.materials);
  if (material == nullptr) Fatal("error: Material in element: ", elem.number, " doesn't exist\n");
  return *material;
}

}  // namespace kestol
