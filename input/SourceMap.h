#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
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

  /// Why a record was given up.
  enum class Cause {
    Reader,        ///< what the reader says
    SwallowsLine,  ///< it has too few values, so that the next line was taken for the rest
    NoNumber,      ///< a line of a list that does not begin with a number
    UnknownWord,   ///< a keyword that is not known; read as the nearest one, if there is one
    MissingEnd,    ///< a list that runs into the next keyword
    WordInText,    ///< a word of the text that was taken as the keyword
  };
  struct Refusal {
    Record record;
    Cause cause;
    std::string message;  ///< of the reader; a word of the deck or of the tables for other causes
  };

  void Add(RecordKind kind, int number, std::uint64_t offset) {
    records_.emplace_back(kind, number, offset);
  }
  void Refuse(const Record& record, Cause cause, std::string_view message) {
    refusals_.push_back({record, cause, std::string(message)});
  }

  std::size_t RecordCount() const { return records_.size(); }
  /// Record `i` (from 0) in the order of the deck.
  Record At(std::size_t i) const { return records_[i].Unpacked(); }
  const std::vector<Refusal>& Refusals() const { return refusals_; }

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
  std::vector<Refusal> refusals_;
};

/// Calls `read` and notes in the map what it refuses, as of `record`; false when it did.
template <class Read>
bool RefuseInto(SourceMap& map, const SourceMap::Record& record, Read read) {
  try {
    read();
    return true;
  } catch (const FatalError& refusal) {
    map.Refuse(record, SourceMap::Cause::Reader, refusal.what());
    error.Clear();
    return false;
  }
}

}  // namespace kestol
