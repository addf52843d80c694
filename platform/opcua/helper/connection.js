// One server as one user: logs on, writes and reads for its channels, and comes back when the server does.
import { AttributeIds, MessageSecurityMode, OPCUAClient, SecurityPolicy, StatusCodes, UserTokenType } from 'node-opcua-client';
import { Certificates } from './certificates.js';
import { findTags, variantFor } from './tags.js';

const kPause = 1000;        // between two tries, milliseconds
const kLimit = 3000;        // of one request
const kOpenLimit = 8000;    // of logging on, with its look at the certificates
const kIdle = 1000;         // an idle server is asked whether it is there, and its session kept
const kSessionTimeout = 5000;
const kServerState = { nodeId: 'i=2259', attributeId: AttributeIds.Value };

function within(milliseconds, what, promise) {
  let timer;
  const late = new Promise((_, reject) => {
    timer = setTimeout(() => reject(new Error(`no answer to ${what} for ${milliseconds / 1000} s`)), milliseconds);
  });
  return Promise.race([promise, late]).finally(() => clearTimeout(timer));
}

export class Connection {
  ended;  // a promise: no channel is left, and the session is closed

  #server;
  #folder;
  #forget;
  #channels = new Set();
  #client = null;
  #session = null;
  #lost = '';
  #wake = () => {};
  #woken = false;

  /// `forget` is called when the last channel has left.
  constructor(server, folder, forget) {
    this.#server = server;
    this.#folder = folder;
    this.#forget = forget;
  }

  add(channel) {
    this.#channels.add(channel);
    this.ended ??= this.#run();
    this.wake();
  }

  remove(channel) {
    channel.leaving = true;
    this.wake();
  }

  wake() {
    this.#woken = true;
    this.#wake();
  }

  async #run() {
    while (this.#channels.size > 0) {
      try {
        await this.#open();
        await this.#serve();
      } catch (fault) {
        for (const channel of this.#channels) channel.lose(this.#lost || this.#describe(fault));
      }
      await this.#close();
      for (const channel of this.#channels) if (channel.leaving) this.#channels.delete(channel);
      if (this.#channels.size > 0) await this.#rest(kPause, false);
      for (const channel of this.#channels) if (channel.leaving) this.#channels.delete(channel);
    }
    this.#forget();
  }

  /// Until `milliseconds` have passed, or something is to be done if `forWork`.
  async #rest(milliseconds, forWork) {
    if (forWork && this.#woken) return;
    await new Promise((resolve) => {
      const timer = setTimeout(resolve, milliseconds);
      this.#wake = () => {
        const leaving = [...this.#channels].some((channel) => channel.leaving);
        if (!forWork && !leaving) return;
        clearTimeout(timer);
        resolve();
      };
    });
    this.#wake = () => {};
  }

  async #open() {
    const { endpoint, mode, policy, user, password } = this.#server;
    const secure = mode !== 'None';
    this.#lost = '';
    this.#client = OPCUAClient.create({
      applicationName: 'Tarvex',
      applicationUri: Certificates.applicationUri,
      clientName: 'Tarvex',
      connectionStrategy: { initialDelay: 100, maxDelay: 100, maxRetry: 0 },
      transportTimeout: kLimit,
      defaultTransactionTimeout: kLimit,
      requestedSessionTimeout: kSessionTimeout,
      keepSessionAlive: false,
      endpointMustExist: false,
      securityMode: MessageSecurityMode[mode],
      securityPolicy: secure ? SecurityPolicy[policy] : SecurityPolicy.None,
      ...await Certificates.optionsFor(this.#folder),
    });
    this.#client.on('connection_lost', () => this.#lose('Connection lost'));
    this.#client.on('close', () => this.#lose('Connection closed'));
    const identity = user === '' ? { type: UserTokenType.Anonymous } : { type: UserTokenType.UserName, userName: user, password };
    const opening = (async () => {
      await this.#client.connect(endpoint);
      return this.#client.createSession(identity);
    })();
    opening.catch(() => {});
    this.#session = await within(kOpenLimit, 'connecting', opening);
    this.#session.on('session_closed', () => this.#lose('Session ended by the server'));
  }

  #lose(why) {
    this.#lost ||= why;
    this.wake();
  }

