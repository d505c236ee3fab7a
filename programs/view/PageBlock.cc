#include "programs/view/PageBlock.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <span>

#include "programs/view/Base64.h"

namespace kestol {

namespace {

static_assert(std::endian::native == std::endian::little, "pages are read as little endian");

constexpr double kSteps = 65535.0;

/// Smallest value and step of each component.
struct Limits {
  std::vector<double> low, step;
};

bool IsCoarse(const PageBlock& block, Precision precision) {
  return precision == Precision::Compact && block.mayBeCoarse;
}

Limits LimitsOf(const PageBlock& block) {
  const std::size_t width = block.components;
  constexpr double kHuge = std::numeric_limits<double>::max();
  Limits limits{std::vector<double>(width, kHuge), std::vector<double>(width, 0.0)};
  std::vector<double> high(width, -kHuge);
  for (std::size_t i = 0; i < block.reals.size(); ++i) {
    const double value = block.reals[i];
    if (!std::isfinite(value)) continue;
    double &low = limits.low[i % width], &top = high[i % width];
    low = std::min(low, value);
    top = std::max(top, value);
  }
  for (std::size_t c = 0; c < width; ++c) {
    if (high[c] < limits.low[c]) limits.low[c] = high[c] = 0.0;
    limits.step[c] = (high[c] - limits.low[c]) / kSteps;
  }
  return limits;
}

const char* TypeOf(const PageBlock& block, Precision precision) {
  if (!block.indices.empty()) return "delta";
  if (precision == Precision::Exact) return "f64";
  return block.mayBeCoarse ? "u16" : "f32";
}

template <class T>
void Put(Base64Writer& out, T value) {
  out.Write(&value, sizeof value);
}

void WriteDelta(Base64Writer& out, const std::vector<std::uint32_t>& values) {
  std::int64_t last = 0;
  for (const std::uint32_t value : values) {
    const std::int64_t difference = std::int64_t{value} - last;
    std::uint64_t rest = (static_cast<std::uint64_t>(difference) << 1) ^
                         static_cast<std::uint64_t>(difference >> 63);
    for (; rest > 127; rest >>= 7) Put(out, static_cast<std::uint8_t>(rest | 128));
    Put(out, static_cast<std::uint8_t>(rest));
    last = value;
  }
}

void WriteSteps(Base64Writer& out, const PageBlock& block) {
  const Limits limits = LimitsOf(block);
  const std::size_t width = block.components;
  for (std::size_t i = 0; i < block.reals.size(); ++i) {
    const double low = limits.low[i % width], step = limits.step[i % width];
    const double place = step > 0.0 ? std::round((block.reals[i] - low) / step) : 0.0;
    Put(out, static_cast<std::uint16_t>(std::isfinite(place) ? place : 0.0));
  }
}

}  // namespace

std::string NumberedPrefix(char kind, std::size_t number) {
  std::string prefix(1, kind);
  prefix += std::to_string(number);
  prefix += '.';
  return prefix;
}

void WriteBlockHead(JsonWriter& json, const PageBlock& block, Precision precision) {
  const std::size_t count = block.indices.empty() ? block.reals.size() : block.indices.size();
  json.NewLine().Key(block.name).BeginObject();
  json.Member("type", TypeOf(block, precision)).Member("count", static_cast<std::int64_t>(count));
  if (block.indices.empty() && IsCoarse(block, precision)) {
    const Limits limits = LimitsOf(block);
    json.Member("low", std::span<const double>(limits.low));
    json.Member("step", std::span<const double>(limits.step));
  }
  json.EndObject();
}

void WriteBlock(OutputBuffer& output, const PageBlock& block, Precision precision) {
  output << "<script type=\"application/octet-stream\" id=\"block-" << block.name << "\">";
  {
    Base64Writer out(output);
    if (!block.indices.empty()) {
      WriteDelta(out, block.indices);
    } else if (IsCoarse(block, precision)) {
      WriteSteps(out, block);
    } else if (precision == Precision::Compact) {
      for (const double value : block.reals) Put(out, static_cast<float>(value));
    } else {
      out.Write(block.reals.data(), block.reals.size() * sizeof(double));
    }
  }
  output << "</script>\n";
}

}  // namespace kestol
