// A reader's browser: pages opened in it must ask nothing of anywhere and complain of nothing.
import assert from 'node:assert/strict';
import { chromium } from 'playwright-core';

const flags = ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
  '--disable-background-networking', '--disable-component-update', '--disable-sync'];
export const folder = process.env.REPORT_PAGES;
export const languages = ['chs', 'CHT', 'EN'];

const browser = await chromium.launch({ executablePath: process.env.CHROMIUM, args: flags });
export const close = () => browser.close();

/// Opens a page in a context of its own; `options` are those of the context.
export async function open(name, options = {}) {
  const context = await browser.newContext({
    viewport: { width: 1280, height: 900 }, reducedMotion: 'reduce', ...options,
  });
  const page = await context.newPage();
  const faults = [];
  page.on('console', (message) => faults.push(message.text()));
  page.on('pageerror', (error) => faults.push(error.stack));
  page.on('request', (request) => {
    if (!request.url().startsWith('file://')) faults.push(`asks for ${request.url()}`);
  });
  await page.goto(`file://${folder}/${name}.html`);
  page.leave = async () => {
    await context.close();
    assert.deepEqual(faults, []);
  };
  return page;
}

/// The table `id`-table of the page with its tools.
export function tableOf(page, id) {
  const place = page.locator('.table', { has: page.locator(`table#${id}-table`) });
  return {
    search: place.locator('.tools input[type=search]'),
    atLeast: place.locator('.tools input[inputmode=decimal]'),
    choice: (name) => place.locator('.tools').getByLabel(name),
    button: (name) => place.locator('.tools').getByRole('button', { name }),
    head: (name) => place.getByRole('columnheader', { name }),
    count: () => place.locator('output').textContent(),
    box: place.locator('.box'),
    rows: place.locator('tbody tr'),
    /// What stands in a column, from the top.
    column: (index) => place.locator(`tbody tr td:nth-child(${index})`).allTextContents(),
  };
}
