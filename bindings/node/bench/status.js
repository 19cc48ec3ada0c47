#!/usr/bin/env node
// The cost of vantro.status() in Node, on the simulated Mac: run it after
// scripts/test-node (or any build of the add-on) with
//   node bindings/node/bench/status.js
// and compare with the C call alone:
//   build/ci/vantro_bench --benchmark_filter=BM_CStatusCall
// The difference is what the package adds (the goal: under 5 µs).
'use strict';
const vantro = require('..');

const mac = vantro.simulate({ macos: '10.15' });
const identifier = 'Privacy_Calendars';
const rounds = 200000;
for (let i = 0; i < 10000; i++) vantro.status(identifier);
// Wall time and processor time, as Google Benchmark reports them for the C call.
let best = Infinity;
let bestCpu = Infinity;
for (let run = 0; run < 5; run++) {
  const start = process.hrtime.bigint();
  const cpu = process.cpuUsage();
  for (let i = 0; i < rounds; i++) vantro.status(identifier);
  const used = process.cpuUsage(cpu);
  best = Math.min(best, Number(process.hrtime.bigint() - start) / rounds);
  bestCpu = Math.min(bestCpu, ((used.user + used.system) * 1000) / rounds);
}
console.log(`vantro.status('${identifier}'): ${best.toFixed(0)} ns a call, ${bestCpu.toFixed(0)} ns of processor ` +
            `(best of 5 × ${rounds})`);
mac.destroy();
