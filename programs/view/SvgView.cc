#include "programs/view/SvgView.h"

#include <algorithm>
#include <limits>

namespace kestol {

namespace {

constexpr double kTallest = 440.0, kLowest = 60.0;  ///< of the model in the drawing, pixels

}  // namespace

SvgView::SvgView(const PageModel& model, double width, double margin, const PlaceOfNode& moved)
    : width_(width) {
  const bool plane = model.project.problemType == Plane;
  eye_ = plane ? Vector3{0, 0, 1} : Unit(Vector3{0.62, -0.9, 0.55});
  right_ = plane ? Vector3{1, 0, 0} : Unit(Cross({0, 0, 1}, eye_));
  up_ = Cross(eye_, right_);

  constexpr double kHuge = std::numeric_limits<double>::max();
  SvgPoint low{kHuge, kHuge}, high{-kHuge, -kHuge};
  Vector3 first{kHuge, kHuge, kHuge}, last{-kHuge, -kHuge, -kHuge};
  const auto take = [&](const Vector3& x) {
    const SvgPoint p = Direction(x);
    low = {std::min(low.x, p.x), std::min(low.y, p.y)};
    high = {std::max(high.x, p.x), std::max(high.y, p.y)};
  };
  for (const Node* node : model.places.Nodes()) {
    const Vector3 x = PositionOf(*node);
    take(x);
    if (moved) take(moved(*node));
    for (int d = 0; d < 3; ++d) {
      first[d] = std::min(first[d], x[d]);
      last[d] = std::max(last[d], x[d]);
    }
  }
  const double size = Norm(Minus(last, first));
  if (size > 0.0) size_ = size;
  const SvgPoint span = high - low;
  scale_ = std::min((width - 2.0 * margin) / std::max(span.x, 1e-3 * size_),
                    kTallest / std::max(span.y, 1e-3 * size_));
  height_ = std::max(span.y * scale_, kLowest) + 2.0 * margin;
  const SvgPoint middle = (low + high) * (0.5 * scale_);
  origin_ = SvgPoint{width_ / 2.0, height_ / 2.0} - middle;
}

SvgPoint SvgView::Direction(const Vector3& d) const {
  return SvgPoint{Dot(d, right_), -Dot(d, up_)} * scale_;
}

SvgPoint SvgView::At(const Vector3& x) const {
  return origin_ + Direction(x);
}

}  // namespace kestol
