#include "programs/view/SvgCanvas.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "programs/common/VtuWriter.h"

namespace kestol {

namespace {

constexpr std::string_view kStyle = R"(
text { font: 12px "DejaVu Sans", Helvetica, Arial, sans-serif; fill: #1b1f26; paint-order: stroke;
  stroke: #fff; stroke-width: 3px; stroke-linejoin: round; }
text.m { text-anchor: middle; dominant-baseline: central; }
.ground { fill: #fff; }
.beam { stroke: #1b1f26; stroke-width: 2.8; fill: none; stroke-linecap: round; }
.moved { stroke: #0b5fb0; stroke-width: 2.6; fill: none; stroke-linecap: round; }
.ghost { stroke: #9aa3af; stroke-width: 1.2; fill: none; }
.face { stroke: #6b7482; stroke-width: 0.6; stroke-linejoin: round; }
.support { stroke: #27618f; stroke-width: 1.4; fill: #fff; }
.supportline { stroke: #27618f; stroke-width: 1.2; fill: none; }
.wall { stroke: #27618f; stroke-width: 2.6; fill: none; }
.solid { fill: #27618f; }
.hinge { stroke: #1b1f26; stroke-width: 1.6; fill: #fff; }
.load { stroke: #b5441a; stroke-width: 1.4; fill: none; }
.loadhead { fill: #b5441a; }
text.loadtext { fill: #b5441a; }
text.supporttext { fill: #27618f; }
text.number { fill: #5b6370; font-size: 11px; }
text.title { font-size: 13px; font-weight: 600; }
.plus { fill: #c94234; fill-opacity: 0.28; stroke: none; }
.minus { fill: #2f6fbc; fill-opacity: 0.28; stroke: none; }
.plusline { stroke: #a8281c; stroke-width: 1.3; fill: none; }
.minusline { stroke: #1d559c; stroke-width: 1.3; fill: none; }
text.plustext { fill: #a8281c; }
text.minustext { fill: #1d559c; }
text.extreme { font-weight: 700; }
.axis { stroke: #5b6370; stroke-width: 1.4; fill: none; }
.axishead { fill: #5b6370; }
)";

/// Tenths of a pixel are enough.
std::string Pixels(double value) {
  std::array<char, 32> text;
  const double rounded = std::round(value * 10.0) / 10.0 + 0.0;
  const auto end = std::to_chars(text.data(), text.data() + text.size(), rounded).ptr;
  return {text.data(), end};
}

std::string PathData(const std::vector<SvgPoint>& points, bool closed) {
  std::string data;
  for (const SvgPoint& p : points) {
    data += data.empty() ? 'M' : 'L';
    data += Pixels(p.x);
    data += ' ';
    data += Pixels(p.y);
  }
  if (closed) data += 'Z';
  return data;
}

/// About as wide as the usual sans serif faces draw it; multi-byte characters count once.
double TextWidth(std::string_view text) {
  const auto starts = std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  });
  return 7.7 * static_cast<double>(starts) + 4.0;
}

}  // namespace

double Length(SvgPoint a) {
  return std::hypot(a.x, a.y);
}

SvgPoint Unit(SvgPoint a) {
  const double length = Length(a);
  return length > 0.0 ? a * (1.0 / length) : a;
}

std::string ShortNumber(double value) {
  if (value == 0.0) return "0";
  std::array<char, 32> text;
  const double size = std::abs(value);
  auto end = text.data() + text.size();
  if (size >= 1e3 && size < 1e6) {
    end = std::to_chars(text.data(), end, std::round(value), std::chars_format::fixed).ptr;
  } else {
    end = std::to_chars(text.data(), end, value, std::chars_format::general, 4).ptr;
  }
  std::string number(text.data(), end);
  if (const auto e = number.find('e'); e != std::string::npos) {
    // "e+06" reads as "e6".
    const bool small = number[e + 1] == '-';
    const auto digit = number.find_first_not_of('0', e + 2);
    number.replace(e + 1, digit - e - 1, small ? "\u2212" : "");
  }
  if (number[0] == '-') number.replace(0, 1, "\u2212");
  return number;
}

void SvgCanvas::Path(const std::vector<SvgPoint>& points, bool closed, std::string_view style) {
  body_ += "<path class=\"";
  body_ += style;
  body_ += "\" d=\"";
  body_ += PathData(points, closed);
  body_ += "\"/>\n";
}

void SvgCanvas::Circle(SvgPoint centre, double radius, std::string_view style) {
  body_ += "<circle class=\"";
  body_ += style;
  body_ += "\" cx=\"" + Pixels(centre.x) + "\" cy=\"" + Pixels(centre.y) + "\" r=\"" +
           Pixels(radius) + "\"/>\n";
}

void SvgCanvas::Arrow(SvgPoint from, SvgPoint to, std::string_view style, double head) {
  const SvgPoint along = to - from;
  if (Length(along) < 1.0) return;
  const SvgPoint dir = Unit(along), side = Across(dir);
  const double h = std::min(head, Length(along));
  Line(from, to - dir * (0.8 * h), style);
  const SvgPoint back = to - dir * h;
  Path({to, back + side * (0.42 * h), back - side * (0.42 * h)}, true, std::string(style) + "head");
}

void SvgCanvas::TurningArrow(SvgPoint centre, double radius, bool positive,
                             std::string_view style) {
  constexpr double kPi = 3.14159265358979323846;
  const double from = positive ? -0.35 * kPi : -0.65 * kPi, turn = positive ? 1.5 : -1.5;
  std::vector<SvgPoint> arc;
  for (int k = 0; k <= 24; ++k) {
    const double angle = from + turn * kPi * k / 24.0;
    arc.push_back(centre + SvgPoint{radius * std::cos(angle), -radius * std::sin(angle)});
  }
  Path(arc, false, style);
  const SvgPoint dir = Unit(arc.back() - arc[arc.size() - 2]), side = Across(dir);
  Path({arc.back() + dir * 6.0, arc.back() + side * 3.5, arc.back() - side * 3.5}, true,
       std::string(style) + "head");
}

void SvgCanvas::Text(SvgPoint middle, std::string_view text, std::string_view style) {
  texts_ += "<text class=\"m ";
  texts_ += style;
  texts_ += "\" x=\"" + Pixels(middle.x) + "\" y=\"" + Pixels(middle.y) + "\">" + XmlText(text) +
            "</text>\n";
}

void SvgCanvas::Heading(SvgPoint left, std::string_view text, std::string_view style) {
  texts_ += "<text class=\"";
  texts_ += style;
  texts_ +=
      "\" x=\"" + Pixels(left.x) + "\" y=\"" + Pixels(left.y) + "\">" + XmlText(text) + "</text>\n";
}

bool SvgCanvas::IsFree(const Box& box) const {
  if (box.x < 0.0 || box.y < 0.0 || box.x + box.width > width_ || box.y + box.height > height_)
    return false;
  return std::none_of(taken_.begin(), taken_.end(), [&](const Box& other) {
    return box.x < other.x + other.width && other.x < box.x + box.width &&
           box.y < other.y + other.height && other.y < box.y + box.height;
  });
}

void SvgCanvas::Take(SvgPoint middle, double half) {
  taken_.push_back({middle.x - half, middle.y - half, 2.0 * half, 2.0 * half});
}

bool SvgCanvas::Label(SvgPoint at, SvgPoint away, std::string_view text, std::string_view style,
                      double gap) {
  const double width = TextWidth(text), height = 15.0;
  const SvgPoint places[] = {
      away,        {-away.x, away.y },
              {away.x,  -away.y},
              away * -1.0,
      {0.0,     -1.0   },
              {0.0,     1.0    },
              {1.0,     0.0    },
              {-1.0,    0.0    }
  };
  for (const double further : {0.0, 12.0, 26.0})
    for (const SvgPoint& place : places) {
      const SvgPoint dir = Unit(place);
      const double far = gap + further;
      const SvgPoint middle =
          at + SvgPoint{dir.x * (far + width / 2.0), dir.y * (far + height / 2.0)};
      const Box box{middle.x - width / 2.0, middle.y - height / 2.0, width, height};
      if (!IsFree(box)) continue;
      taken_.push_back(box);
      Text(middle, text, style);
      return true;
    }
  return false;
}

std::string SvgCanvas::File(std::string_view title) const {
  const std::string width = Pixels(width_), height = Pixels(height_);
  std::string file = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + width + "\" height=\"" +
                     height + "\" viewBox=\"0 0 " + width + " " + height +
                     "\" role=\"img\">\n<title>" + XmlText(title) + "</title>\n<style>";
  file += kStyle;
  file += "</style>\n<rect class=\"ground\" width=\"100%\" height=\"100%\"/>\n";
  return file + body_ + texts_ + "</svg>\n";
}

}  // namespace kestol
