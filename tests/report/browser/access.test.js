// Who reads the page: in each language and colour, on a narrow screen, by ear, without a script.
import assert from 'node:assert/strict';
import { after, test } from 'node:test';
import axe from 'axe-core';
import { close, open } from './reader.js';

after(close);

const rules = { runOnly: ['wcag2a', 'wcag2aa', 'wcag21a', 'wcag21aa', 'wcag22aa', 'best-practice'] };
const colours = { light: 'rgb(255, 255, 255)', dark: 'rgb(20, 24, 30)' };

for (const [name, colorScheme, language, unfold] of [['small_chs', 'light', 'zh-Hans', '全部展开'],
  ['small_CHT', 'dark', 'zh-Hant', '全部展開'], ['small_EN', 'light', 'en', 'Unfold all'],
  ['large_EN', 'dark', 'en', 'Unfold all']])
  test(`${name} in ${colorScheme} breaks no rule`, async () => {
    // The page's policy would keep the rules' script out as well.
    const page = await open(name, { colorScheme, bypassCSP: true });
    assert.equal(await page.getAttribute('html', 'lang'), language);
    const unfolding = page.getByRole('button', { name: unfold });
    if (colorScheme === 'light') await unfolding.click();
    await page.evaluate(axe.source);
    const { violations } = await page.evaluate((options) => axe.run(options), rules);
    assert.deepEqual(violations.map(({ id, nodes }) => [id, nodes[0].html]), []);
    assert.equal(await unfolding.count(), 1);
    assert.equal(await page.evaluate(() => getComputedStyle(document.documentElement).backgroundColor),
      colours[colorScheme]);
    await page.leave();
  });

test('a narrow screen scrolls nothing but the tables', async () => {
  const page = await open('small_EN', { viewport: { width: 320, height: 640 } });
  assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth));
  await page.leave();
});

test('without a script every row is there', async () => {
  const page = await open('small_EN', { javaScriptEnabled: false });
  assert.equal(await page.locator('#late-table tbody tr').count(), 600);
  assert.equal(await page.locator('.tools, .waiting:visible').count(), 0);
  await page.leave();
});
