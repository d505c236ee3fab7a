#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestol {

/// A place in a drawing, in pixels from its upper left corner.
struct SvgPoint {
  double x = 0.0, y = 0.0;
};

inline SvgPoint operator+(SvgPoint a, SvgPoint b) {
  return {a.x + b.x, a.y + b.y};
}
inline SvgPoint operator-(SvgPoint a, SvgPoint b) {
  return {a.x - b.x, a.y - b.y};
}
inline SvgPoint operator*(SvgPoint a, double s) {
  return {a.x * s, a.y * s};
}
double Length(SvgPoint a);
/// (0, 0) stays what it is.
SvgPoint Unit(SvgPoint a);
/// Turned by a quarter, from x towards -y as it is seen.
inline SvgPoint Across(SvgPoint a) {
  return {a.y, -a.x};
}

/// One drawing as it is composed. `style` is a class of the style sheet in the drawing.
class SvgCanvas {
public:
  SvgCanvas(double width, double height) : width_(width), height_(height) {}

  void Line(SvgPoint a, SvgPoint b, std::string_view style) { Path({a, b}, false, style); }
  void Path(const std::vector<SvgPoint>& points, bool closed, std::string_view style);
  void Circle(SvgPoint centre, double radius, std::string_view style);
  /// With its head at `to`.
  void Arrow(SvgPoint from, SvgPoint to, std::string_view style, double head = 7.0);
  /// A turning arrow, against the clock when `positive`.
  void TurningArrow(SvgPoint centre, double radius, bool positive, std::string_view style);
  void Text(SvgPoint middle, std::string_view text, std::string_view style);
  /// From the left end, on the base line.
  void Heading(SvgPoint left, std::string_view text, std::string_view style);

  /// Writes text near a place, in the direction `away` first, where it covers no other; false
  /// when there is no room.
  bool Label(SvgPoint at, SvgPoint away, std::string_view text, std::string_view style,
             double gap = 6.0);
  /// Keeps labels out of a square.
  void Take(SvgPoint middle, double half);

  double Width() const { return width_; }
  double Height() const { return height_; }

  /// The whole file. `title` is what a screen reader says.
  std::string File(std::string_view title) const;

private:
  struct Box {
    double x, y, width, height;
  };
  bool IsFree(const Box& box) const;

  double width_, height_;
  std::string body_, texts_;  ///< words lie above all lines
  std::vector<Box> taken_;
};

/// A number with four significant digits, without trailing zeros.
std::string ShortNumber(double value);

}  // namespace kestol
