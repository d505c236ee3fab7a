#include "output/NumberText.h"

#include <array>
#include <bit>
#include <charconv>
#include <cstring>

namespace kestol {

// How a double becomes P decimal digits.
//
// A positive double is x = m 2^(e-63) with 2^63 <= m < 2^64; k = floor(log10 x). The wanted digits
// are those of v = x 10^n with n = P-1-k, 10^(P-1) <= v < 10^P, rounded to an integer, ties to
// even as printf does. Powers of ten are kept as 64 leading bits, rounded down:
//
//     g 2^(b-63) <= 10^n < (g+1) 2^(b-63),   b = floor(log2 10^n)
//
// The 128-bit product m g is formed exactly, so that m 10^n lies in [m g, m g + 2^64) in its
// units: in units of its upper half, in [h + l, h + l + 1) with h the upper half and 0 <= l < 1 the
// lower one. Below the point h has w = 62 - e - b bits, at least 38 of them. The rounding of v can
// be told from h alone unless the fraction of h is the half, or the half less one unit: once in
// 2^37 random numbers, and at true ties, std::to_chars with its exact arithmetic has the word.
// For 0 <= n <= 27 the power is exact (5^27 < 2^63) and l decides these cases, too.
//
// k comes out one too small or too large only where v is within a few units of the last place of h
// from a power of ten. Both values of k round to the same digits there.

namespace {

__extension__ using Wide = unsigned __int128;

constexpr int kLowestPower = -324, kHighestPower = 330;
constexpr int kHighestExactPower = 27;

/// Upper 64 bits of 10^n. The powers are walked with 128 bits: 330 steps lose less than 2^-118.
struct PowersOfTen {
  std::array<std::uint64_t, kHighestPower - kLowestPower + 1> bits{};

  constexpr PowersOfTen() {
    Wide power = Wide{1} << 127;
    for (int n = 0; n <= kHighestPower; ++n) {
      (*this)[n] = static_cast<std::uint64_t>(power >> 64);
      power = TimesTen(power);
    }
    power = Wide{1} << 127;
    for (int n = -1; n >= kLowestPower; --n) {
      power = OverTen(power);
      (*this)[n] = static_cast<std::uint64_t>(power >> 64);
    }
  }

  constexpr std::uint64_t& operator[](int n) { return bits[n - kLowestPower]; }
  constexpr std::uint64_t operator[](int n) const { return bits[n - kLowestPower]; }

private:
  // 10/16 or, where that loses the leading bit, 10/8 of p.
  static constexpr Wide TimesTen(Wide p) {
    const Wide upper = (p >> 64) * 10;
    const Wide lower = (p & ~std::uint64_t{0}) * 10;
    const Wide sum = upper + (lower >> 64);  // p 10 = sum 2^64 + the rest of lower
    const int shift = (sum >> 67) != 0 ? 4 : 3;
    return (sum << (64 - shift)) | ((lower & ~std::uint64_t{0}) >> shift);
  }

  // 8/10 or, where that leaves room for it, 16/10 of p.
  static constexpr Wide OverTen(Wide p) {
    const int shift = (p >> 64) >= 0xA000000000000000 ? 3 : 4;
    Wide remainder = p >> (128 - shift);
    Wide quotient = 0;
    for (int part = 3; part >= 0; --part) {
      const Wide digit = ((p << shift) >> (32 * part)) & 0xFFFFFFFF;
      const Wide current = (remainder << 32) | digit;
      quotient = (quotient << 32) | (current / 10);
      remainder = current % 10;
    }
    return quotient;
  }
};
constexpr PowersOfTen kPowers;

/// The three digits of 0..999 and how many of them are left without the zeros at the end.
struct Triple {
  char digits[3];
  char length;
};
struct Triples {
  std::array<Triple, 1000> of{};

