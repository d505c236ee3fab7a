#include "programs/common/VtuWriter.h"

#include <algorithm>
#include <cassert>

#include "programs/common/Utf8.h"

namespace kestol {

namespace {

constexpr const char* kTypeNames[] = {"Float64", "Int32", "UInt8"};  // in the order of VtuType
constexpr const char* kFormats[] = {"appended", "binary", "ascii"};  // in the order of VtuEncoding

void BeginFile(OutputBuffer& output, std::string_view type) {
  output << "<?xml version=\"1.0\"?>\n<VTKFile type=\"" << type
         << "\" version=\"1.0\" byte_order=\"LittleEndian\" header_type=\"UInt64\">\n";
}

/// name="..." and what else every mention of an array says.
void WriteAttributes(OutputBuffer& output, const VtuArray& array) {
  output << "type=\"" << kTypeNames[static_cast<int>(array.type)] << "\" Name=\""
         << XmlText(array.name) << '"';
  // Said of a scalar too, it would make some readers give a table of one column.
  if (array.components > 1) output << " NumberOfComponents=\"" << array.components << '"';
  for (std::size_t c = 0; c < array.componentNames.size(); ++c)
    output << " ComponentName" << static_cast<int>(c) << "=\"" << XmlText(array.componentNames[c])
           << '"';
}

/// Whether the format has such a character: all of UTF-8 but the last two of its plane.
bool IsXml(std::string_view sequence) {
  return Utf8Length(sequence) > 0 && sequence != "\xef\xbf\xbe" && sequence != "\xef\xbf\xbf";
}

class VtuWriter {
public:
  VtuWriter(OutputBuffer& output, VtuEncoding encoding) : output_(output), encoding_(encoding) {}

  void Write(const VtuGrid& grid) {
    BeginFile(output_, "UnstructuredGrid");
    output_ << "<UnstructuredGrid>\n<Piece NumberOfPoints=\"" << grid.points.tuples
            << "\" NumberOfCells=\"" << grid.types.tuples << "\">\n";
    Section("PointData", grid.pointData);
    Section("CellData", grid.cellData);
    output_ << "<Points>\n";
    Array(grid.points);
    output_ << "</Points>\n<Cells>\n";
    for (const VtuArray* array : {&grid.connectivity, &grid.offsets, &grid.types}) Array(*array);
    output_ << "</Cells>\n</Piece>\n</UnstructuredGrid>\n";
    if (encoding_ == VtuEncoding::Raw) Append();
    output_ << "</VTKFile>\n";
  }

private:
  void Section(std::string_view name, const std::vector<VtuArray>& arrays) {
    output_ << '<' << name << ">\n";
    for (const VtuArray& array : arrays) Array(array);
    output_ << "</" << name << ">\n";
  }

  void Array(const VtuArray& array) {
    output_ << "<DataArray ";
    WriteAttributes(output_, array);
    output_ << " format=\"" << kFormats[static_cast<int>(encoding_)] << '"';
    if (encoding_ == VtuEncoding::Raw) {
      output_ << " offset=\"" << static_cast<std::int64_t>(offset_) << "\"/>\n";
      offset_ += sizeof(std::uint64_t) + array.Bytes();
      appended_.push_back(&array);
      return;
    }
    output_ << ">\n";
    Values(array);
    output_ << "</DataArray>\n";
  }

  void Append() {
    output_ << "<AppendedData encoding=\"raw\">\n_";
    for (const VtuArray* array : appended_) Values(*array);
    output_ << "\n</AppendedData>\n";
  }

  void Values(const VtuArray& array) {
    VtuValues values(output_, encoding_);
    values.AddHeader(array.Bytes());
    array.produce(values);
    assert(values.Bytes() == array.Bytes());
    values.Finish();
  }

  OutputBuffer& output_;
  VtuEncoding encoding_;
  std::uint64_t offset_ = 0;
  std::vector<const VtuArray*> appended_;
};

void Mention(OutputBuffer& output, std::string_view section,
             const std::vector<const VtuArray*>& arrays) {
  output << "<P" << section << ">\n";
  for (const VtuArray* array : arrays) {
    output << "<PDataArray ";
    WriteAttributes(output, *array);
    output << "/>\n";
  }
  output << "</P" << section << ">\n";
}

std::vector<const VtuArray*> PointersTo(const std::vector<VtuArray>& arrays) {
  std::vector<const VtuArray*> pointers;
  pointers.reserve(arrays.size());
  for (const VtuArray& array : arrays) pointers.push_back(&array);
  return pointers;
}

}  // namespace

void WriteVtu(OutputBuffer& output, const VtuGrid& grid, VtuEncoding encoding) {
  VtuWriter(output, encoding).Write(grid);
}

void WritePvd(OutputBuffer& output, const std::vector<std::pair<double, std::string>>& files) {
  BeginFile(output, "Collection");
  output << "<Collection>\n";
  for (const auto& [time, file] : files)
    output << "<DataSet timestep=\"" << time << "\" part=\"0\" file=\"" << XmlText(file)
           << "\"/>\n";
  output << "</Collection>\n</VTKFile>\n";
}

void WritePvtu(OutputBuffer& output, const VtuGrid& grid, const std::vector<std::string>& pieces) {
  BeginFile(output, "PUnstructuredGrid");
  output << "<PUnstructuredGrid GhostLevel=\"0\">\n";
  Mention(output, "PointData", PointersTo(grid.pointData));
  Mention(output, "CellData", PointersTo(grid.cellData));
  Mention(output, "Points", {&grid.points});
  for (const std::string& piece : pieces)
    output << "<Piece Source=\"" << XmlText(piece) << "\"/>\n";
  output << "</PUnstructuredGrid>\n</VTKFile>\n";
}

std::string XmlText(std::string_view text) {
  std::string safe;
  while (!text.empty()) {
    const std::string_view sequence = text.substr(0, std::max<std::size_t>(Utf8Length(text), 1));
    text.remove_prefix(sequence.size());
    if (!IsXml(sequence)) {
      safe += kReplacement;
      continue;
    }
    switch (const char c = sequence.front(); c) {
      case '&':
        safe += "&amp;";
        break;
      case '<':
        safe += "&lt;";
        break;
      case '>':
        safe += "&gt;";
        break;
      case '"':
        safe += "&quot;";
        break;
      default:
        if (static_cast<unsigned char>(c) < 0x20)
          safe += ' ';
        else
          safe += sequence;
    }
  }
  return safe;
}

}  // namespace kestol
