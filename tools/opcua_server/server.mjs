// A UA server with the seven tags of each scale, as a process control system has them: for the demonstration and the
// tests. Lines on standard input: "set TAG VALUE", "get TAG" (answered by one JSON object a line), "slow MILLISECONDS".
import { mkdirSync } from 'node:fs';
import { createRequire } from 'node:module';
import { createInterface } from 'node:readline';
import { parseArgs } from 'node:util';

console.log = console.error;  // what libraries print is no answer
function print(line) {
  process.stdout.write(`${line}\n`);
}

const modules = createRequire(new URL('../../platform/opcua/helper/', import.meta.url));
const { OPCUACertificateManager } = modules('node-opcua-certificate-manager');
const { DataType, MessageSecurityMode, SecurityPolicy, StatusCodes, Variant } = modules('node-opcua-client');
const { OPCUAServer } = modules('node-opcua-server');

const { values: options } = parseArgs({
  options: {
    port: { type: 'string', default: '4840' },
    scales: { type: 'string', default: '2' },
    folder: { type: 'string' },                            // of the server's certificates
    secure: { type: 'boolean', default: false },           // SignAndEncrypt alone
    user: { type: 'string', default: '' },                 // name:password, and nobody else
    type: { type: 'string', multiple: true, default: [] }, // TAG=Type
    print: { type: 'boolean', default: false },            // each change as a line
  },
});

const kKinds = [
  ['GROSS', 'Double'], ['TARE', 'Double'], ['NET', 'Double'], ['SCALESTAT', 'Int16'],
  ['CMD', 'Int16'], ['CMDPARM', 'Double'], ['CMDSTAT', 'Int16'],
];

mkdirSync(options.folder, { recursive: true });
const [userName, password] = options.user.split(':');
const server = new OPCUAServer({
  port: Number(options.port),
  serverCertificateManager: new OPCUACertificateManager({ rootFolder: options.folder, automaticallyAcceptUnknownCertificate: true }),
  securityModes: options.secure ? [MessageSecurityMode.SignAndEncrypt] : [MessageSecurityMode.None, MessageSecurityMode.Sign, MessageSecurityMode.SignAndEncrypt],
  securityPolicies: options.secure ? [SecurityPolicy.Basic256Sha256] : [SecurityPolicy.None, SecurityPolicy.Basic256Sha256],
  allowAnonymous: options.user === '',
  userManager: { isValidUser: (name, word) => name === userName && word === password },
  serverInfo: { applicationUri: 'urn:plant:control' },
});
await server.initialize();

const tags = new Map();
const types = new Map(options.type.map((text) => text.split('=')));
const { addressSpace } = server.engine;
const plant = addressSpace.registerNamespace('urn:plant');
const scales = plant.addFolder(addressSpace.rootFolder.objects, { browseName: 'Scales' });
for (let number = 1; number <= Number(options.scales); ++number) {
  for (const [kind, usual] of kKinds) {
    const name = `SCALE_${number}/${kind}.CV`;
    const dataType = DataType[types.get(name) ?? usual];
    const access = 'CurrentRead | CurrentWrite | StatusWrite | TimestampWrite';
    const node = plant.addVariable({
      organizedBy: scales, browseName: name, nodeId: `s=${name}`, dataType, accessLevel: access, userAccessLevel: access,
    });
    node.setValueFromSource(new Variant({ dataType, value: dataType === DataType.String ? '' : 0 }), StatusCodes.UncertainInitialValue);
    if (options.print) {
      node.on('value_changed', (data) => print(`${name} = ${data.value.value}${data.statusCode.isGood() ? '' : `  (${data.statusCode.name})`}`));
    }
    tags.set(name, { node, dataType });
  }
}

// A session that is lost takes its weights with it: nobody renews them.
server.engine.on('session_closed', (session, deleteSubscriptions, reason) => {
  if (reason === 'Terminated' || reason === 'CloseSession') return;
  for (const [name, { node }] of tags) {
    if (/CMD/.test(name)) continue;
    node.setValueFromSource(node.readValue().value, StatusCodes.BadNoCommunication);
  }
});

await server.start();
print(`ready ${server.getEndpointUrl()}`);

const lines = createInterface({ input: process.stdin });
lines.on('line', (line) => {
  const [word, name, value] = line.split(' ');
  if (word === 'slow') {  // a server that is busy with something else
    const end = Date.now() + Number(name);
    while (Date.now() < end);
    return;
  }
  const { node, dataType } = tags.get(name);
  if (word === 'set') node.setValueFromSource(new Variant({ dataType, value: dataType === DataType.String ? value : Number(value) }));
  const data = node.readValue();
  print(JSON.stringify({ tag: name, value: data.value.value, status: data.statusCode.name, time: data.sourceTimestamp?.getTime() ?? 0 }));
});
lines.on('close', async () => {
  await server.shutdown(100);
  process.exit(0);
});
