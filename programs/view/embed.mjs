// Writes the page as a C++ source: node embed.mjs HEAD.html TAIL.html OUTPUT.cc

import {readFile, writeFile} from 'node:fs/promises';

const [head, tail, output] = process.argv.slice(2);

/** An array initialiser, many bytes a line. */
async function bytesOf(file) {
  const lines = [];
  const bytes = await readFile(file);
  for (let i = 0; i < bytes.length; i += 64) lines.push([...bytes.subarray(i, i + 64)].join(','));
  return lines.join(',\n');
}

const part = async (name, file) => `const unsigned char ${name}[] = {\n${await bytesOf(file)}};\n`;
const view = (name, data) =>
  `std::string_view ${name}() {\n  return {reinterpret_cast<const char*>(${data}), sizeof ${data}};\n}\n`;

await writeFile(output, `#include "programs/view/PageTemplate.h"

namespace kestol {

namespace {
${await part('kHead', head)}${await part('kTail', tail)}}  // namespace

${view('PageHead', 'kHead')}${view('PageTail', 'kTail')}
}  // namespace kestol
`);
