'use strict';
// A table that one searches, filters and sorts. Which of its rows are shown follows from the
// fields above it; the rows themselves never change.

class Table {
  /// `place` is the box of a table, or the text that stands for a large one.
  constructor(place) {
    const source = this.build(place);
    this.groups = groupsIn(source);
    this.order = this.groups;
    this.count = this.groups.reduce((sum, group) => sum + group.length, 0);
    this.columns = [...this.table.tHead.querySelectorAll('[data-column]')]
      .map((head) => ({
        head,
        name: head.textContent,
        index: Number(head.dataset.column),
        kind: head.dataset.kind,
        choice: head.dataset.choice !== undefined,
      }))
      .sort((a, b) => a.index - b.index);
    this.amounts = this.columns.filter(({ kind }) => kind === 'amount');
    this.window = new Window(this.box, this.table, this.body);
    if (this.count > rowsAtOnce) this.addRuler();
    this.addTools();
    for (const column of this.columns) this.addSorting(column);
    this.apply();
  }

  /// Finds the table's elements and answers its rows' source. That stays in the page beside what
  /// is shown of it, so that a page saved from a browser is complete, whatever was filtered.
  build(place) {
    let source;
    if (place.localName === 'noscript') {
      const text = place.textContent;
      const first = text.indexOf('<tbody>') + '<tbody>'.length;
      const foot = text.lastIndexOf('<tfoot>');
      const behind = foot < 0 ? text.lastIndexOf('</table>') : foot;
      source = text.slice(first, behind);
      place.previousElementSibling.hidden = true;
      place.insertAdjacentHTML('afterend', text.slice(0, first) + text.slice(behind));
      this.box = place.nextElementSibling;
      this.box.classList.add('made');
    } else {
      this.box = place;
      const kept = place.nextElementSibling ?? element('template');
      if (!kept.isConnected) kept.innerHTML = place.querySelector('tbody').innerHTML;
      place.after(kept);
      source = kept.innerHTML;
    }
    this.table = this.box.querySelector('table');
    this.body = this.table.tBodies[0];
    return source;
  }

  get rows() { return this.groups.flat(); }

  /// A row that is not seen, of each column's longest text, so that columns keep their widths
  /// whichever rows are drawn.
  addRuler() {
    const longest = this.columns.map(() => '');
    for (const { cells } of this.rows)
      cells.forEach((text, i) => { if (text.length > longest[i].length) longest[i] = text; });
    const row = element('tr', { className: 'ruler made', attributes: { 'aria-hidden': 'true' } });
    longest.forEach((text, i) => row.append(element('td',
      { textContent: text, className: this.columns[i].kind === 'text' ? '' : 'n' })));
    this.table.tHead.append(row);
  }

  addTools() {
    this.search = element('input', { type: 'search' });
    this.atLeast = element('input', { type: 'text', inputMode: 'decimal', size: 10 });
    this.choices = this.columns.filter(({ choice }) => choice).map((column) => ({
      ...column, select: element('select', {}, ...this.optionsOf(column)),
    }));
    this.shown = element('output', { attributes: { 'aria-live': 'polite' } });
    this.clear = element('button', { type: 'button', textContent: word('清除筛选') });
    const copy = element('button', { type: 'button', textContent: word('复制') });
    this.tools = element('div', {
      className: 'tools made',
      attributes: { role: 'group', 'aria-labelledby': this.table.getAttribute('aria-labelledby') },
    }, element('label', {}, word('查找'), this.search));
    for (const { name, select } of this.choices)
      this.tools.append(element('label', {}, name, select));
    if (this.amounts.length)
      this.tools.append(element('label', {}, word('金额不小于'), this.atLeast));
    this.tools.append(this.clear, copy, this.shown);
    this.tools.addEventListener('input', () => this.apply());
    this.clear.addEventListener('click', () => { this.clearFilters(); this.search.focus(); });
    copy.addEventListener('click', () => copyTable(this));
    this.box.before(this.tools);
  }

  optionsOf({ index }) {
    const texts = new Set(this.rows.map((row) => row.cells[index]));
    texts.delete('');
    return [new Option(word('全部'), ''),
      ...[...texts].sort(collator.compare).map((text) => new Option(text, text))];
  }

  addSorting(column) {
    const button = element('button', { type: 'button' }, ...column.head.childNodes);
    button.addEventListener('click', () => this.sort(column));
    column.head.append(button);
  }

  /// Up, down, and as it was.
  sort({ head, ...column }) {
    const next = { ascending: 'descending', descending: undefined };
    const before = head.getAttribute('aria-sort');
    const direction = before ? next[before] : 'ascending';
    for (const other of this.columns) other.head.removeAttribute('aria-sort');
    if (direction) head.setAttribute('aria-sort', direction);
    this.order = direction ? orderBy(this.groups, column, direction === 'descending') : this.groups;
    this.apply();
  }

  clearFilters() {
    for (const { select } of this.choices) select.value = '';
    this.search.value = this.atLeast.value = '';
    this.apply();
  }

  /// Whether a row is one that the fields ask for; nothing when they ask for no one in particular.
  asked() {
    const text = searchable(this.search.value.trim());
    const chosen = this.choices.filter(({ select }) => select.value);
    const least = amountOf(this.atLeast.value.trim().replace(/^[-+]/, ''));
    this.atLeast.setAttribute('aria-invalid', least === null);
    const reaches = (row) => this.amounts.some(({ index }) => {
      const amount = row.cells[index] !== '' && amountOf(row.cells[index]);
      return amount && compareSizes(amount, least) >= 0;
    });
    const byAmount = least !== null && this.atLeast.value.trim() !== '';
    if (!text && !chosen.length && !byAmount) return undefined;
    return (row) => chosen.every(({ index, select }) => row.cells[index] === select.value) &&
      (!text || row.searched.includes(text)) && (!byAmount || reaches(row));
  }

  /// Shows what is asked for: a main row with all its details, or with those alone that are.
  apply() {
    const asked = this.asked();
    this.filtered = asked !== undefined;
    this.hits = 0;
    const shown = [];
    for (const group of this.order) {
      const found = asked ? group.filter(asked) : group;
      this.hits += found.length;
      if (found[0] === group[0]) shown.push(...group);
      else if (found.length) shown.push(group[0], ...found);
    }
    this.window.show(shown);
    // The sums are those of all rows.
    if (this.table.tFoot) this.table.tFoot.hidden = this.filtered;
    this.clear.hidden = !this.filtered;
    this.shown.textContent = word('%1 / %2 行', countText(shown.length), countText(this.count));
  }

  /// The element of the row with `id`, shown whatever is filtered; undefined when it has none.
  bring(id) {
    if (!this.groups.some((group) => group.some((row) => row.id === id))) return undefined;
    if (!this.window.rows.some((row) => row.id === id)) this.clearFilters();
    return this.window.bring(id);
  }
}
