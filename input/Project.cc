#include "input/Project.h"

Project::Project(int capacity) : materials(capacity), loads(capacity) {
  meshes.reserve(kMaxMeshes);
}