  constexpr Triples() {
    for (int i = 0; i < 1000; ++i) {
      const int length = i % 10 != 0 ? 3 : i % 100 != 0 ? 2 : i != 0 ? 1 : 0;
      of[i] = {
          {Digit(i / 100), Digit(i / 10 % 10), Digit(i % 10)},
          static_cast<char>(length)
      };
    }
  }

private:
  static constexpr char Digit(int d) { return static_cast<char>('0' + d); }
};
constexpr Triples kTriples;

constexpr int Log10OfPowerOf2(int e) {
  return static_cast<int>((e * std::int64_t{1292913986}) >> 32);  // log10(2) 2^32
}
constexpr int Log2OfPowerOf10(int n) {
  return static_cast<int>((n * std::int64_t{14267572527}) >> 32);  // log2(10) 2^32
}

constexpr std::uint64_t kSignBit = std::uint64_t{1} << 63;
constexpr std::uint64_t kMantissaMask = (std::uint64_t{1} << 52) - 1;
constexpr int kInfiniteExponent = 0x7FF;

constexpr std::uint32_t PowerOf10(int digits) {
  std::uint32_t power = 1;
  while (digits-- > 0) power *= 10;
  return power;
}

/// `digits` 10^(exponent - (P-1)) with P digits; no digits where the exact arithmetic must decide.
struct Decimal {
  std::uint32_t digits;
  int exponent;
};

template <int P>
inline Decimal ToDecimal(std::uint64_t bits) {
  const int biased = static_cast<int>(bits >> 52) & kInfiniteExponent;
  std::uint64_t m = bits & kMantissaMask;
  int e;
  if (biased != 0) {
    m = (m << 11) | kSignBit;
    e = biased - 1023;
  } else {
    const int zeros = std::countl_zero(m);
    m <<= zeros;
    e = -1011 - zeros;
  }

  int k = Log10OfPowerOf2(e);  // of 2^e; x itself may reach the next power of ten
  const bool sameBinade = Log2OfPowerOf10(k + 1) == e;
  k += static_cast<int>(sameBinade & (m >= kPowers[k + 1]));

  const int n = P - 1 - k;
  const Wide product = Wide{m} * kPowers[n];
  const auto h = static_cast<std::uint64_t>(product >> 64);
  const auto l = static_cast<std::uint64_t>(product);
  const int w = 62 - e - Log2OfPowerOf10(n);
  const std::uint64_t half = std::uint64_t{1} << (w - 1);
  const std::uint64_t fraction = h & (2 * half - 1);
  auto digits = static_cast<std::uint32_t>(h >> w);

  bool up = fraction >= half;
  if (fraction - (half - 1) <= 1) [[unlikely]] {
    if (n < 0 || n > kHighestExactPower) return {0, k};
    up = fraction == half && (l != 0 || digits % 2 == 1);
  }
  digits += static_cast<std::uint32_t>(up);
  if (digits == PowerOf10(P)) return {PowerOf10(P - 1), k + 1};
  return {digits, k};
}

inline char* Append(char* to, const char* text, int length) {
  std::memcpy(to, text, static_cast<std::size_t>(length));
  return to + length;
}

/// Sign and two or three digits behind the "e".
inline char* WriteExponent(char* to, int exponent) {
  *to++ = 'e';
  *to++ = exponent < 0 ? '-' : '+';
  const int magnitude = exponent < 0 ? -exponent : exponent;
  const char* const digits = kTriples.of[magnitude].digits;
  return magnitude < 100 ? Append(to, digits + 1, 2) : Append(to, digits, 3);
}

/// Six digits, of which the first `length` are left without the zeros at the end. Copies have fixed
/// lengths, which is faster; what is copied beyond the number is overwritten by what comes next.
struct SixDigits {
  char digits[12];
  int length;

