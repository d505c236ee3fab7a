#include "kestol/combine/Actions.h"

#include <algorithm>

namespace kestol {

namespace {

// clang-format off
constexpr ActionCategory kCategories[] = {
    {"permanent",   true,  {}             },
    {"live-A",      false, {0.7, 0.5, 0.3}},  // dwellings
    {"live-B",      false, {0.7, 0.5, 0.3}},  // offices
    {"live-C",      false, {0.7, 0.7, 0.6}},  // where people gather
    {"live-D",      false, {0.7, 0.7, 0.6}},  // shops
    {"live-E",      false, {1.0, 0.9, 0.8}},  // stores
    {"live-F",      false, {0.7, 0.7, 0.6}},  // traffic, vehicles up to 30 kN
    {"live-G",      false, {0.7, 0.5, 0.3}},  // traffic, vehicles up to 160 kN
    {"live-H",      false, {0.0, 0.0, 0.0}},  // roofs
    {"snow",        false, {0.5, 0.2, 0.0}},  // up to 1000 m above the sea
    {"wind",        false, {0.6, 0.2, 0.0}},
    {"temperature", false, {0.6, 0.5, 0.0}},
};
// clang-format on

}  // namespace

std::span<const ActionCategory> ActionCategories() {
  return kCategories;
}

const ActionCategory* FindCategory(std::string_view name) {
  const auto* const found =
      std::find_if(std::begin(kCategories), std::end(kCategories),
                   [name](const ActionCategory& category) { return category.name == name; });
  return found == std::end(kCategories) ? nullptr : found;
}

}  // namespace kestol
