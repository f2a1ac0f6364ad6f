'use strict';
// Rows of a table as the page's source has them. A row is kept as its source and made into
// elements when it is looked at: 60,000 rows as elements would take seconds.

/// A word of the page in its language, figures in place of %1, %2.
const word = (() => {
  const words = new Map();
  for (const name of document.querySelectorAll('#page-words dt'))
    words.set(name.textContent, name.nextElementSibling.textContent);
  return (name, ...figures) => words.get(name).replace(/%(\d)/g, (_, n) => figures[n - 1]);
})();
const language = document.documentElement.lang;
const collator = new Intl.Collator(language, { numeric: true });
const countText = (count) => count.toLocaleString('en');

/// An element with properties, attributes (named as data in `attributes`) and children.
function element(name, properties = {}, ...children) {
  const made = document.createElement(name);
  const { attributes = {}, ...others } = properties;
  Object.assign(made, others);
  for (const [key, value] of Object.entries(attributes)) made.setAttribute(key, value);
  made.append(...children);
  return made;
}

const entities = { lt: '<', gt: '>', amp: '&', quot: '"', nbsp: '\u00a0' };

/// What a reader sees of a piece of source; the word that a sign stands for is not seen.
function textOf(source) {
  if (!source.includes('<') && !source.includes('&')) return source;
  return source.replace(/<u>.*?<\/u>|<[^>]*>/g, '').replace(/&(\w+);/g, (_, name) => entities[name]);
}

/// Digits without the commas between them.
const plainNumber = (text) => text.replaceAll(',', '');
/// A text as it is searched: without regard to case and to commas between digits.
const searchable = (text) => text.toLowerCase().replace(/(\d),(?=\d)/g, '$1');

/// An amount's parts; compared as texts, for no number of the language holds 38 digits.
function amountOf(text) {
  const [, sign, whole, fraction = ''] = /^([-+]?)0*(\d*)\.?(\d*)$/.exec(plainNumber(text)) ?? [];
  return whole === undefined ? null : { negative: sign === '-', whole, fraction };
}

function compareTexts(a, b) {
  return a < b ? -1 : a > b ? 1 : 0;
}

function compareSizes(a, b) {
  const places = Math.max(a.fraction.length, b.fraction.length);
  return a.whole.length - b.whole.length || compareTexts(a.whole, b.whole) ||
    compareTexts(a.fraction.padEnd(places, '0'), b.fraction.padEnd(places, '0'));
}

function compareAmounts(a, b) {
  if (a.negative !== b.negative) return a.negative ? -1 : 1;
  return a.negative ? compareSizes(b, a) : compareSizes(a, b);
}

class Row {
  constructor(source) {
    this.source = source;
    const tag = source.slice(0, source.indexOf('>'));
    this.id = /\sid="?([^"\s>]+)/.exec(tag)?.[1] ?? '';
    this.detail = /\sclass="?d\b/.test(tag);
  }
  get cells() {
    return this.kept ??= this.source.split('<td').slice(1)
      .map((cell) => textOf(cell.slice(cell.indexOf('>') + 1)));
  }
  get searched() {
    return this.text ??= searchable(this.cells.join('\n'));
  }
}

/// The rows in `source`, each main row with its details.
function groupsIn(source) {
  const groups = [];
  for (let start = source.indexOf('<tr'); start >= 0;) {
    const next = source.indexOf('<tr', start + 3);
    const row = new Row(source.slice(start, next < 0 ? undefined : next));
    if (row.detail && groups.length) groups.at(-1).push(row);
    else groups.push([row]);
    start = next;
  }
  return groups;
}

/// How two groups follow one another by a column of their main rows; nothing comes last.
function orderBy(groups, { index, kind }, descending) {
  const numeric = kind === 'amount' || kind === 'count';
  const compare = numeric ? compareAmounts : kind === 'date' ? compareTexts : collator.compare;
  const keys = new Map(groups.map((group) => {
    const text = group[0].cells[index];
    return [group, numeric && text !== '' ? amountOf(text) ?? '' : text];
  }));
  return [...groups].sort((one, other) => {
    const [a, b] = [keys.get(one), keys.get(other)];
    if (a === '' || b === '') return (a === '') - (b === '');
    return descending ? compare(b, a) : compare(a, b);
  });
}
