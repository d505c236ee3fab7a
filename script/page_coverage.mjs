// Lines of kestol-view's script that no test ran: node page_coverage.mjs FOLDER
//
// FOLDER holds what the pages of tests/view left there (KESTOL_PAGE_COVERAGE) with a script that was
// built readable (KESTOL_READABLE_PAGE, KESTOL_PAGE_SCRIPT). A line counts as run when anything on it
// ran.

import {readdirSync, readFileSync} from 'node:fs';
import {join} from 'node:path';

const folder = process.argv[2];

/** Marks in `ran`, by character, what one page ran: inner ranges overrule those around them. */
function mark(functions, ran) {
  const here = new Uint8Array(ran.length).fill(1);
  for (const {ranges} of functions)
    for (const {startOffset, endOffset, count} of ranges)
      here.fill(count > 0 ? 1 : 0, startOffset, endOffset);
  for (let i = 0; i < ran.length; ++i) ran[i] |= here[i];
}

/** What all pages ran of the script, which is the same in all of them. */
function union() {
  let source = '', ran = new Uint8Array(0);
  for (const name of readdirSync(folder)) {
    const scripts = JSON.parse(readFileSync(join(folder, name), 'utf8'));
    for (const script of scripts) {
      if (!script.source.includes('// src/')) continue;
      if (!source) [source, ran] = [script.source, new Uint8Array(script.source.length)];
      if (script.source !== source) throw new Error(`${name} is of another page`);
      mark(script.functions, ran);
    }
  }
  if (!source) throw new Error(`no script with readable lines in ${folder}`);
  return {source, ran};
}

const {source, ran} = union();
const modules = new Map();
let module = '', offset = 0;
for (const line of source.split('\n')) {
  const [begin, end] = [offset + line.search(/\S|$/), offset + line.length];
  offset = end + 1;
  const heading = line.match(/^\s*\/\/ (\S+\.m?js)$/);
  if (heading) module = heading[1];
  if (!module.startsWith('src/') || /^[\s{}()[\];,]*(\/\/.*)?$/.test(line)) continue;
  if (!modules.has(module)) modules.set(module, {lines: 0, missed: []});
  const tally = modules.get(module);
  ++tally.lines;
  if (!ran.subarray(begin, end).includes(1)) tally.missed.push(line.trim());
}
let [lines, missed] = [0, 0];
for (const [name, tally] of modules) {
  lines += tally.lines;
  missed += tally.missed.length;
  console.log(`${name}: ${tally.lines - tally.missed.length} of ${tally.lines}`);
  for (const line of tally.missed) console.log(`    ${line}`);
}
console.log(`${lines - missed} of ${lines} lines, ${(100 * (1 - missed / lines)).toFixed(1)} %`);
