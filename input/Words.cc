#include "input/Words.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <system_error>

#include "main/ErrorChannel.h"

namespace kestol {

namespace {

// Characters looked at for a number at first; enough for almost every one.
constexpr std::size_t kNumberInSight = 128;

// Behind a number there must be that many characters, or the end of the text, before it is known
// where it ends: "infinit" is the number "inf" until the 'y' is in sight.
constexpr std::size_t kUndecided = 8;

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsPairSign(int c) {
  return c == ':' || c == '=';
}

void DropSpace(std::string_view& text) {
  std::size_t n = 0;
  while (n < text.size() && IsSpace(static_cast<unsigned char>(text[n]))) ++n;
  text.remove_prefix(n);
}

// Takes characters up to the next one for which `ends` holds.
template <class Ends>
std::string_view TakeUntil(std::string_view& text, Ends ends) {
  const auto last = std::find_if(text.begin(), text.end(), ends);
  const std::string_view taken = text.substr(0, static_cast<std::size_t>(last - text.begin()));
  text.remove_prefix(taken.size());
  return taken;
}

// Length of the integer at the very front of `text`, 0 when there is none. One that does not fit
// 32 bits gives none in `value`.
std::size_t ParseInteger(std::string_view text, std::optional<int>& value) {
  const std::size_t sign = !text.empty() && (text[0] == '+' || text[0] == '-') ? 1 : 0;
  if (text.size() <= sign || !IsDigit(text[sign])) return 0;
  const std::size_t plus = text[0] == '+' ? 1 : 0;
  int number = 0;
  const auto [end, status] = std::from_chars(text.data() + plus, text.data() + text.size(), number);
  value = status == std::errc() ? std::optional<int>(number) : std::nullopt;
  return static_cast<std::size_t>(end - text.data());
}

// Length of the number at the very front of `text` as strtod sees it, 0 when there is none.
std::size_t ParseReal(std::string_view text, double& value) {
  const char* const begin = text.data();
  const char* const end = begin + text.size();
  const char* digits = begin;
  if (digits < end && (*digits == '+' || *digits == '-')) ++digits;
  if (digits == end || *digits == '-' || *digits == '+') return 0;

  auto result = std::from_chars(digits, end, value);
  if (end - digits > 2 && digits[0] == '0' && Lower(digits[1]) == 'x') {
    double hexValue = 0.0;
    const auto hex = std::from_chars(digits + 2, end, hexValue, std::chars_format::hex);
    if (hex.ptr != digits + 2 && digits[2] != '-' && Lower(digits[2]) != 'i' &&
        Lower(digits[2]) != 'n') {
      result = hex;
      value = hexValue;
    }
  }
  if (result.ptr == digits) return 0;
  // Too large is infinity, too small what is left of it.
  if (result.ec == std::errc::result_out_of_range)
    value = std::strtod(std::string(digits, result.ptr).c_str(), nullptr);
  if (*begin == '-') value = -value;
  return static_cast<std::size_t>(result.ptr - begin);
}

// Looks at more and more of the text until it is sure where the number at its front ends.
template <class Value>
std::size_t PeekNumber(TextInput& input, std::size_t (*parse)(std::string_view, Value&),
                       Value& value) {
  for (std::size_t wanted = kNumberInSight;; wanted *= 2) {
    const std::string_view text = input.PeekAhead(wanted);
    const std::size_t length = parse(text, value);
    if (length + kUndecided <= text.size() || text.size() < wanted) return length;
  }
}

[[noreturn]] void OutOfRange() {
  Fatal("error: number out of range in input file\n");
}

template <class Matches>
void FindWordThat(TextInput& input, std::string_view word, Matches matches) {
  for (;;) {
    const std::string found = LowerCase(ReadWord(input));
    if (found.empty()) Fatal("can't find word ***", word, "*** in input file\n");
    if (matches(found)) return;
  }
}

}  // namespace

std::string LowerCase(std::string_view word) {
  std::string lower(word);
  std::transform(lower.begin(), lower.end(), lower.begin(), Lower);
  return lower;
}

void SkipSpace(TextInput& input) {
  while (IsSpace(input.Peek())) input.Get();
}

void SkipToRecord(TextInput& input) {
  for (int c = input.Peek(); IsSpace(c) || IsPairSign(c) || c == '#'; c = input.Peek())
    if (c == '#')
      SkipRestOfLine(input);
    else
      input.Get();
}

std::string ReadWord(TextInput& input) {
  SkipSpace(input);
  std::string word(input.PeekWord());
  input.Advance(word.size());
  return word;
}

std::optional<int> ReadInteger(TextInput& input) {
  SkipSpace(input);
  std::optional<int> value;
  const std::size_t length = PeekNumber(input, ParseInteger, value);
  if (length > 0 && !value) OutOfRange();
  input.Advance(length);
  return value;
}

std::optional<double> ReadReal(TextInput& input) {
  SkipSpace(input);
  double value = 0.0;
  const std::size_t length = PeekNumber(input, ParseReal, value);
  if (length == 0) return std::nullopt;
  input.Advance(length);
  return value;
}

std::optional<std::string_view> ReadRestOfLine(TextInput& input) {
  if (input.Peek() == TextInput::kEnd) return std::nullopt;
  std::string_view line = input.PeekLine();
  input.Advance(line.size());
  input.Get();  // the '\n', which is in sight, or nothing: the view stays good
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return line;
}

bool SkipRestOfLine(TextInput& input) {
  return ReadRestOfLine(input).has_value();
}

void FindWord(TextInput& input, std::string_view word) {
  FindWordThat(input, word,
               [word](const std::string& found) { return found.find(word) != std::string::npos; });
}

void FindWordExactly(TextInput& input, std::string_view word) {
  FindWordThat(input, word, [word](const std::string& found) { return found == word; });
}

std::optional<double> TakeReal(std::string_view& text) {
  std::string_view rest = text;
  DropSpace(rest);
  double value = 0.0;
  const std::size_t length = ParseReal(rest, value);
  if (length == 0) return std::nullopt;
  text = rest.substr(length);
  return value;
}

bool TakeReals(std::string_view& text, double* values, int count) {
  for (int i = 0; i < count; ++i) {
    const std::optional<double> value = TakeReal(text);
    if (!value || !std::isfinite(*value)) return false;
    values[i] = *value;
  }
  return true;
}

std::optional<int> TakeDigit(std::string_view& text) {
  std::string_view rest = text;
  DropSpace(rest);
  if (rest.empty() || !IsDigit(rest[0])) return std::nullopt;
  text = rest.substr(1);
  return rest[0] - '0';
}

int IntegerOf(std::string_view text) {
  DropSpace(text);
  const bool negative = !text.empty() && text[0] == '-';
  if (negative || (!text.empty() && text[0] == '+')) text.remove_prefix(1);
  int base = 10;
  if (text.size() > 2 && text[0] == '0' && Lower(text[1]) == 'x') {
    base = 16;
    text.remove_prefix(2);
  } else if (!text.empty() && text[0] == '0') {
    base = 8;
  }
  std::uint64_t magnitude = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), magnitude, base);
  constexpr std::uint64_t kLargest = std::numeric_limits<int>::max();
  if (result.ec == std::errc::result_out_of_range || magnitude > kLargest + (negative ? 1 : 0))
    OutOfRange();
  const auto value = static_cast<std::int64_t>(magnitude);
  return static_cast<int>(negative ? -value : value);
}

std::string_view BehindSigns(std::string_view text) {
  const auto isFirst = [](unsigned char c) { return !IsSpace(c) && !IsPairSign(c); };
  const auto first = std::find_if(text.begin(), text.end(), isFirst);
  return text.substr(static_cast<std::size_t>(first - text.begin()));
}

std::string_view TakeKey(std::string_view& text) {
  const auto delimits = [](unsigned char c) { return IsSpace(c) || IsPairSign(c); };
  text = BehindSigns(text);
  const std::string_view key = TakeUntil(text, delimits);
  if (!text.empty()) text.remove_prefix(1);  // so that "E=2" has the value "2", not "=2"
  return key;
}

std::string_view TakeValue(std::string_view& text) {
  DropSpace(text);
  return TakeUntil(text, [](unsigned char c) { return IsSpace(c); });
}

double RealOf(std::string_view value) {
  return TakeReal(value).value_or(0.0);
}

bool StartsWithAnyCase(std::string_view word, std::string_view prefix) {
  return word.size() >= prefix.size() &&
         std::equal(prefix.begin(), prefix.end(), word.begin(),
                    [](char a, char b) { return Lower(a) == Lower(b); });
}

}  // namespace kestol
