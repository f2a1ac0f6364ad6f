// 60,000 rows stay usable. What is asked for is a second; what fails is far above it, since
// machines differ.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { join } from 'node:path';
import { after, test } from 'node:test';
import { close, folder, languages, open, tableOf } from './reader.js';

after(close);

test('the page is about as large as its rows as JSON', () => {
  for (const language of languages) {
    const page = readFileSync(join(folder, `large_${language}.html`), 'utf8');
    const names = [...page.matchAll(/data-column[^>]*>([^<]*)/g)].map(([, name]) => name);
    const rows = page.slice(page.indexOf('<tbody>'), page.indexOf('</table>')).split('<tr').slice(1).map((row) => row.split('<td')
      .slice(1).map((cell, i) => [names[i], cell.replace(/^[^>]*>|<.*?>/g, '')]));
    assert.equal(rows.length, 60_000);
    const json = JSON.stringify(rows.map((cells) => Object.fromEntries(cells)));
    assert.ok(Buffer.byteLength(page) <= 1.2 * Buffer.byteLength(json), language);
  }
});

test('first paint and search', async (context) => {
  const page = await open('large_EN');
  const { search, head, count } = tableOf(page, 'large');
  const timed = async (act) => {
    const start = performance.now();
    await act();
    await page.evaluate(() => new Promise((done) => requestAnimationFrame(() => setTimeout(done))));
    return performance.now() - start;
  };
  const took = await page.evaluate(() => ({
    'first paint': performance.getEntriesByName('first-paint')[0].startTime,
    'ready to search': performance.getEntriesByType('navigation')[0].domContentLoadedEventEnd,
  }));
  took.search = await timed(() => search.fill('xsd1234'));
  assert.equal(await count(), '11 of 60,000 rows');
  took.sort = await timed(() => head('Amount').getByRole('button').click());
  for (const [what, milliseconds] of Object.entries(took)) {
    context.diagnostic(`${what}: ${Math.round(milliseconds)} ms`);
    assert.ok(milliseconds < 5_000, what);
  }
  await page.leave();
});
