// Builds the page as the program holds it: what stands before the data and what stands behind.
//
//   node build.mjs FOLDER        writes FOLDER/head.html and FOLDER/tail.html
//
// With KESTOL_READABLE_PAGE in the environment the script keeps its lines, for line coverage.

import {mkdir, readFile, writeFile} from 'node:fs/promises';
import {dirname, join} from 'node:path';
import {fileURLToPath} from 'node:url';

import {build} from 'esbuild';

const here = dirname(fileURLToPath(import.meta.url));
const folder = process.argv[2] ?? join(here, 'dist');

/** @param {'js' | 'css'} kind @param {string} entry */
async function bundle(kind, entry) {
  const result = await build({
    absWorkingDir: here, entryPoints: [join(here, 'src', entry)], bundle: true, write: false,
    minify: !process.env.KESTOL_READABLE_PAGE,
    format: kind === 'js' ? 'iife' : undefined, target: ['chrome111', 'firefox113', 'safari16.4'],
    legalComments: 'inline', logLevel: 'warning',
  });
  // Inside a page nothing may look like the end of the script.
  return result.outputFiles[0].text.trim().replaceAll('</script', '<\\/script');
}

const [page, script, style] = await Promise.all([
  readFile(join(here, 'src/index.html'), 'utf8'), bundle('js', 'main.js'),
  bundle('css', 'style.css'),
]);
const [head, tail] = page.split('<!--DATA-->');
await mkdir(folder, {recursive: true});
await writeFile(join(folder, 'head.html'), head.replace('/*STYLE*/', () => style));
await writeFile(join(folder, 'tail.html'), tail.replace('/*SCRIPT*/', () => script));
