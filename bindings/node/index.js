'use strict';
// Vantro for Node and Electron: the privacy permissions of a Mac application.
// On macOS it runs over Vantro.framework; on Linux over a simulated Mac made
// with simulate(), so that a permission flow can be tested in CI.
const { EventEmitter } = require('events');
const fs = require('fs');
const path = require('path');

const native = require('./build/vantro.node');

const STATUS = Object.freeze({ notDetermined: 0, denied: 1, authorized: 2 });
const REQUEST_TYPE = Object.freeze({ request: 0, grant: 1, check: 2 });

const vantro = new EventEmitter();

function changed(identifier, oldStatus, newStatus) {
  vantro.emit('change', { identifier, oldStatus, newStatus });
}
let changesRegistered = false;
function registerChanges() {
  native.onChange(changed);
  changesRegistered = true;
}

// The guide lays a window over System Settings and follows the user through
// the Mac's run loop, which only a Cocoa application runs: Electron's main
// process does, plain Node does not. Without one the guide would wait forever.
function needsRunLoop(what) {
  if (process.platform !== 'darwin') return;
  if (process.versions.electron && process.type !== 'renderer') return;
  const error = new Error(`vantro.${what}() needs a Cocoa run loop: call it from Electron's main process ` +
                          '(plain Node runs none, and the guide would never show)');
  error.code = 'VANTRO_ERROR_NO_RUN_LOOP';
  throw error;
}

Object.assign(vantro, {
  STATUS,
  REQUEST_TYPE,
  version: native.version(),
  status: (identifier) => native.status(identifier),
  requestType: (identifier) => native.requestType(identifier),
  request(identifier, { silent = false } = {}) {
    // A request that is not silent may start the guide.
    if (!silent) needsRunLoop('request');
    native.request(identifier, silent);
  },
  guide(identifier, { message } = {}) {
    needsRunLoop('guide');
    native.guide(identifier ?? null, message ?? null);
  },
  stopGuide: () => native.stopGuide(),
  isOverlayShown: () => native.isOverlayShown(),
  categories: () => native.categories(),
  label: (identifier) => native.label(identifier),
  // Watches these categories (replacing the list; [] watches nothing) and
  // emits 'change' for each change of their statuses. With a callback, it
  // also listens, and answers a function that stops both.
  watch(identifiers, callback) {
    if (!changesRegistered) registerChanges();
    native.watch([...identifiers]);
    if (!callback) return () => native.watch([]);
    vantro.on('change', callback);
    return () => {
      vantro.off('change', callback);
      native.watch([]);
    };
  },
  simulate,
});

// Screen Recording, Input Monitoring, Camera, Microphone and Bluetooth: off
// until the host turns them on.
Object.defineProperty(vantro, 'newerCategories', {
  enumerable: true,
  get: () => native.newerCategories(),
  set: (on) => native.setNewerCategories(Boolean(on)),
});

// The simulated Mac (Linux): `macos` is the release, `grant` and `deny`
// categories the user has already decided, `language` the user's language.
let current = null;
function simulate({ macos = '15', grant = [], deny = [], language = 'en' } = {}) {
  if (!native.simulate) throw new Error('vantro.simulate() is for Linux; on macOS Vantro runs on the real Mac');
  if (current) current.destroy();
  const vendored = path.join(__dirname, 'vendor', 'Resources');
  const resources = fs.existsSync(vendored) ? vendored : path.resolve(__dirname, '..', '..', 'Resources');
  const mac = native.simulate(String(macos), language, resources);
  const sim = {
    // Lets virtual time pass: the guide moves, the user's scripted answers come.
    runFor: (seconds) => native.simAct(mac, 4, seconds),
    get now() {
      return native.simNow(mac);
    },
    // The user sets a category in System Settings (a STATUS value).
    setStatus: (identifier, status) => native.simSetStatus(mac, identifier, status),
    grant: (identifier) => native.simSetStatus(mac, identifier, STATUS.authorized),
    deny: (identifier) => native.simSetStatus(mac, identifier, STATUS.denied),
    answerNextPrompt: (allow) => native.simAct(mac, 0, Boolean(allow)),
    leaveHost: () => native.simAct(mac, 1),
    returnToHost: () => native.simAct(mac, 2),
    // The user drags the app's icon from the guide's overlay into the list.
    dragIconIntoList: () => native.simAct(mac, 3),
    destroy() {
      if (current !== sim) return;
      current = null;
      native.simDestroy(mac);
    },
  };
  current = sim;
  if (changesRegistered) registerChanges();
  for (const identifier of grant) sim.grant(identifier);
  for (const identifier of deny) sim.deny(identifier);
  return sim;
}

module.exports = vantro;
