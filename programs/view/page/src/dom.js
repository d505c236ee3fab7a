// Elements of the page. Text goes in as text nodes only: names from a deck are never markup.

/** @param {string} id @returns {any} */
export const byId = (id) => document.getElementById(id);

/**
 * @param {string} tag @param {Record<string, string | boolean | undefined>} attributes
 * @param {(Node | string)[]} children @returns {HTMLElement}
 */
export function make(tag, attributes = {}, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (value === undefined || value === false) continue;
    element.setAttribute(name, value === true ? '' : value);
  }
  element.append(...children);
  return element;
}

/** A table of text: a header line and rows. @param {string[]} header @param {string[][]} rows
 *  @param {string} [caption] */
export function table(header, rows, caption) {
  const t = make('table', {class: 'data'});
  if (caption) t.append(make('caption', {class: 'hidden'}, caption));
  t.append(make('thead', {}, make('tr', {}, ...header.map((h) => make('th', {scope: 'col'}, h)))),
           make('tbody', {}, ...rows.map((row) =>
             make('tr', {}, ...row.map((cell) => make('td', {}, cell))))));
  return t;
}
