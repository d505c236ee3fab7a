#pragma once

#include <functional>

#include "algebra/Vector3.h"
#include "programs/view/PageModel.h"
#include "programs/view/SvgCanvas.h"

namespace kestol {

/// Where a node is drawn.
using PlaceOfNode = std::function<Vector3(const Node&)>;

/// From the model to a drawing: plane problems as they are, others from the front, a little from
/// the right and from above.
class SvgView {
public:
  /// Fits the model, and where its nodes are `moved` to, into a drawing of this width, with a
  /// margin for words and diagrams.
  SvgView(const PageModel& model, double width, double margin, const PlaceOfNode& moved = nullptr);

  double Width() const { return width_; }
  double Height() const { return height_; }
  double ModelSize() const { return size_; }

  SvgPoint At(const Vector3& x) const;
  /// A direction of the model, for one unit of its length.
  SvgPoint Direction(const Vector3& d) const;
  /// Greater towards the eye.
  double Depth(const Vector3& x) const { return Dot(x, eye_); }
  double Pixels() const { return scale_; }
  const Vector3& Eye() const { return eye_; }

private:
  Vector3 right_, up_, eye_;
  double scale_ = 1.0, size_ = 1.0, width_, height_ = 0.0;
  SvgPoint origin_;
};

}  // namespace kestol
