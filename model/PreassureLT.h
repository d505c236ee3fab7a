#pragma once

#include <memory>
#include <string_view>

#include "algebra/ReaVecT.h"
#include "model/Kinds.h"

namespace kestol {

class Units;

/// One distributed load of one element. Loads of an element form a chain in input order.
class PreassureLT {
public:
  explicit PreassureLT(LoadKind loadKind) : kind(loadKind) {}
  virtual ~PreassureLT() = default;

  /// Reads the numbers and keys of a load line behind the element number. `elemType` is an
  /// ElemType.
  virtual void ReadYourLoad(int elemNumber, ProblemType problemType, std::string_view text,
                            const Units& units, int elemType);

  static constexpr int kNoFace = -1;

  LoadKind kind;
  int face = kNoFace;  ///< face (solids) or edge (shells) from 0
  ReaVecT values;      ///< (q1, q2, q3), in space (q1, q2, q3, m, 0, 0); result units
  std::unique_ptr<PreassureLT> next;  ///< the next load of the same element
};

}  // namespace kestol
