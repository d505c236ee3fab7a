#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "main/ErrorChannel.h"

namespace kestol {

/// What a place of the deck holds.
enum class RecordKind : unsigned char {
  Problem,     ///< the word that was taken as "problem"
  Type,        ///< the word that was taken as "type"
  Keyword,     ///< a keyword; its number is the row of the keyword table
  MeshWord,    ///< a word of a mesh block; its number is a MeshWordNumber
  UnitSystem,  ///< a row of units_names
  List,        ///< the keyword of a list; its number is how many numbers a record has at least
  Node,        ///< from here on: a record of a list, with the number that it begins with
  Element,
  Material,
  Support,
  Hinge,
  NodalLoad,
  ElementLoad,
  ListStop,  ///< the word at which a list stops
};

/// The numbers of RecordKind::MeshWord.
enum MeshWordNumber { DimensionWord, ElemtypeWord, NnodeWord, CoordinatesWord, ElementsWord };

/// Their words, in this order.
constexpr std::string_view kMeshWords[] = {"dimension", "elemtype", "nnode", "coordinates",
                                           "elements"};

/// Where the records of a deck begin, and which of them were refused. A reader that is given one
/// does not stop at a mistake: it notes the refusal, gives the record up and goes on with the next
/// line of the list, outside lists with the next keyword.
///
/// Places are offsets into the text of the deck; lines are counted afterwards, where they are asked
/// for. A record takes 12 bytes.
class SourceMap {
public:
  struct Record {
    RecordKind kind;
    int number;
    std::uint64_t offset;
  };

  /// What is wrong with a record. Where it can be told what was meant, reading goes on with that.
  enum class Cause {
    Reader,         ///< what the reader says; the record was given up
    TooFewValues,   ///< the next line was taken for the rest; given up
    NoNumber,       ///< a line of a list that does not begin with a number; given up
    UnknownNode,    ///< of an element; the message is the number
    UnknownWord,    ///< read as the message, the nearest known word; given up when that is empty
    MissingEnd,     ///< a list that runs into the message, the next keyword; empty: the end of the
                    ///< deck
    WordInText,     ///< a word of the text was taken as the keyword, without harm
    TextAsKeyword,  ///< a word of the text is taken as the keyword; read as it was meant
    OtherType,      ///< the deck is written for the other type of problem; read so
    OtherHeading,   ///< a word of a mesh block that its list does not fit; read as the list is
    EmptyValue,     ///< blanks on both sides of '='; read as it was meant
  };
  struct Refusal {
    Record record;
    Cause cause;
    std::string message;  ///< of the reader, or as the cause says
    std::string word;     ///< of the deck, where it is a word that is wrong
  };

  void Add(RecordKind kind, int number, std::uint64_t offset) {
    records_.emplace_back(kind, number, offset);
    if (kind < RecordKind::Node) headings_.push_back({kind, number, offset});
  }
  /// An element of the list asks for a material.
  void AddUse(int materialNumber) {
    if (materialNumber == lastUse_ && !usedMaterials_.empty()) return;
    lastUse_ = materialNumber;
    usedMaterials_.insert(materialNumber);
  }
  void Refuse(const Record& record, Cause cause, std::string_view message,
              std::string_view word = {}) {
    if (cause == Cause::Reader && message.empty()) return;  // noted already
    refusals_.push_back({record, cause, std::string(message), std::string(word)});
  }

  void SetLastCause(Cause cause) { refusals_.back().cause = cause; }

  std::size_t RecordCount() const { return records_.size(); }
  /// Record `i` (from 0) in the order of the deck.
  Record At(std::size_t i) const { return records_[i].Unpacked(); }
  /// Those that are not in a list of numbered records.
  const std::vector<Record>& Headings() const { return headings_; }
  const std::vector<Refusal>& Refusals() const { return refusals_; }
  /// The material numbers of all elements without a material of their own.
  const std::unordered_set<int>& UsedMaterials() const { return usedMaterials_; }

  std::string file;  ///< name of the deck
  std::string text;  ///< the deck itself when it was read from memory

  /// Reads the deck as if its type were that of this dimension; 0: as it says.
  int insteadOfType = 0;

  /// Of the problem, 2 or 3; 0 when its type could not be read: then the first mesh decides.
  int dimension = 0;

private:
  /// A record without padding.
  class Packed {
  public:
    Packed(RecordKind kind, int number, std::uint64_t offset)
        : number_(number),
          low_(static_cast<std::uint32_t>(offset)),
          high_(static_cast<std::uint32_t>(offset >> 32U) << 8U |
                static_cast<std::uint32_t>(kind)) {}
    Record Unpacked() const {
      return {static_cast<RecordKind>(high_ & 0xffU), number_,
              std::uint64_t{high_ >> 8U} << 32U | low_};
    }

  private:
    std::int32_t number_;
    std::uint32_t low_, high_;
  };

  std::deque<Packed> records_;  // grows without a second copy of itself
  std::vector<Record> headings_;
  std::vector<Refusal> refusals_;
  std::unordered_set<int> usedMaterials_;
  int lastUse_ = 0;
};

/// Gives a record up for a cause of its own; only where there is a map.
struct GivenUp {
  SourceMap::Cause cause;
  std::string message;
};

/// Calls `read` and notes in the map what it refuses, as of `record`; false when it did.
template <class Read>
bool RefuseInto(SourceMap& map, const SourceMap::Record& record, Read read) {
  try {
    read();
    return true;
  } catch (const GivenUp& refusal) {
    map.Refuse(record, refusal.cause, refusal.message);
  } catch (const FatalError& refusal) {
    map.Refuse(record, SourceMap::Cause::Reader, refusal.what());
    error.Clear();
  }
  return false;
}

}  // namespace kestol