  async #serve() {
    while (true) {
      if (this.#lost) throw new Error(this.#lost);
      this.#woken = false;
      for (const channel of this.#channels) {
        if (channel.resolved) continue;
        const { found, missing } = await within(kLimit, 'looking for tags', findTags(this.#session, channel.tagNames));
        channel.takeTags(found, missing);
      }
      const idle = !(await this.#exchange());
      if (idle && this.#idleFor() >= kIdle) await this.#ask([kServerState]);
      for (const channel of this.#channels) if (channel.leaving && !channel.dirty) this.#channels.delete(channel);
      if (this.#channels.size === 0) return;
      await this.#rest(kIdle, true);
    }
  }

  #lastAnswer = Date.now();
  #idleFor() { return Date.now() - this.#lastAnswer; }

  async #ask(nodes) {
    const answer = await within(kLimit, 'a read', this.#session.read(nodes));
    this.#lastAnswer = Date.now();
    return answer;
  }

  /// Writes what has changed and reads the commands behind it, for all channels at once. False if there was nothing.
  async #exchange() {
    const reading = [...this.#channels].filter((channel) => channel.wantsRead);
    const seqs = reading.map((channel) => channel.seq);
    for (const channel of reading) channel.wantsRead = false;
    const writes = [...this.#channels].flatMap((channel) => channel.takeWrites());
    if (writes.length > 0) await this.#write(writes);
    if (reading.length > 0) await this.#readCommands(reading, seqs);
    return writes.length + reading.length > 0;
  }

  async #write(writes) {
    const ready = [];
    for (const write of writes) {
      const { variant, refusal } = variantFor(write.tag.dataType, write.value);
      if (refusal) write.channel.takeAnswer(write, refusal);
      else ready.push({ ...write, variant });
    }
    if (ready.length === 0) return;
    try {
      const answers = await this.#send(ready);
      const again = ready.filter((write, at) => answers[at].equals(StatusCodes.BadWriteNotSupported) && !write.tag.plain);
      for (const write of again) write.tag.plain = true;
      const second = again.length > 0 ? await this.#send(again) : [];
      ready.forEach((write, at) => {
        const index = again.indexOf(write);
        const answer = index < 0 ? answers[at] : second[index];
        write.channel.takeAnswer(write, answer.isGoodish() ? '' : answer.description || answer.name);
      });
    } catch (fault) {
      for (const write of ready) write.channel.putBack(write);
      throw fault;
    }
  }

  async #send(writes) {
    const nodes = writes.map(({ tag, variant, time, quality }) => ({
      nodeId: tag.nodeId,
      attributeId: AttributeIds.Value,
      value: tag.plain ? { value: variant } : { value: variant, statusCode: quality, sourceTimestamp: time },
    }));
    const answers = await within(kLimit, 'a write', this.#session.write(nodes));
    this.#lastAnswer = Date.now();
    return answers;
  }

  async #readCommands(channels, seqs) {
    const wanted = channels.flatMap((channel) => channel.commandTags());
    const nodes = wanted.filter(Boolean).map(({ nodeId }) => ({ nodeId, attributeId: AttributeIds.Value }));
    const answers = nodes.length > 0 ? await this.#ask(nodes) : [];
    let next = 0;
    const values = wanted.map((tag) => (tag ? answers[next++] : null));
    channels.forEach((channel, at) => channel.takeCommandValues(seqs[at], values.slice(3 * at, 3 * at + 3)));
  }

  async #close() {
    const [client, session] = [this.#client, this.#session];
    this.#client = this.#session = null;
    if (!client) return;
    client.removeAllListeners();
    session?.removeAllListeners();
    try {
      if (session && !this.#lost) await within(kLimit, 'closing', session.close());
      await within(kLimit, 'closing', client.disconnect());
    } catch {
      // it is gone all the same
    }
  }

  #describe(fault) {
    return Certificates.explain(fault, this.#folder) ?? `Not connected to ${this.#server.endpoint}: ${fault.message.split('\n')[0].replace(/[\s,.]+$/, '')}`;
  }
}
