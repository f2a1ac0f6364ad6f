'use strict';
// The page: its tables, the search through all of them, links, folding, and paper.
{
  // A page that was saved from a browser has what the script once made.
  for (const made of document.querySelectorAll('.made')) made.remove();
  for (const button of document.querySelectorAll('th button'))
    button.replaceWith(...button.childNodes);

  const content = document.getElementById('page-content');
  const tables = [...content.querySelectorAll('noscript, .table > .box')]
    .map((place) => new Table(place));

  function unfold(place) {
    for (let fold = place.closest('details'); fold; fold = fold.parentElement.closest('details'))
      fold.open = true;
  }

  function foldAll(open) {
    for (const fold of content.querySelectorAll('details')) fold.open = open;
  }

  /// How many rows of each section were found, beside its name in the contents.
  function showHits(asked) {
    for (const link of document.querySelectorAll('nav li > a')) {
      const section = document.getElementById(decodeURIComponent(link.hash.slice(1)));
      const within = tables.filter(({ box }) => section.contains(box));
      const hits = within.reduce((sum, table) => sum + table.hits, 0);
      link.parentElement.querySelector('.hits')?.remove();
      if (asked && within.length)
        link.after(element('b', { className: 'hits made' }, word('%1 处', countText(hits))));
    }
  }

  function searchAll(text) {
    for (const table of tables) {
      table.search.value = text;
      table.apply();
      if (text && table.hits) unfold(table.box);
    }
    showHits(text !== '');
  }

  function addTools() {
    const search = element('input', { type: 'search' });
    search.addEventListener('input', () => searchAll(search.value.trim()));
    const button = (name, open) => {
      const made = element('button', { type: 'button', textContent: word(name) });
      made.addEventListener('click', () => foldAll(open));
      return made;
    };
    document.querySelector('nav').append(element('div', { className: 'tools made', attributes: { role: 'search' } },
      element('label', {}, word('在所有表格中查找'), search),
      button('全部展开', true), button('全部折叠', false)));
  }

  /// Leads to the element with `id`, wherever it is: folded, filtered away or not drawn.
  function lead(id) {
    if (!id) return;
    let place = document.getElementById(id);
    for (const table of tables) {
      table.window.marked = '';
      const row = table.bring(id);
      if (row) [place, table.window.marked] = [row, id];
    }
    for (const marked of document.querySelectorAll('.marked')) marked.classList.remove('marked');
    if (!place) return;
    unfold(place);
    place.classList.add('marked');
    if (!place.matches('a, button, input, [tabindex]')) place.tabIndex = -1;
    place.focus({ preventScroll: true });
    place.scrollIntoView({ block: place.localName === 'tr' ? 'center' : 'start' });
  }

  const target = () => decodeURIComponent(location.hash.slice(1));

  /// A link in a row leaves the row's name behind, so that the way back leads to it.
  function follow(event) {
    const link = event.target.closest('a[href^="#"]');
    if (!link || event.ctrlKey || event.metaKey || event.shiftKey) return;
    event.preventDefault();
    const row = link.closest('tr[id]');
    if (row) history.replaceState(null, '', `#${row.id}`);
    history.pushState(null, '', link.hash);
    lead(target());
  }

  // Paper gets every row of every table, nothing folded.
  let folded = [];
  function toPaper() {
    folded = [...content.querySelectorAll('details:not([open])')];
    for (const fold of folded) fold.open = true;
    for (const table of tables) {
      table.window.drawAll(table.rows);
      if (table.table.tFoot) table.table.tFoot.hidden = false;
    }
  }
  function fromPaper() {
    for (const fold of folded) fold.open = false;
    for (const table of tables) table.apply();
  }

  addTools();
  document.addEventListener('click', follow);
  document.addEventListener('copy', (event) => copying(event, tables));
  addEventListener('hashchange', () => lead(target()));
  addEventListener('beforeprint', toPaper);
  addEventListener('afterprint', fromPaper);
  lead(target());
}
