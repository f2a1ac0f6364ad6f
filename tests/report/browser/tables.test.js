// What one does with a table.
import assert from 'node:assert/strict';
import { after, test } from 'node:test';
import { close, open, tableOf } from './reader.js';

after(close);

test('search, choice and amount filter together, details with their main rows', async () => {
  const page = await open('small_EN');
  const ledger = tableOf(page, 'ledger');
  await ledger.search.fill('1122 trade');  // the main row and both details
  assert.equal(await ledger.count(), '3 of 6 rows');
  assert.equal(await page.locator('#ledger-table tfoot').isVisible(), false);
  for (const [asked, rows] of [['rounding', 2], ['1234567.8', 3], ['1,234,567.89', 3], ['SCRIPT', 1],
    ['-7.89', 2], ['no such', 0], ['', 6]]) {
    await ledger.search.fill(asked);
    assert.equal(await ledger.count(), `${rows} of 6 rows`, asked);
  }
  for (const [asked, rows] of [['1234567', 4], ['1,234,567.89', 3], ['1234567.90', 0], ['60', 4],
    ['-60', 4], ['0.0900', 6], ['x', 6], ['', 6]]) {
    await ledger.atLeast.fill(asked);
    assert.equal(await ledger.count(), `${rows} of 6 rows`, asked);
    assert.equal(await ledger.atLeast.getAttribute('aria-invalid'), String(asked === 'x'));
  }
  const findings = tableOf(page, 'closing');
  await findings.choice('Severity').selectOption('Serious error');
  await findings.choice('Item').selectOption('Item 3');
  assert.deepEqual(await findings.column(1), ['3', '24', '25']);
  await findings.button('Clear filters').click();
  assert.equal(await findings.count(), '30 of 30 rows');
  await page.leave();
});

test('sorts up, down and back, numbers by value, details after their main row', async () => {
  const page = await open('small_EN');
  const ledger = tableOf(page, 'ledger');
  const difference = ledger.head('Difference');
  for (const [direction, expected] of [
    ['ascending', ['-1.00', '-1.00', '0.00', '67.89', '60.00', '7.89']],
    ['descending', ['67.89', '60.00', '7.89', '0.00', '-1.00', '-1.00']],
    [null, ['67.89', '60.00', '7.89', '0.00', '-1.00', '-1.00']]]) {
    await difference.getByRole('button').click();
    assert.equal(await difference.getAttribute('aria-sort'), direction);
    assert.deepEqual(await ledger.column(4), expected);
  }
  await ledger.head('Receivables').getByRole('button').click();
  assert.deepEqual(await ledger.column(2),
    ['-1,234,567.00', '0.09', '9.00', '1,234,567.89', '0.00', '0.00']);
  await page.leave();
});

test('search in all tables counts by section and unfolds what it finds', async () => {
  const page = await open('small_EN');
  const search = page.getByRole('search').getByRole('searchbox');
  const hits = async () => (await page.locator('nav .hits').allTextContents()).join();
  await search.fill('XSD751388');
  assert.equal(await hits(), '0 hits,0 hits,1 hits');
  assert.equal(await tableOf(page, 'late').rows.first().isVisible(), true);
  await search.fill('');
  assert.equal(await hits(), '');
  assert.equal(await tableOf(page, 'closing').count(), '30 of 30 rows');
  await page.leave();
});

/// What the clipboard was given.
async function copiedBy(page, act) {
  await page.evaluate(() => document.addEventListener('copy', (event) => {
    window.copied = ['text/plain', 'text/html'].map((type) => event.clipboardData.getData(type));
  }, { once: true }));
  await act();
  return page.evaluate(() => window.copied);
}

test('copies numbers as numbers and texts as texts', async () => {
  const page = await open('small_EN');
  const ledger = tableOf(page, 'ledger');
  const [all] = await copiedBy(page, () => ledger.button('Copy').click());
  const lines = all.split('\n');
  assert.deepEqual([lines.length, lines[0], lines[1], lines[5], lines[7]], [8,
    'Account\tReceivables\tLedger\tDifference\tReason',
    '1122 Trade receivables\t1234567.89\t1234500.00\t67.89\t',
    '=1+1\t9.00\t10.00\t-1.00\t<script>alert(1)</script> \u202Eabc\uFFFD',
    'Total\t9.98\t-55.91\t65.89\t']);
  assert.equal(await ledger.count(), '6 rows copied');
  await ledger.search.fill('0050');
  const [filtered, html] = await copiedBy(page, () => ledger.button('Copy').click());
  assert.equal(filtered.split('\n').length, 2);
  assert.match(html, /<td style="mso-number-format:'\\@'">0050<\/td><td>-1234567.00<\/td>/);
  await ledger.search.fill('');
  const selection = await copiedBy(page, async () => {
    await page.evaluate(() => {
      const row = document.querySelector('#account-4');
      getSelection().setBaseAndExtent(row.cells[1].firstChild, 0, row.cells[2].firstChild, 5);
    });
    await page.keyboard.press('Control+c');
  });
  assert.equal(selection[0], '-1234567.00\t-1234566.00');
  await page.leave();
});

test('a long table is drawn where one scrolls', async () => {
  const page = await open('large_EN');
  const { box, rows } = tableOf(page, 'large');
  const seen = () => box.evaluate((it) => {
    const { left, top, height } = it.getBoundingClientRect();
    const row = document.elementFromPoint(left + 20, top + height / 2).closest('tr');
    return Number(/\d+/.exec(row?.cells[0].textContent)?.[0]);
  });
  const settled = () => page.evaluate(() => new Promise((done) =>
    requestAnimationFrame(() => requestAnimationFrame(done))));
  await box.scrollIntoViewIfNeeded();
  await box.focus();
  let last = await seen();
  for (let i = 0; i < 40; ++i) {  // page after page, none left out
    await box.evaluate((it) => it.scrollBy({ top: it.clientHeight - 100, behavior: 'instant' }));
    await settled();
    const now = await seen();
    assert.ok(now > last && now < last + 40, `${now} after ${last}`);
    last = now;
  }
  assert.ok(await rows.count() <= 300);
  for (const [place, low, high] of [[0.5, 25_000, 35_000], [1, 59_900, 60_000], [0, 1, 60]]) {
    await box.evaluate((it, share) => it.scrollTo({ top: it.scrollHeight * share, behavior: 'instant' }), place);
    await settled();
    const now = await seen();
    assert.ok(now >= low && now <= high, `${now} at ${place}`);
  }
  await page.leave();
});
