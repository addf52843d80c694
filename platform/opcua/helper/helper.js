// Serves the OPC UA connections of all channels. The manager writes one JSON object a line on standard input and reads
// one a line from standard output; docs/interfaces.md names them. Nothing here waits for the manager, and the end of
// its input is the end of this process.
import { createInterface } from 'node:readline';

function send(message) {
  process.stdout.write(`${JSON.stringify(message)}\n`);
}

console.log = console.info = console.error;  // what libraries print is not for the manager

if (Number(process.versions.node.split('.')[0]) < 18) {
  send({ fatal: `Node.js 18 or later is needed, this is ${process.versions.node}` });
  process.exit(1);
}
let Plant;
try {
  ({ Plant } = await import('./plant.js'));
} catch (fault) {
  if (fault.code !== 'ERR_MODULE_NOT_FOUND') throw fault;
  send({ fatal: `modules of the OPC client are missing: run "npm ci" in ${import.meta.dirname ?? new URL('.', import.meta.url).pathname}` });
  process.exit(1);
}

const plant = new Plant(process.argv[2], send);
const operations = {
  connect: (message) => plant.connect(message),
  update: (message) => plant.update(message.channels),
  disconnect: (message) => plant.disconnect(message.ch),
  ping: () => send({ pong: true }),
  end: () => { plant.endOrdered = true; },
};

// The manager asks once a second. What it held when it fell silent is not sure to be true any more.
const kLongestSilence = 4;  // seconds
let silence = 0;
setInterval(() => {
  if (++silence >= kLongestSilence) plant.vouch(false);
}, 1000).unref();

process.stdout.on('error', () => {});  // the manager is gone: the end of the input says what to do
const lines = createInterface({ input: process.stdin });
lines.on('line', (line) => {
  silence = 0;
  plant.vouch(true);
  const message = JSON.parse(line);
  operations[message.op](message);
});
lines.on('close', async () => {
  setTimeout(() => process.exit(0), 2000).unref();
  await plant.end();
  process.exit(0);
});
for (const signal of ['SIGTERM', 'SIGINT', 'SIGHUP']) process.on(signal, () => {});  // the manager tells when it ends
send({ hello: process.versions.node });
