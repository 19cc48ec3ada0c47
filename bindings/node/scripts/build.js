#!/usr/bin/env node
// Builds the add-on with CMake (npm runs this on install). Vantro's own
// sources are the package's vendor/ folder, or the repository around it.
// VANTRO_LIBRARY_DIR names a build of Vantro that already holds libvantro
// (Linux) or Vantro.framework (macOS), and then only the add-on is built.
// VANTRO_BUILD_TYPE chooses how Vantro is built from source (Release unless
// told otherwise).
'use strict';
const { execFileSync } = require('child_process');
const fs = require('fs');
const os = require('os');
const path = require('path');

const here = path.resolve(__dirname, '..');
const vendored = path.join(here, 'vendor');
const source = fs.existsSync(path.join(vendored, 'CMakeLists.txt')) ? vendored : path.resolve(here, '..', '..');
const headers = path.join(path.dirname(require.resolve('node-api-headers/package.json')), 'include');
const jobs = String(Math.max(1, os.cpus().length));

function run(program, args) {
  execFileSync(program, args, { stdio: 'inherit' });
}

// Ninja where it is installed, the platform's make otherwise.
function hasNinja() {
  try {
    execFileSync('ninja', ['--version'], { stdio: 'ignore' });
    return true;
  } catch {
    return false;
  }
}
const generator = hasNinja() ? ['-G', 'Ninja'] : [];

let library = process.env.VANTRO_LIBRARY_DIR;
const macFlags = process.platform === 'darwin' ? ['-DCMAKE_OSX_ARCHITECTURES=arm64;x86_64'] : [];
if (!library) {
  library = path.join(here, 'build', 'vantro');
  run('cmake', ['-S', source, '-B', library, ...generator, `-DCMAKE_BUILD_TYPE=${process.env.VANTRO_BUILD_TYPE || 'Release'}`, '-DVANTRO_BUILD_TESTS=OFF',
                '-DVANTRO_BUILD_BENCH=OFF', ...macFlags]);
  run('cmake', ['--build', library, '--target', process.platform === 'darwin' ? 'Vantro' : 'vantro_c', '--parallel', jobs]);
}
// The add-on is one file: it is configured afresh each time.
const addon = path.join(here, 'build', 'addon');
fs.rmSync(addon, { recursive: true, force: true });
run('cmake', ['-S', here, '-B', addon, ...generator, '-DCMAKE_BUILD_TYPE=Release', `-DVANTRO_SOURCE_DIR=${source}`,
              `-DVANTRO_LIBRARY_DIR=${path.resolve(library)}`, `-DNODE_API_HEADERS=${headers}`, ...macFlags]);
run('cmake', ['--build', addon, '--parallel', jobs]);
