#include "kestol/findings/RecordFields.h"

namespace kestol {

namespace {

enum CharClass : unsigned char { Other, Digit, PlusMinus, Point, Exponent };

// States of a number: at its beginning, behind its sign, in its whole part, behind a point without
// digits before it, in its fraction, behind the letter of its exponent, its sign, in its digits.
enum State : unsigned char {
  Begin,
  Signed,
  WholePart,
  BarePoint,
  Fraction,
  ExponentLetter,
  ExponentSign,
  ExponentDigits,
  Bad
};

// By state and class.
constexpr State kNext[][5] = {
  // Other  Digit           PlusMinus     Point      Exponent
    {Bad, WholePart,      Signed,       BarePoint, Bad           }, // Begin
    {Bad, WholePart,      Bad,          BarePoint, Bad           }, // Signed
    {Bad, WholePart,      Bad,          Fraction,  ExponentLetter}, // WholePart
    {Bad, Fraction,       Bad,          Bad,       Bad           }, // BarePoint
    {Bad, Fraction,       Bad,          Bad,       ExponentLetter}, // Fraction
    {Bad, ExponentDigits, ExponentSign, Bad,       Bad           }, // ExponentLetter
    {Bad, ExponentDigits, Bad,          Bad,       Bad           }, // ExponentSign
    {Bad, ExponentDigits, Bad,          Bad,       Bad           }, // ExponentDigits
    {Bad, Bad,            Bad,          Bad,       Bad           }, // Bad
};

constexpr CharClass ClassOf(int c) {
  if (c >= '0' && c <= '9') return Digit;
  if (c == '+' || c == '-') return PlusMinus;
  if (c == '.') return Point;
  return c == 'e' || c == 'E' ? Exponent : Other;
}

// The same by byte, so that a byte is one look-up; and which bytes end a word.
struct ByteTables {
  State next[Bad + 1][256] = {};
  bool ends[256] = {};
  constexpr ByteTables() {
    for (int state = 0; state <= Bad; ++state)
      for (int c = 0; c < 256; ++c) next[state][c] = kNext[state][ClassOf(c)];
    for (const char c : {' ', '\t', '\r', '\n'}) ends[static_cast<unsigned char>(c)] = true;
  }
};
constexpr ByteTables kBytes;

bool IsComplete(State state) {
  return state == WholePart || state == Fraction || state == ExponentDigits;
}

}  // namespace

bool IsPlainRecord(std::string_view text, int numbers, int whole, bool mayHaveOne) {
  const auto* here = reinterpret_cast<const unsigned char*>(text.data());
  const unsigned char* const end = here + text.size();
  int complete = 0;
  for (;;) {
    while (here < end && kBytes.ends[*here] && *here != '\n') ++here;
    if (here == end || *here == '\n') break;
    const unsigned char* const word = here;
    State state = Begin;
    for (; here < end && !kBytes.ends[*here]; ++here) state = kBytes.next[state][*here];
    if (!IsComplete(state)) return false;
    const bool mustBeWhole = complete < whole || complete >= numbers;
    if (mustBeWhole && state != WholePart) return false;
    // What is read behind the numbers is octal behind a 0.
    if (complete >= numbers && *word == '0' && here - word > 1) return false;
    ++complete;
  }
  return complete == numbers || (mayHaveOne && complete == numbers + 1);
}

}  // namespace kestol
