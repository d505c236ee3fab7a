#include "programs/view/PageWriter.h"

#include "programs/common/FindingJson.h"
#include "programs/view/PageTemplate.h"

namespace kestol {

namespace {

/// Numbers of a page are written bit for bit below this many bytes of doubles.
constexpr std::size_t kExactBytes = 3'000'000;

const char* NameOf(Tables tables) {
  switch (tables) {
    case Tables::None:
      return "none";
    case Tables::Supports:
      return "supports";
    default:
      return "all";
  }
}

Precision PrecisionFor(const std::vector<const PageBlock*>& blocks) {
  std::size_t bytes = 0;
  for (const PageBlock* block : blocks) bytes += block->reals.size() * sizeof(double);
  return bytes <= kExactBytes ? Precision::Exact : Precision::Compact;
}

void WriteCombinations(JsonWriter& json, const PageContents& contents) {
  json.NewLine().Key("combinations").BeginArray();
  for (const Combination& combination : contents.combinations) {
    json.NewLine().BeginObject().Member("name", combination.name).Key("factors").BeginObject();
    for (std::size_t k = 0; k < combination.factors.size(); ++k)
      if (combination.factors[k] != 0.0) json.Member(contents.caseNames[k], combination.factors[k]);
    json.EndObject().Member("formula", combination.formula).EndObject();
  }
  json.EndArray();
}

std::vector<const PageBlock*> BlocksOf(const PageContents& contents,
                                       const std::vector<PageBlock>& ofModel) {
  std::vector<const PageBlock*> blocks;
  blocks.reserve(ofModel.size());
  for (const PageBlock& block : ofModel) blocks.push_back(&block);
  for (const PageCase& one : contents.cases)
    for (const PageBlock& block : one.blocks) blocks.push_back(&block);
  return blocks;
}

void WriteHead(OutputBuffer& output, const PageContents& contents,
               const std::vector<const PageBlock*>& blocks, Precision precision) {
  JsonWriter json(output);
  json.BeginObject().Member("schema", "kestol-view/1").Member("version", KESTOL_VERSION);
  json.Member("deck", contents.deck).Member("title", contents.text.title);
  json.Member("text", contents.text.text).Member("omittedLines", contents.text.omittedLines);
  json.Member("exact", precision == Precision::Exact).Member("tables", NameOf(contents.tables));
  contents.model->WriteMembers(json);
  WriteCombinations(json, contents);
  WriteFindings(json, contents.deck, contents.findings);
  WriteMechanisms(json, contents.mechanisms);
  json.NewLine().Key("blocks").BeginObject();
  for (const PageBlock* block : blocks) WriteBlockHead(json, *block, precision);
  json.EndObject().NewLine().Key("cases");
  // The cases are JSON already: they come last, by hand.
  for (std::size_t k = 0; k < contents.cases.size(); ++k)
    output << (k == 0 ? "[" : ",\n") << contents.cases[k].json;
  output << "]}";
}

/// JSON inside a script element: "<" only stands in its texts, and there it must not end or open
/// an element.
void WriteEscaped(OutputBuffer& output, std::string_view json) {
  for (std::size_t at = 0;;) {
    const std::size_t next = json.find('<', at);
    output << json.substr(at, next - at);
    if (next == std::string_view::npos) return;
    output << "\\u003c";
    at = next + 1;
  }
}

}  // namespace

void WritePage(OutputBuffer& output, const PageContents& contents) {
  const std::vector<PageBlock> ofModel = contents.model->Blocks();
  const std::vector<const PageBlock*> blocks = BlocksOf(contents, ofModel);
  const Precision precision = PrecisionFor(blocks);

  OutputString head;
  WriteHead(head, contents, blocks, precision);
  output << PageHead() << "<script type=\"application/json\" id=\"kestol-model\">\n";
  WriteEscaped(output, head.Text());
  output << "\n</script>\n";
  for (const PageBlock* block : blocks) WriteBlock(output, *block, precision);
  output << PageTail();
}

}  // namespace kestol
