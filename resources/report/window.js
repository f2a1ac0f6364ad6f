'use strict';
// The rows in view. A long table scrolls in its box; elements exist for the rows about the place
// that one looks at, and empty space stands for those before and behind.

const rowsAtOnce = 300;

class Window {
  /// `box` scrolls, `body` (of `table`) holds the rows.
  constructor(box, table, body) {
    Object.assign(this, { box, table, body, rows: [], from: 0, rowHeight: 28, marked: '' });
    // The page's policy allows no style of an element in a saved page.
    const [sheet] = document.styleSheets;
    const index = sheet.insertRule(`#${CSS.escape(table.id)} {}`, sheet.cssRules.length);
    this.rule = sheet.cssRules[index];
    box.addEventListener('scroll', () => this.scrolled(), { passive: true });
  }

  /// Shows other rows, from the first.
  show(rows) {
    this.rows = rows;
    this.draw(0);
    if (this.body.rows.length) this.rowHeight = this.body.offsetHeight / this.body.rows.length || 28;
    this.space();
    this.box.scrollTop = 0;
  }

  /// Shows all rows, for paper, or those in view again.
  drawAll(rows) {
    this.body.innerHTML = rows.map((row) => row.source).join('');
    this.rule.style.marginBlock = '';
  }

  draw(from) {
    const hadFocus = this.body.contains(document.activeElement);
    this.from = Math.max(0, Math.min(from, this.rows.length - rowsAtOnce));
    const drawn = this.rows.slice(this.from, this.from + rowsAtOnce);
    this.body.innerHTML = drawn.map((row) => row.source).join('');
    this.space();
    if (this.rows.length > rowsAtOnce) this.number();
    if (this.marked) this.body.rows.namedItem(this.marked)?.classList.add('marked');
    if (hadFocus) this.box.focus({ preventScroll: true });
  }

  /// Tells whoever hears the table which of its rows these are.
  number() {
    const heads = this.table.tHead.querySelectorAll('tr:not(.ruler)').length;
    this.table.setAttribute('aria-rowcount', this.rows.length + heads);
    let place = this.from + heads;
    for (const row of this.body.rows) row.setAttribute('aria-rowindex', ++place);
  }

  space() {
    const behind = Math.max(0, this.rows.length - rowsAtOnce - this.from);
    this.rule.style.marginBlock = `${this.from * this.rowHeight}px ${behind * this.rowHeight}px`;
  }

  scrolled() {
    if (this.rows.length <= rowsAtOnce) return;
    const box = this.box.getBoundingClientRect();
    const body = this.body.getBoundingClientRect();
    const reserve = box.height / 2;
    const last = this.from + rowsAtOnce >= this.rows.length;
    if ((this.from === 0 || body.top < box.top - reserve) && (last || body.bottom > box.bottom + reserve))
      return;
    const kept = this.rowAt(box.top);
    if (!kept) {
      this.draw(Math.floor(this.box.scrollTop / this.rowHeight) - rowsAtOnce / 3);
      return;
    }
    const top = kept.getBoundingClientRect().top;
    const place = this.from + kept.sectionRowIndex;
    this.draw(place - rowsAtOnce / 3);
    const again = this.body.rows[place - this.from];
    this.box.scrollTop += again.getBoundingClientRect().top - top;
  }

  /// The first drawn row that reaches below `top`; none when the body lies elsewhere.
  rowAt(top) {
    const rows = this.body.rows;
    if (rows[0].getBoundingClientRect().top > top) return undefined;
    let [low, high] = [0, rows.length];
    while (low < high) {
      const middle = (low + high) >> 1;
      if (rows[middle].getBoundingClientRect().bottom > top) high = middle;
      else low = middle + 1;
    }
    return rows[low];
  }

  /// Draws the row with `id`, and answers its element.
  bring(id) {
    const place = this.rows.findIndex((row) => row.id === id);
    if (place < this.from || place >= this.from + rowsAtOnce) this.draw(place - rowsAtOnce / 3);
    return this.body.rows[place - this.from];
  }
}
