#pragma once

#include <initializer_list>
#include <memory>

#include "algebra/Vector3.h"
#include "input/Project.h"
#include "input/TextInput.h"

/// A project with one mesh of nodes 1, 2, ... and no elements yet.
class SmallProject {
public:
  SmallProject(int problemType, int dofsPerNode, std::initializer_list<Vector3> points) {
    project.problemType = problemType;
    project.dofsPerNode = dofsPerNode;
    project.meshes.push_back(std::make_unique<Mesh>());
    SetType(Linear, 2);
    int number = 0;
    for (const Vector3& point : points) {
      auto node = std::make_unique<Node>();
      node->x = point[0];
      node->y = point[1];
      node->z = point[2];
      node->dim = problemType == Plane ? 2 : 3;
      node->number = ++number;
      project.meshes[0]->nodes->Insert(number, std::move(node));
    }
  }

  void SetType(ElemType type, int nnode) {
    project.meshes.back()->elemType = type;
    project.meshes.back()->nnode = nnode;
  }

  /// A further mesh on the same nodes; elements go into it from now on.
  void AddMesh(ElemType type, int nnode) {
    project.meshes.push_back(std::make_unique<Mesh>(*project.meshes[0]));
    SetType(type, nnode);
  }

  /// An element of the last mesh; node 0 is a null node.
  Elem& AddElem(int number, std::initializer_list<int> nodeNumbers) {
    Mesh* const mesh = project.meshes.back().get();
    auto elem = std::make_unique<Elem>(mesh, static_cast<int>(nodeNumbers.size()));
    elem->number = number;
    int place = 0;
    for (const int nodeNumber : nodeNumbers) elem->nodes[place++] = mesh->nodes->Get(nodeNumber);
    return *mesh->elems.Insert(number, std::move(elem));
  }

  Node& NodeOf(int number) { return *project.meshes[0]->nodes->Get(number); }

  Project project{100};
};
