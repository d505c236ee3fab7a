#include "input/NodeSections.h"

#include "input/Project.h"
#include "input/Words.h"

namespace kestol {

Node* FindNode(const Project& project, int nodeNumber) {
  return project.meshes.empty() ? nullptr : project.meshes[0]->nodes->Get(nodeNumber);
}

void ReadEndOfSection(TextInput& input, std::uint64_t sectionOffset) {
  input.BeginRecord(sectionOffset);
  FindWord(input, "end");
  SkipRestOfLine(input);
}

}  // namespace kestol
