'use strict';
// What is copied from a table is taken by a spreadsheet as it is meant: amounts as numbers,
// texts as texts, "=1+1" and "00123" too.

const escapes = { '&': '&amp;', '<': '&lt;', '>': '&gt;' };
const escaped = (text) => text.replace(/[&<>]/g, (character) => escapes[character]);
const isNumeric = ({ kind }) => kind === 'amount' || kind === 'count';

/// Rows of {text, numeric} as the clipboard takes them.
function putRows(clipboard, rows) {
  const plain = rows.map((row) => row
    .map(({ text, numeric }) => numeric ? plainNumber(text) : text.replace(/\s+/g, ' ')).join('\t'));
  const cell = ({ text, numeric }) => numeric ? `<td>${plainNumber(text)}</td>`
    : `<td style="mso-number-format:'\\@'">${escaped(text)}</td>`;
  const marked = rows.map((row) => `<tr>${row.map(cell).join('')}</tr>`);
  clipboard.setData('text/plain', plain.join('\n'));
  clipboard.setData('text/html', `<table>${marked.join('')}</table>`);
}

let copied;  // the table whose button was pressed

function copyTable(table) {
  copied = table;
  const done = document.execCommand('copy');
  copied = undefined;
  table.shown.textContent = done ? word('已复制 %1 行', countText(table.window.rows.length))
    : word('无法复制');
}

function rowsOf(table) {
  const cells = (texts) => texts
    .map((text, i) => ({ text, numeric: isNumeric(table.columns[i]) }));
  const foot = table.filtered ? [] : [...table.table.tFoot?.rows ?? []];
  return [table.columns.map(({ name }) => ({ text: name, numeric: false })),
    ...table.window.rows.map((row) => cells(row.cells)),
    ...foot.map((row) => cells([...row.cells].map((cell) => cell.textContent)))];
}

/// The cells of a table that a selection touches.
function rowsIn(selection, table) {
  const rows = [];
  for (const row of [...table.body.rows, ...table.table.tFoot?.rows ?? []]) {
    if (!selection.containsNode(row, true)) continue;
    rows.push([...row.cells].filter((cell) => selection.containsNode(cell, true))
      .map((cell) => ({ text: textOf(cell.innerHTML), numeric: isNumeric(table.columns[cell.cellIndex]) })));
  }
  return rows;
}

function copying(event, tables) {
  if (copied) {
    putRows(event.clipboardData, rowsOf(copied));
    event.preventDefault();
    return;
  }
  const selection = document.getSelection();
  const within = selection.rangeCount && selection.getRangeAt(0).commonAncestorContainer;
  const table = within && tables.find(({ box }) => box.contains(within));
  const rows = table ? rowsIn(selection, table) : [];
  // Part of a text is copied as any text is.
  if (!rows.length || (rows.flat().length === 1 && !rows[0][0].numeric)) return;
  putRows(event.clipboardData, rows);
  event.preventDefault();
}
