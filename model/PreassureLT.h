#pragma once

#include <memory>
#include <string_view>

#include "algebra/ReaVecT.h"

namespace kestol {

class Units;

/// Kinds of distributed loads.
enum LoadKind { LocalPressure = 0, GlobalPressure = 1, GlobalProjected = 2, FaceLoad = 3 };

/// One distributed load of one element. Loads of an element form a chain in input order.
class PreassureLT {
public:
  explicit PreassureLT(int loadKind) : kind(loadKind) {}
  virtual ~PreassureLT() = default;

  /// Reads the numbers and keys of a load line behind the element number. `elemType` is an
  /// ElemType, `problemType` a ProblemType.
  virtual void ReadYourLoad(int elemNumber, int problemType, std::string_view text,
                            const Units& units, int elemType);

  static constexpr int kNoFace = -1;

  int kind;            ///< LoadKind
  int face = kNoFace;  ///< face (solids) or edge (shells) from 0
  ReaVecT values;      ///< (q1, q2, q3), in space (q1, q2, q3, m, 0, 0); result units
  std::unique_ptr<PreassureLT> next;  ///< the next load of the same element
};

}  // namespace kestol
