// Links, folding, keyboard, paper.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { after, test } from 'node:test';
import { close, folder, open, tableOf } from './reader.js';

after(close);

const focused = (page) => page.evaluate(() => document.activeElement.id);

test('links lead to what is folded, filtered away or not drawn, and back', async () => {
  const page = await open('small_EN');
  const { rows, search } = tableOf(page, 'ledger');
  await search.fill('0050');
  await page.locator('#closing-9 a').click();
  assert.equal(await focused(page), 'reason-3');
  assert.equal(await rows.count(), 6);
  assert.equal(await page.locator('.marked').getAttribute('id'), 'reason-3');
  await page.locator('#reason-3 a').click();
  assert.equal(await focused(page), 'closing-9');
  await page.goBack();
  assert.equal(await focused(page), 'reason-3');
  await page.goBack();
  assert.equal(await focused(page), 'closing-9');

  await page.getByRole('button', { name: 'Fold all', exact: true }).click();
  await page.locator('ol a').click();
  assert.equal(await focused(page), 'closing-3');
  assert.equal(await page.locator('#closing-3').isVisible(), true);
  await page.locator('nav a', { hasText: 'More' }).click();
  assert.equal(await focused(page), 'more');
  await page.leave();

  const other = await open('small_EN');
  const address = `${other.url()}#late-590`;
  await other.goto('about:blank');
  await other.goto(address);
  assert.equal(await focused(other), 'late-590');
  assert.ok(await other.evaluate(() => {
    const { top, bottom } = document.activeElement.getBoundingClientRect();
    return top > 0 && bottom < innerHeight;
  }));
  await other.leave();
});

test('the keyboard suffices', async () => {
  const page = await open('small_EN');
  const press = (key) => page.keyboard.press(key);
  await press('Tab');
  await press('Enter');
  assert.equal(await focused(page), 'page-content');
  const summary = page.locator('#closing > details > summary');
  await summary.focus();
  await press('Enter');
  assert.equal(await page.locator('#closing > details').getAttribute('open'), null);
  await press('Enter');
  await press('Tab');
  await page.keyboard.type('xsd7919 of');
  assert.equal(await tableOf(page, 'closing').count(), '1 of 30 rows');
  for (let i = 0; i < 7; ++i) await press('Tab');  // choices, amount, clear, copy, box, first head
  await press('Space');
  assert.equal(await page.locator('#closing-table th').first().getAttribute('aria-sort'), 'ascending');
  assert.equal(await page.evaluate(() => getComputedStyle(document.activeElement).outlineStyle), 'solid');
  await page.leave();
});

test('paper has everything, heads and page numbers on each sheet', async () => {
  for (const javaScriptEnabled of [true, false]) {
    const page = await open('small_EN', { javaScriptEnabled });
    if (javaScriptEnabled) await tableOf(page, 'closing').search.fill('no such');
    const file = join(folder, `paper_${javaScriptEnabled}.pdf`);
    await page.pdf({ path: file, preferCSSPageSize: true });
    const sheets = execFileSync(process.env.PDFTOTEXT, ['-layout', file, '-'], { encoding: 'utf8' })
      .split('\f').slice(0, -1);
    sheets.forEach((sheet, i) => assert.match(sheet, new RegExp(`\\b${i + 1} / ${sheets.length}\\n`)));
    const text = sheets.join('');
    for (let i = 1; i <= 600; ++i)
      assert.ok(text.includes(`XSD${i * 7919 % 1_000_003} `), `row ${i}`);
    for (const sheet of sheets)
      if (/Document XSD/.test(sheet)) assert.match(sheet, /No\. .*Severity.*Amount/);
    assert.equal(text.match(/Total .*65\.89/g).length, 1);
    assert.match(text, /Auditor +Name +Date +Signature/);
    assert.doesNotMatch(text, /Unfold all|Amount at least/);
    if (javaScriptEnabled) assert.equal(await tableOf(page, 'closing').count(), '0 of 30 rows');
    await page.leave();
  }
});

test('a page saved from a browser has lost nothing', async () => {
  const page = await open('small_EN');
  await tableOf(page, 'closing').search.fill('no such');
  const saved = await page.content();
  await page.leave();
  writeFileSync(join(folder, 'saved.html'), saved);
  const again = await open('saved');
  assert.equal(await tableOf(again, 'closing').count(), '30 of 30 rows');
  assert.equal(await tableOf(again, 'late').count(), '600 of 600 rows');
  assert.equal(await again.locator('.tools').count(), 4);
  await again.leave();
});
