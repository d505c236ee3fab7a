#include "programs/common/VtuArray.h"

#include <array>

namespace kestol {

namespace {

constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr int kPerLine = 12;  ///< ascii values

/// Three bytes as four digits.
char* PutGroup(char* to, const unsigned char* b) {
  const unsigned group = unsigned{b[0]} << 16 | unsigned{b[1]} << 8 | b[2];
  *to++ = kDigits[group >> 18];
  *to++ = kDigits[group >> 12 & 63];
  *to++ = kDigits[group >> 6 & 63];
  *to++ = kDigits[group & 63];
  return to;
}

}  // namespace

void VtuValues::AddHeader(std::uint64_t bytes) {
  if (encoding_ == VtuEncoding::Base64)
    AddBase64(reinterpret_cast<const unsigned char*>(&bytes), sizeof bytes);
  if (encoding_ == VtuEncoding::Raw) output_.Write(&bytes, sizeof bytes);
}

template <class T>
void VtuValues::AddText(std::span<const T> values) {
  bytes_ += values.size_bytes();
  if (encoding_ == VtuEncoding::Base64)
    return AddBase64(reinterpret_cast<const unsigned char*>(values.data()), values.size_bytes());
  for (const T value : values) {
    if constexpr (std::is_same_v<T, double>) {
      output_ << value;
    } else {
      output_ << int{value};
    }
    onLine_ = (onLine_ + 1) % kPerLine;
    output_ << (onLine_ == 0 ? '\n' : ' ');
  }
}

template void VtuValues::AddText(std::span<const double>);
template void VtuValues::AddText(std::span<const std::int32_t>);
template void VtuValues::AddText(std::span<const std::uint8_t>);

void VtuValues::AddBase64(const unsigned char* bytes, std::size_t size) {
  const unsigned char* const end = bytes + size;
  while (pendingCount_ != 0 && bytes != end) {
    pending_[pendingCount_++] = *bytes++;
    if (pendingCount_ < 3) continue;
    output_.Advance(PutGroup(output_.Room(4), pending_));
    pendingCount_ = 0;
  }
  for (; end - bytes >= 3; bytes += 3) output_.Advance(PutGroup(output_.Room(4), bytes));
  while (bytes != end) pending_[pendingCount_++] = *bytes++;
}

void VtuValues::Finish() {
  if (encoding_ == VtuEncoding::Raw) return;
  if (encoding_ == VtuEncoding::Base64 && pendingCount_ > 0) {
    for (int i = pendingCount_; i < 3; ++i) pending_[i] = 0;
    char group[4];
    PutGroup(group, pending_);
    for (int i = pendingCount_ + 1; i < 4; ++i) group[i] = '=';
    output_.Write(group, 4);
    pendingCount_ = 0;
  }
  output_ << '\n';
}

std::uint64_t VtuArray::Bytes() const {
  constexpr std::array<std::uint64_t, 3> kSizes = {8, 4, 1};  // in the order of VtuType
  return kSizes[static_cast<std::size_t>(type)] * static_cast<std::uint64_t>(tuples) *
         static_cast<std::uint64_t>(components);
}

}  // namespace kestol
