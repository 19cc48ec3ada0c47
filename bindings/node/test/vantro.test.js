'use strict';
// The package on the simulated Mac: what an Electron app's tests would do.
const { test } = require('node:test');
const assert = require('node:assert/strict');
const vantro = require('..');

// Changes reach JavaScript once the event loop is free.
const settle = () => new Promise((resolve) => setTimeout(resolve, 20));

function collect() {
  const heard = [];
  const listener = (change) => heard.push(`${change.identifier} ${change.oldStatus}->${change.newStatus}`);
  vantro.on('change', listener);
  return { heard, stop: () => vantro.off('change', listener) };
}

test('nothing runs before a Mac is made, nor after it is gone', () => {
  assert.throws(() => vantro.status('Privacy_AllFiles'), { code: 'VANTRO_ERROR_NOT_SET_UP' });
  assert.throws(() => vantro.categories(), { code: 'VANTRO_ERROR_NOT_SET_UP' });
  const mac = vantro.simulate();
  assert.equal(vantro.status('Privacy_AllFiles'), vantro.STATUS.denied);
  mac.destroy();
  assert.throws(() => vantro.watch(['Privacy_AllFiles']), { code: 'VANTRO_ERROR_NOT_SET_UP' });
  assert.throws(() => mac.runFor(1), { code: 'VANTRO_ERROR_NOT_SET_UP' });
  assert.equal(vantro.version, '1.0.0');
});

test('bad input is an error with a code, never a crash', () => {
  const mac = vantro.simulate({ macos: '15' });
  const cases = [
    [() => vantro.status(), 'VANTRO_ERROR_NULL_ARGUMENT'],
    [() => vantro.status(42), 'VANTRO_ERROR_NULL_ARGUMENT'],
    [() => vantro.status('Privacy_Bogus'), 'VANTRO_ERROR_UNKNOWN_IDENTIFIER'],
    [() => vantro.status('Privacy_Camera'), 'VANTRO_ERROR_UNKNOWN_IDENTIFIER'],
    [() => vantro.label('Privacy_Bogus'), 'VANTRO_ERROR_UNKNOWN_IDENTIFIER'],
    [() => vantro.request('Privacy_Bogus', { silent: true }), 'VANTRO_ERROR_UNKNOWN_IDENTIFIER'],
    [() => vantro.guide('Privacy_Bogus'), 'VANTRO_ERROR_UNKNOWN_IDENTIFIER'],
    [() => vantro.watch(['Privacy_AllFiles', 'Privacy_Bogus']), 'VANTRO_ERROR_UNKNOWN_IDENTIFIER'],
    [() => vantro.watch([null]), 'VANTRO_ERROR_NULL_ARGUMENT'],
    [() => mac.runFor(-1), 'VANTRO_ERROR_OUT_OF_RANGE'],
    [() => mac.setStatus('Privacy_AllFiles', 7), 'VANTRO_ERROR_UNKNOWN_IDENTIFIER'],
    [() => mac.dragIconIntoList(), 'VANTRO_ERROR_OUT_OF_RANGE'],
    [() => vantro.simulate({ macos: '9.9' }), 'VANTRO_ERROR_OUT_OF_RANGE'],
  ];
  for (const [call, code] of cases) assert.throws(call, { code }, call.toString());
});

test('the category list and labels follow the release, the switch and the language', () => {
  const cases = [
    { macos: '10.13', language: 'en', newer: false, count: 3, first: 'Contacts' },
    { macos: '10.15', language: 'ja', newer: false, count: 15, first: 'フルディスクアクセス' },
    { macos: '15', language: 'fr', newer: true, count: 20, first: 'Accès complet au disque' },
  ];
  for (const c of cases) {
    vantro.simulate({ macos: c.macos, language: c.language });
    vantro.newerCategories = c.newer;
    assert.equal(vantro.newerCategories, c.newer);
    const categories = vantro.categories();
    assert.equal(categories.length, c.count, c.macos);
    assert.equal(vantro.label(categories[0]), c.first);
  }
  vantro.simulate();
  assert.equal(vantro.newerCategories, false, 'a new Mac is a new process');
});

test('a grant made while the app is in the background is told once, when it comes back', async () => {
  const cases = [
    { grant: [], expected: [] },
    { grant: ['Privacy_Calendars'], expected: ['Privacy_Calendars 0->2'] },
    { grant: ['Privacy_Contacts'], expected: [] },
    { grant: ['Privacy_Contacts', 'Privacy_AllFiles', 'Privacy_Calendars'],
      expected: ['Privacy_AllFiles 1->2', 'Privacy_Calendars 0->2'] },
  ];
  for (const c of cases) {
    const mac = vantro.simulate({ macos: '15' });
    const { heard, stop } = collect();
    vantro.watch(['Privacy_AllFiles', 'Privacy_Calendars']);
    mac.leaveHost();
    mac.runFor(1);
    for (const identifier of c.grant) mac.grant(identifier);
    mac.runFor(5);
    await settle();
    assert.deepEqual(heard, [], 'nothing while away');
    mac.returnToHost();
    mac.runFor(10);
    await settle();
    assert.deepEqual(heard, c.expected, c.grant.join());
    stop();
  }
});

test('a whole permission flow: request, guide, drag, back to the app', async () => {
  const mac = vantro.simulate({ macos: '15', grant: ['Privacy_Calendars'] });
  const heard = [];
  const unwatch = vantro.watch(['Privacy_AllFiles', 'Privacy_Calendars'], (change) => heard.push(change));
  assert.equal(vantro.requestType('Privacy_AllFiles'), vantro.REQUEST_TYPE.grant);
  vantro.request('Privacy_AllFiles', { silent: true });
  mac.runFor(3);
  assert.equal(vantro.isOverlayShown(), false, 'a silent request shows nothing');
  vantro.request('Privacy_AllFiles');
  mac.runFor(3);
  assert.equal(vantro.isOverlayShown(), true);
  mac.dragIconIntoList();
  mac.runFor(1.5);  // System Settings asks for the password before it switches the app on
  mac.returnToHost();
  mac.runFor(5);
  await settle();
  assert.equal(vantro.isOverlayShown(), false);
  assert.equal(vantro.status('Privacy_AllFiles'), vantro.STATUS.authorized);
  assert.deepEqual(heard, [{ identifier: 'Privacy_AllFiles', oldStatus: 1, newStatus: 2 }]);
  unwatch();
  mac.leaveHost();
  mac.deny('Privacy_Calendars');
  mac.returnToHost();
  mac.runFor(2);
  await settle();
  assert.equal(heard.length, 1, 'nothing is heard once unwatched');
});

test('the guide starts and stops with or without a message', () => {
  const mac = vantro.simulate({ macos: '15' });
  for (const options of [undefined, { message: 'Drag me into the list, s’il vous plaît' }]) {
    vantro.guide('Privacy_AllFiles', options);
    mac.runFor(3);
    assert.equal(vantro.isOverlayShown(), true);
    vantro.stopGuide();
    assert.equal(vantro.isOverlayShown(), false);
  }
  vantro.guide(null);
  mac.runFor(3);
  vantro.stopGuide();
  mac.destroy();
});
