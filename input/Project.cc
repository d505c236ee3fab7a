#include "input/Project.h"

namespace kestol {

Project::Project(int capacity) : materials(capacity), loads(capacity) {
  meshes.reserve(kMaxMeshes);
}

}  // namespace kestol
