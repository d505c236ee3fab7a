#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "programs/common/VtuWriter.h"

namespace kestol {

namespace {

using testing::HasSubstr;

constexpr double kPoints[] = {0, 0, 0, 1, 0, 0, 0, 1.5, 0};
constexpr std::int32_t kConnectivity[] = {0, 1, 2}, kOffsets[] = {3};
constexpr std::uint8_t kTypes[] = {kVtuTriangle};
constexpr double kValues[] = {1.0, 0.1, -2.0};

VtuGrid Triangle() {
  VtuGrid grid{VtuArray::Of("Points", 3, std::span(kPoints)),
               VtuArray::Of("connectivity", 1, std::span(kConnectivity)),
               VtuArray::Of("offsets", 1, std::span(kOffsets)),
               VtuArray::Of("types", 1, std::span(kTypes)),
               {VtuArray::Of("U [<\"m\">&]", 1, std::span(kValues))},
               {}};
  grid.pointData[0].componentNames = {"x"};
  return grid;
}

std::string Written(VtuEncoding encoding) {
  OutputString output;
  WriteVtu(output, Triangle(), encoding);
  return output.Text();
}

TEST(VtuWriter, AsciiIsReadable) {
  EXPECT_EQ(Written(VtuEncoding::Ascii),
            R"(<?xml version="1.0"?>
<VTKFile type="UnstructuredGrid" version="1.0" byte_order="LittleEndian" header_type="UInt64">
<UnstructuredGrid>
<Piece NumberOfPoints="3" NumberOfCells="1">
<PointData>
<DataArray type="Float64" Name="U [&lt;&quot;m&quot;&gt;&amp;]" ComponentName0="x" format="ascii">
1 0.1 -2 
</DataArray>
</PointData>
<CellData>
</CellData>
<Points>
<DataArray type="Float64" Name="Points" NumberOfComponents="3" format="ascii">
0 0 0 1 0 0 0 1.5 0 
</DataArray>
</Points>
<Cells>
<DataArray type="Int32" Name="connectivity" format="ascii">
0 1 2 
</DataArray>
<DataArray type="Int32" Name="offsets" format="ascii">
3 
</DataArray>
<DataArray type="UInt8" Name="types" format="ascii">
5 
</DataArray>
</Cells>
</Piece>
</UnstructuredGrid>
</VTKFile>
)");
}

TEST(VtuWriter, RawOffsetsPointBehindTheUnderscore) {
  const std::string file = Written(VtuEncoding::Raw);
  const std::size_t start = file.find("\n_") + 2;
  // U 3 doubles, points 9, connectivity 3 ints, offsets 1, types 1 byte; 8 bytes of header each.
  for (const char* offset :
       {"offset=\"0\"", "offset=\"32\"", "offset=\"112\"", "offset=\"132\"", "offset=\"144\""})
    EXPECT_THAT(file, HasSubstr(offset));
  std::uint64_t size;
  std::memcpy(&size, file.data() + start + 32, sizeof size);
  EXPECT_EQ(size, 72u);
  double value;
  std::memcpy(&value, file.data() + start + 8 + 8, sizeof value);
  EXPECT_EQ(value, 0.1);
  EXPECT_THAT(file.substr(start + 144 + 8 + 1), testing::StartsWith("\n</AppendedData>"));
}

TEST(VtuWriter, Base64IsOneStreamOfHeaderAndValues) {
  const std::string file = Written(VtuEncoding::Base64);
  // 8 bytes of header (1), then the byte 5, padded.
  EXPECT_THAT(file, HasSubstr("Name=\"types\" format=\"binary\">\n"
                              "AQAAAAAAAAAF\n</DataArray>"));
  EXPECT_THAT(file, HasSubstr("Name=\"offsets\" format=\"binary\">\n"
                              "BAAAAAAAAAADAAAA\n</DataArray>"));
}

TEST(VtuWriter, ZerosAreValuesLikeOthers) {
  for (const VtuEncoding encoding : {VtuEncoding::Raw, VtuEncoding::Base64, VtuEncoding::Ascii}) {
    const auto written = [&](bool atOnce) {
      OutputString output;
      VtuValues values(output, encoding);
      values.Add(1.0);
      if (atOnce)
        values.AddZeros<double>(20000);
      else
        for (int k = 0; k < 20000; ++k) values.Add(0.0);
      values.Finish();
      EXPECT_EQ(values.Bytes(), 8u * 20001u);
      return output.Text();
    };
    EXPECT_EQ(written(true), written(false));
  }
}

TEST(VtuWriter, ACollectionNamesItsFiles) {
  OutputString output;
  WritePvd(output, {
                       {0.0, "a.vtu"  },
                       {1.5, "b&c.vtu"}
  });
  EXPECT_THAT(output.Text(),
              HasSubstr("<DataSet timestep=\"0\" part=\"0\" file=\"a.vtu\"/>\n"
                        "<DataSet timestep=\"1.5\" part=\"0\" file=\"b&amp;c.vtu\"/>\n"));
}

TEST(VtuWriter, APieceIndexHasTheArraysAndThePieces) {
  OutputString output;
  WritePvtu(output, Triangle(), {"a_0.vtu", "a_1.vtu"});
  EXPECT_THAT(output.Text(), HasSubstr("<PDataArray type=\"Float64\" Name=\"U [&lt;"));
  EXPECT_THAT(output.Text(),
              HasSubstr("<Piece Source=\"a_0.vtu\"/>\n<Piece Source=\"a_1.vtu\"/>\n"));
}

TEST(VtuWriter, NamesAreValidWhateverTheyHold) {
  EXPECT_EQ(XmlText("<a & \"b\">"), "&lt;a &amp; &quot;b&quot;&gt;");
  EXPECT_EQ(XmlText("a\x1b\n\xc3\xa4\xf0\x9f\x8c\x89"), "a  \xc3\xa4\xf0\x9f\x8c\x89");
  EXPECT_EQ(XmlText("\xe4"), "\xef\xbf\xbd");          // Latin-1
  EXPECT_EQ(XmlText("\xef\xbf\xbf"), "\xef\xbf\xbd");  // UTF-8, but no character of XML
}

}  // namespace

}  // namespace kestol
