// read.mjs PACKAGES FOLDER...: what the npm packages below PACKAGES show of the profiles in each folder, as a line of
// JSON a folder. A reader that refuses a file shows {"refused": REASON}.
import fs from 'node:fs'
import { createRequire } from 'node:module'
import path from 'node:path'
import vm from 'node:vm'

const [packages, ...folders] = process.argv.slice(2)
const require = createRequire(path.join(path.resolve(packages), 'package.json'))

// Speedscope comes as one script for a browser. It runs here up to where it draws, with things in place of a browser
// that do nothing; what it reads files with is taken out of it by the name that its modules know it by.
async function speedscope() {
  const release = path.join(path.dirname(require.resolve('speedscope/package.json')), 'dist/release')
  const script = fs.readdirSync(release).find(name => /^speedscope-.*\.js$/.test(name))
  const parts = fs.readFileSync(path.join(release, script), 'utf8').split('{importFromFileSystemDirectoryEntry:')
  if (parts.length !== 2) throw new Error('This speedscope keeps its importer elsewhere: ' + script)
  const nothing = () => new Proxy(function () {}, {
    get: (_, key) => (key === Symbol.toPrimitive ? () => '' : key === 'then' ? undefined : nothing()),
    set: () => true, apply: nothing, construct: nothing
  })
  const quiet = { log() {}, warn() {}, error() {}, assert() {} }
  const browser = { console: quiet, TextDecoder, TextEncoder, performance, setTimeout, clearTimeout, URL, URLSearchParams,
    requestAnimationFrame() {}, devicePixelRatio: 1, location: { hash: '', protocol: 'file:' } }
  for (const name of ['document', 'window', 'self', 'navigator', 'localStorage', 'matchMedia', 'HTMLCanvasElement']) {
    browser[name] = nothing()
  }
  vm.createContext(browser)
  try {
    vm.runInContext(parts.join('globalThis.importer={importFromFileSystemDirectoryEntry:'), browser)
  } catch (error) {
    if (browser.importer === undefined) throw error
  }
  await new Promise(resolve => setTimeout(resolve, 0))
  const read = browser.importer.importProfileGroupFromText()
  return async (text, name) => {
    const group = await read(name, text)
    if (group === null) throw new Error('no profile')
    return group.profiles.map(profile => {
      const frames = []
      profile.forEachFrame(frame =>
        frames.push([frame.file ?? null, frame.name, frame.getTotalWeight(), frame.getSelfWeight()]))
      return [profile.getName(), frames]
    })
  }
}

// The model behind the timeline of Chrome's developer tools. Its times are milliseconds.
function tracelib() {
  const TracingModel = require('tracelib/build/devtools/tracingModel').default
  return text => {
    const model = new TracingModel()
    model.addEvents(JSON.parse(text).traceEvents)
    model.tracingComplete()
    const micros = millis => Math.round(millis * 1000)
    return model.sortedProcesses().flatMap(process => process.sortedThreads().flatMap(thread =>
      thread.events().filter(event => event.phase === 'X').map(event =>
        [process.name(), thread.name(), event.name, event.categoriesString, micros(event.startTime), micros(event.duration),
          event.args.record, event.args.line])))
  }
}

// Says also in which event each one stands.
function traceModel() {
  const { buildModel } = require('@tracerbench/trace-model')
  return text => buildModel(JSON.parse(text)).processes.flatMap(process => process.threads.flatMap(thread =>
    thread.events.filter(event => event.isComplete()).map(event =>
      [process.name, thread.name, event.name, event.traceEvent.cat, event.start, event.duration, event.traceEvent.args.record,
        event.parent?.traceEvent.args.record ?? null])))
}

// Complete events that begin together are told apart by their ends alone. Where one of them takes no time, speedscope
// ends it ahead of its begin; it is not shown those.
function withoutMoments(text) {
  const trace = JSON.parse(text)
  trace.traceEvents = trace.traceEvents.filter(event => event.dur !== 0)
  return JSON.stringify(trace)
}

const flameGraph = await speedscope()
const READERS = {
  'speedscope .folded': ['profile.folded', flameGraph],
  'speedscope .speedscope.json': ['profile.speedscope.json', flameGraph],
  'speedscope .trace.json': ['profile.trace.json', (text, name) => flameGraph(withoutMoments(text), name)],
  'speedscope .callgrind': ['profile.callgrind', flameGraph],
  'tracelib .trace.json': ['profile.trace.json', tracelib()],
  'trace-model .trace.json': ['profile.trace.json', traceModel()]
}

for (const folder of folders) {
  const shown = {}
  for (const [reader, [name, read]] of Object.entries(READERS)) {
    try {
      shown[reader] = await read(fs.readFileSync(path.join(folder, name), 'utf8'), name)
    } catch (error) {
      shown[reader] = { refused: String(error) }
    }
  }
  fs.writeSync(1, JSON.stringify(shown) + '\n')
}
