#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "programs/common/OutputBuffer.h"

namespace kestol {

/// How the numbers of a VTU file are written: raw bytes behind the XML, or inline.
enum class VtuEncoding { Raw, Base64, Ascii };

enum class VtuType { Float64, Int32, UInt8 };

static_assert(std::endian::native == std::endian::little, "bytes go out as they lie in memory");

/// Where the values of one array go, in their order, in the encoding of the file.
class VtuValues {
public:
  VtuValues(OutputBuffer& output, VtuEncoding encoding) : output_(output), encoding_(encoding) {}

  template <class T>
  void Add(T value) {
    if (encoding_ == VtuEncoding::Raw) {
      PutBytes(value);
    } else {
      AddText(std::span<const T>(&value, 1));
    }
  }
  template <class T>
  void Add(std::span<const T> values) {
    if (encoding_ == VtuEncoding::Raw) {
      output_.Write(values.data(), values.size_bytes());
      bytes_ += values.size_bytes();
    } else {
      AddText(values);
    }
  }
  template <class T, std::size_t N>
  void Add(const std::array<T, N>& values) {
    Add(std::span<const T>(values));
  }
  /// `count` zeros of type T.
  template <class T>
  void AddZeros(std::int64_t count) {
    if (encoding_ == VtuEncoding::Raw) {
      const auto size = static_cast<std::size_t>(count) * sizeof(T);
      output_.WriteZeros(size);
      bytes_ += size;
    } else {
      for (; count > 0; --count) Add(T{0});
    }
  }

  /// The count of bytes in front of inline binary data.
  void AddHeader(std::uint64_t bytes);
  /// Behind the last value.
  void Finish();

  /// Bytes of the values added so far, as they lie in memory.
  std::uint64_t Bytes() const { return bytes_; }

private:
  template <class T>
  void PutBytes(T value) {
    char* const to = output_.Room(sizeof(T));
    __builtin_memcpy(to, &value, sizeof(T));
    output_.Advance(to + sizeof(T));
    bytes_ += sizeof(T);
  }
  template <class T>
  void AddText(std::span<const T> values);
  void AddBase64(const unsigned char* bytes, std::size_t size);

  OutputBuffer& output_;
  VtuEncoding encoding_;
  std::uint64_t bytes_ = 0;
  unsigned char pending_[3] = {};  ///< bytes that wait for a whole group of three
  int pendingCount_ = 0;
  int onLine_ = 0;  ///< ascii values on the begun line
};

/// One array of a VTU file: what it is called and who gives its values when they are written.
/// Nothing is held: a model of millions of nodes is written from where its numbers lie.
struct VtuArray {
  using Producer = std::function<void(VtuValues&)>;

  std::string name;
  VtuType type = VtuType::Float64;
  int components = 1;
  std::int64_t tuples = 0;
  Producer produce;  ///< adds tuples x components values of the C++ type that belongs to `type`
  std::vector<std::string> componentNames = {};

  /// Values that lie in memory until the file is written.
  static VtuArray Of(std::string name, int components, std::span<const double> values) {
    return OfType(std::move(name), VtuType::Float64, components, values);
  }
  static VtuArray Of(std::string name, int components, std::span<const std::int32_t> values) {
    return OfType(std::move(name), VtuType::Int32, components, values);
  }
  static VtuArray Of(std::string name, int components, std::span<const std::uint8_t> values) {
    return OfType(std::move(name), VtuType::UInt8, components, values);
  }

  std::uint64_t Bytes() const;

private:
  template <class T>
  static VtuArray OfType(std::string name, VtuType type, int components,
                         std::span<const T> values) {
    return {std::move(name), type, components,
            static_cast<std::int64_t>(values.size()) / components,
            [values](VtuValues& out) { out.Add(values); }};
  }
};

}  // namespace kestol
