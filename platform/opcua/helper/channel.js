// One channel: its tags, the last value of each item, and what the server made of it.
import { StatusCodes } from 'node-opcua-client';
import { numberOf } from './tags.js';

const kWeights = [0, 1, 2];
const kStatus = 3;
const kCommandItems = [4, 5, 6];
const kOffline = 16;  // bit of the status word: the weights are old

export class Channel {
  seq = 0;             // of the last update
  wantsRead = false;
  leaving = false;
  quality = StatusCodes.Good;

  #send;
  #items = new Map();  // item number to { value, time, dirty, found }; found: the server held it of before
  #tags = null;        // item number to ServerTag, once they have been looked for
  #refusals = new Map();  // item number to what stood in the way of its last value
  #told = '';
  #lastValues = '';
  #vouched = true;  // the manager is there, and says so

  constructor(number, tagNames, send) {
    this.number = number;
    this.tagNames = Object.entries(tagNames).map(([item, name]) => ({ item: Number(item), name }));
    this.#send = send;
  }

  get resolved() { return this.#tags !== null; }
  get dirty() { return this.resolved && [...this.#items].some(([item, state]) => state.dirty && this.#tags.has(item)); }

  /// Values of an update, [item, value, milliseconds]; of each item only the last one counts.
  take(seq, read, items) {
    this.seq = seq;
    this.wantsRead ||= read;
    for (const [item, value, time] of items) this.#items.set(item, { value, time: new Date(time), dirty: true });
    this.#judge();
  }

  /// While the manager says nothing, or when it has been killed, nobody vouches for the weights.
  vouch(vouched) {
    this.#vouched = vouched;
    if (!vouched && !this.#items.has(kStatus)) {
      this.#items.set(kStatus, { value: kOffline, time: new Date(), found: true });
    }
    this.#judge();
  }

  /// The weights carry the quality of what the status word says, also those that have not changed.
  #judge() {
    const offline = this.#items.get(kStatus)?.value & kOffline;
    const whileVouched = offline ? StatusCodes.UncertainLastUsableValue : StatusCodes.Good;
    const quality = this.#vouched ? whileVouched : StatusCodes.BadNoCommunication;
    if (quality === this.quality) return;
    this.quality = quality;
    for (const item of [...kWeights, kStatus]) if (this.#items.has(item)) this.#items.get(item).dirty = true;
  }

  takeTags(found, missing) {
    this.#tags = found;
    this.#doubtWhatIsHeld();
    const count = this.tagNames.length;
    const text = `${found.size} of ${count} tags found`;
    this.tell(`Connected, ${missing.length === 0 ? text : `${text}, missing ${missing.join(', ')}`}`, true);
  }

  /// Weights that the server holds as good, and the manager has not told of yet, are of another run that may have ended
  /// long ago without a word.
  #doubtWhatIsHeld() {
    for (const item of [...kWeights, kStatus]) {
      const held = this.#tags.get(item)?.held;
      const value = numberOf(held);
      if (value === null || this.#items.has(item)) continue;
      const time = held.sourceTimestamp ?? new Date();
      this.#items.set(item, { value: item === kStatus ? value | kOffline : value, time, dirty: true, found: true });
    }
    this.#judge();
  }

  /// The server is away: what it holds is not known, and the weights are written again when it is back,
  /// and what it refused is tried again.
  lose(reason) {
    this.#tags = null;
    this.#lastValues = '';
    for (const [item, state] of this.#items) {
      if (state.found) this.#items.delete(item);
      else if (item <= kStatus || this.#refusals.has(item)) state.dirty = true;
    }
    this.#judge();
    this.tell(reason, false);
  }

  /// What the state has become, once.
  tell(status, connected) {
    if (status === this.#told) return;
    this.#told = status;
    this.#send({ ch: this.number, status, connected });
  }

  /// What is to be written: tag, value, quality and time. Taken is taken; `putBack` is for what failed.
  takeWrites() {
    const writes = [];
    for (const [item, state] of this.#items) {
      const tag = this.#tags?.get(item);
      if (!state.dirty || !tag) continue;
      state.dirty = false;
      const doubted = state.found && this.quality.isGood() ? StatusCodes.UncertainLastUsableValue : this.quality;
      const quality = item <= kStatus ? doubted : StatusCodes.Good;
      const withdrawn = item === kStatus && !this.#vouched;
      const [value, time] = withdrawn ? [state.value | kOffline, new Date()] : [state.value, state.time];
      writes.push({ channel: this, item, tag, state, value, time, quality });
    }
    return writes;
  }

  putBack({ item, state }) {
    if (this.#items.get(item) === state) state.dirty = true;
  }

  /// The answer of the server to one item; a refusal is told once until it takes the item again.
  takeAnswer({ item, tag }, refusal) {
    if (refusal && refusal !== this.#refusals.get(item)) {
      const more = item === kCommandItems[0] ? '; no further commands are taken from it' : '';
      this.#send({ ch: this.number, log: `${tag.name} refused: ${refusal}${more}` });
    }
    if (refusal) this.#refusals.set(item, refusal);
    else this.#refusals.delete(item);
  }

  commandTags() {
    return kCommandItems.map((item) => this.#tags?.get(item) ?? null);
  }

  /// Command items as the server holds them behind update `seq`; `values` are null where it has none.
  takeCommandValues(seq, values) {
    // A command that cannot be taken back would come back for ever.
    const usable = !this.#refusals.has(kCommandItems[0]);
    const message = [this.number, seq, ...values.map((value) => (usable ? numberOf(value) : null))];
    const text = JSON.stringify(message);
    if (text === this.#lastValues) return;
    this.#lastValues = text;
    this.#send({ values: message });
  }
}

