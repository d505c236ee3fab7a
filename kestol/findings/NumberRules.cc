#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "input/MaterialReader.h"
#include "input/Words.h"
#include "kestol/findings/Inspection.h"
#include "kestol/findings/TextRules.h"

namespace kestol {

namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsWhole(std::string_view word) {
  if (!word.empty() && (word[0] == '+' || word[0] == '-')) word.remove_prefix(1);
  return !word.empty() && std::all_of(word.begin(), word.end(), IsDigit);
}

/// The beginning of a word that is read, and what it is read as.
struct ReadPart {
  std::string_view text;
  double value;
};

ReadPart RealPart(std::string_view word) {
  std::string_view rest = word;
  const std::optional<double> value = TakeReal(rest);
  return {word.substr(0, word.size() - rest.size()), value.value_or(0.0)};
}

ReadPart WholePart(std::string_view word) {
  std::size_t n = !word.empty() && (word[0] == '+' || word[0] == '-') ? 1 : 0;
  while (n < word.size() && IsDigit(word[n])) ++n;
  return {word.substr(0, n), RealPart(word.substr(0, n)).value};
}

/// Numbers in the notations of IntegerOf: octal behind a 0.
ReadPart ReferencePart(std::string_view word) {
  const ReadPart decimal = WholePart(word);
  if (word.size() < 2 || word[0] != '0' || decimal.text.size() < 2) return decimal;
  std::size_t n = 1;
  double value = 0.0;
  for (; n < word.size() && word[n] >= '0' && word[n] <= '7'; ++n)
    value = 8 * value + (word[n] - '0');
  if (n == word.size() && value == decimal.value) return decimal;
  return {word.substr(0, n == word.size() ? 0 : n), value};
}

ReadPart PartOf(const Field& field) {
  switch (field.role) {
    case Role::Whole:
      return WholePart(field.text);
    case Role::Reference:
      return ReferencePart(field.text);
    default:
      return RealPart(field.text);
  }
}

/// Whether the reader looks for a number in the field.
bool IsNumeric(const RecordFields& record, const Field& field) {
  if (field.role == Role::Real || field.role == Role::Whole || field.role == Role::Reference)
    return true;
  if (field.role != Role::Value) return false;
  return HasMaterialKeys(record.record.kind) ? !MaterialKeyPrefix(field.key).empty()
                                             : IsEuler(field.key);
}

/// Whether only what may separate values is left behind the number.
bool OnlySeparates(std::string_view rest) {
  return rest.find_first_not_of(",;") == std::string_view::npos;
}

/// What was probably meant by a number with `rest` behind what is read.
std::string CureOf(std::string_view rest) {
  if (rest.empty()) return "";
  const char c = rest[0], next = rest.size() > 1 ? rest[1] : '\0';
  if (c == ',' && IsDigit(next)) return ": a decimal comma?";
  if ((c == 'd' || c == 'D') && (IsDigit(next) || next == '-' || next == '+'))
    return ": write e for the exponent";
  const bool onlyLooksLikeDigits =
      rest.find_first_not_of("0123456789OolI.eE+-") == std::string_view::npos;
  if (onlyLooksLikeDigits && (c == 'O' || c == 'o')) return ": a letter O in place of a zero?";
  if (onlyLooksLikeDigits && (c == 'l' || c == 'I')) return ": a letter in place of a one?";
  if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z')) return ": write the number alone";
  return ": write one number";
}

std::string CutText(const Field& field, const ReadPart& part) {
  const std::string value = part.text.empty() ? NumberText(part.value) : std::string(part.text);
  const std::string_view rest = field.text.substr(part.text.size());
  const std::string text = Quoted(field.text) + " is read as " + value;
  const bool isOctal = field.text.size() > 1 && field.text[0] == '0' && IsDigit(field.text[1]);
  if (field.role == Role::Reference && isOctal) return text + ": octal behind a 0";
  if (field.role == Role::Reference && part.text.empty()) return text + ": write its number";
  if (field.role == Role::Whole && IsNumber(field.text)) return text + ": write a whole number";
  return text + CureOf(rest);
}

}  // namespace

void FindSplitNumbers(Inspection& deck, const RecordFields& record) {
  for (const Field& field : record.fields) {
    const bool isNumber = field.role == Role::Number || field.role == Role::NodeNumber;
    if (!isNumber || IsWhole(field.text)) continue;
    const std::string_view read = WholePart(field.text).text;
    if (record.record.kind == RecordKind::Hinge && !read.empty() &&
        OnlySeparates(field.text.substr(read.size()))) {
      deck.AddAs(
          Severity::Warning, PlaceOf(field),
          Quoted(field.text) + " is read as " + std::string(read) + ": write the number alone");
      return;
    }
    std::string text = Quoted(field.text) + " is no whole number";
    if (!read.empty())
      text = Quoted(field.text) + " is read as " + std::string(read) + ", " +
             Quoted(field.text.substr(read.size())) + " as what follows";
    deck.Add(PlaceOf(field), text);
    deck.Spoil(record);
    if (field.role == Role::Number && read.empty()) deck.AddUnnumbered(record.record.kind);
    return;
  }
}

void FindCutNumbers(Inspection& deck, const RecordFields& record) {
  for (const Field& field : record.fields) {
    if (!IsNumeric(record, field)) continue;
    const ReadPart part = PartOf(field);
    const std::string_view rest = field.text.substr(part.text.size());
    if (rest.empty() || deck.IsSpoiltAt(record.record.offset)) continue;
    // What is no number at all is refused by the reader where it needs one.
    const bool takesZero = field.role == Role::Value || field.role == Role::Reference;
    if (part.text.empty() && !takesZero) continue;
    if (field.role == Role::Reference && RealPart(field.text).value == part.value &&
        IsNumber(field.text))
      continue;  // 2.0 is 2
    if (OnlySeparates(rest) && !deck.IsRefusedAt(record.record.offset)) {
      deck.AddAs(Severity::Warning, PlaceOf(field), CutText(field, part));
      continue;
    }
    deck.Add(PlaceOf(field), CutText(field, part));
    deck.Spoil(record);
    // One comma in a list is a habit: the others are the same mistake.
    return;
  }
}

void FindEmptyValues(Inspection& deck, const RecordFields& record) {
  for (const Field& field : record.fields) {
    const bool isPair = field.role == Role::Value && IsNumeric(record, field) &&
                        field.text.find_first_of("=:") != std::string_view::npos;
    if (isPair && !deck.IsSpoiltAt(record.record.offset)) {
      deck.Add(PlaceOf(field), std::string(field.key) + " has no value: " + Quoted(field.text) +
                                   " is taken for it");
      deck.Spoil(record);
      return;
    }
    if (field.role != Role::Sign) continue;
    std::string text(field.key);
    text.append(" is read as 0: a blank stands before ").append(Quoted(field.text));
    deck.Add(PlaceOf(field), text.append(", write ").append(field.key).append("=value"));
    deck.Spoil(record);
    return;
  }
}

}  // namespace kestol
