#include "input/HingesReader.h"

#include "input/NodeSections.h"
#include "input/Project.h"
#include "input/RecordList.h"
#include "input/Words.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

void ReadHinge(Project& project, TextInput& input, int nodeNumber) {
  Node* const node = FindNode(project, nodeNumber);
  if (node == nullptr) Fatal("error: Trying to assign rotule to unknown node\n");
  node->isHinge = true;
  project.hasHinges = true;
  if (!SkipRestOfLine(input)) Fatal("Not reading correctly the rotules. Number=", nodeNumber, "\n");
}

}  // namespace

void ReadHinges(Project& project, TextInput& input, SourceMap* map) {
  const RecordList list{input, map, RecordKind::Hinge, input.RecordOffset()};
  ReadRecords(list, [&](int nodeNumber) { ReadHinge(project, input, nodeNumber); });
  TakeEnd(list);
}

}  // namespace kestol
