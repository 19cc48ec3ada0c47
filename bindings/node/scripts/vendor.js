#!/usr/bin/env node
// Before `npm pack`: copies what building Vantro from source takes into
// vendor/, so the package builds on a machine without the repository.
// With --clean, removes it again.
'use strict';
const fs = require('fs');
const path = require('path');

const here = path.resolve(__dirname, '..');
const root = path.resolve(here, '..', '..');
const vendor = path.join(here, 'vendor');
fs.rmSync(vendor, { recursive: true, force: true });
if (!process.argv.includes('--clean')) {
  for (const entry of ['CMakeLists.txt', 'src', 'include', 'Resources', 'tools', 'examples'])
    fs.cpSync(path.join(root, entry), path.join(vendor, entry), { recursive: true });
}
