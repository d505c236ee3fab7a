#pragma once

#include "input/SourceMap.h"
#include "input/TextInput.h"

namespace kestol {

class Mesh;

// The words of a mesh block, found and taken as they were meant: what is wrong is noted in the map.

/// Finds a word of a mesh block. Gives the block up when it cannot be told where it should stand.
void FindMappedMeshWord(TextInput& input, SourceMap& map, MeshWordNumber which);

/// Behind the keyword of the coordinates: takes the dimension that they are written for.
void CorrectDimension(Mesh& mesh, TextInput& input, SourceMap& map);

/// Behind the keyword of the elements: takes the number of nodes that they are written for.
void CorrectNodesPerElement(Mesh& mesh, TextInput& input, SourceMap& map);

/// Nodes of the smallest element of a type.
int FewestNodes(int elemType);

/// The type of which most meshes with so many nodes per element are.
int UsualElemType(int nnode);

}  // namespace kestol