  explicit SixDigits(std::uint32_t value) {
    const Triple& upper = kTriples.of[value / 1000];
    const Triple& lower = kTriples.of[value % 1000];
    std::memcpy(digits, &upper, 4);
    std::memcpy(digits + 3, &lower, 4);
    std::memset(digits + 7, 0, 5);
    length = lower.length != 0 ? 3 + lower.length : upper.length;
  }
};

inline char* WriteFixed(char* to, const SixDigits& six, int exponent) {
  if (exponent < 0) {
    constexpr char kZeros[] = {'0', '.', '0', '0', '0'};
    std::memcpy(to, kZeros, sizeof kZeros);
    to += 1 - exponent;  // "0." and -exponent - 1 zeros
    std::memcpy(to, six.digits, 6);
    return to + six.length;
  }
  const int whole = exponent + 1;
  std::memcpy(to, six.digits, 6);
  if (six.length <= whole) return to + whole;
  to[whole] = '.';
  std::memcpy(to + whole + 1, six.digits + whole, 5);
  return to + six.length + 1;
}

inline char* WriteScientific(char* to, const SixDigits& six, int exponent) {
  to[0] = six.digits[0];
  to[1] = '.';
  std::memcpy(to + 2, six.digits + 1, 5);
  return WriteExponent(to + (six.length > 1 ? six.length + 1 : 1), exponent);
}

inline char* WriteNotFinite(char* to, std::uint64_t bits) {
  return Append(to, (bits & kMantissaMask) != 0 ? "nan" : "inf", 3);
}

inline char* WriteSmallInteger(char* to, std::uint32_t value) {
  const SixDigits six(value);
  const int first =
      (value < 10) + (value < 100) + (value < 1000) + (value < 10000) + (value < 100000);
  std::memcpy(to, six.digits + first, 6);
  return to + 6 - first;
}

}  // namespace

char* WriteDefault(char* to, double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  *to = '-';
  to += bits >> 63;
  const double magnitude = std::bit_cast<double>(bits & ~kSignBit);
  if (magnitude == 0.0) {
    *to = '0';
    return to + 1;
  }
  if (magnitude < 1e6) {
    const auto whole = static_cast<std::uint32_t>(magnitude);
    if (whole == magnitude) return WriteSmallInteger(to, whole);
  } else if ((bits & ~kSignBit) >> 52 == kInfiniteExponent) {
    return WriteNotFinite(to, bits);
  }

  const Decimal decimal = ToDecimal<6>(bits);
  if (decimal.digits == 0) [[unlikely]]
    return std::to_chars(to, to + kNumberLength - 1, magnitude, std::chars_format::general, 6).ptr;
  const SixDigits six(decimal.digits);
  return -4 <= decimal.exponent && decimal.exponent < 6
             ? WriteFixed(to, six, decimal.exponent)
             : WriteScientific(to, six, decimal.exponent);
}

char* WriteVectorForm(char* to, double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const bool negative = bits >> 63 != 0;
  if ((bits & ~kSignBit) == 0)
    return Append(to, negative ? "  -0.000000e+00" : "   0.000000e+00", 15);
  if ((bits & ~kSignBit) >> 52 == kInfiniteExponent) {
    std::memset(to, ' ', 12);
    to[11] = negative ? '-' : ' ';
    return WriteNotFinite(to + 12, bits);
  }

  const Decimal decimal = ToDecimal<7>(bits);
  const int exponent = decimal.exponent;
  const bool wide = exponent >= 100 || exponent <= -100;
  // A sign, or the blank that fills a field of thirteen; none where three digits of exponent do.
  std::memset(to, ' ', 3);
  to[2] = negative ? '-' : ' ';
  to += wide && !negative ? 2 : 3;
  if (decimal.digits == 0) [[unlikely]] {
    const double magnitude = std::bit_cast<double>(bits & ~kSignBit);
    return std::to_chars(to, to + kNumberLength - 3, magnitude, std::chars_format::scientific, 6)
        .ptr;
  }
  const std::uint32_t rest = decimal.digits % 1000000;
  to[0] = static_cast<char>('0' + decimal.digits / 1000000);
  to[1] = '.';
  std::memcpy(to + 2, &kTriples.of[rest / 1000], 4);
  std::memcpy(to + 5, &kTriples.of[rest % 1000], 4);
  return WriteExponent(to + 8, exponent);
}

char* WriteInteger(char* to, std::int64_t value) {
  return std::to_chars(to, to + kNumberLength, value).ptr;
}

}  // namespace kestol
