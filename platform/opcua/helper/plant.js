// All channels, and the connections that they share: one for each server and way to log on.
import { Channel } from './channel.js';
import { Connection } from './connection.js';

export class Plant {
  endOrdered = false;  // otherwise the end of the input means that the manager has been killed

  #folder;
  #send;
  #connections = new Map();  // by what the manager says of the server
  #places = new Map();       // channel number to its channel and connection
  #vouched = true;

  /// `folder` holds the certificates; `send` takes messages for the manager.
  constructor(folder, send) {
    this.#folder = folder;
    this.#send = send;
  }

  connect({ ch, server, tags }) {
    this.disconnect(ch);
    const key = JSON.stringify(server);
    let connection = this.#connections.get(key);
    if (!connection) {
      connection = new Connection(server, this.#folder, () => this.#connections.delete(key));
      this.#connections.set(key, connection);
    }
    const channel = new Channel(ch, tags, this.#send);
    this.#places.set(ch, { channel, connection });
    connection.add(channel);
  }

  update(channels) {
    for (const { ch, seq, read, items } of channels) {
      const place = this.#places.get(ch);
      if (!place) continue;
      place.channel.take(seq, read, items);
      place.connection.wake();
    }
  }

  /// Whether the manager is there to answer for the weights.
  vouch(vouched) {
    if (vouched === this.#vouched) return;
    this.#vouched = vouched;
    for (const { channel, connection } of this.#places.values()) {
      channel.vouch(vouched);
      connection.wake();
    }
  }

  /// What the channel has been given is still written.
  disconnect(ch) {
    const place = this.#places.get(ch);
    if (!place) return;
    this.#places.delete(ch);
    place.connection.remove(place.channel);
  }

  async end() {
    const connections = [...this.#connections.values()];
    if (!this.endOrdered) this.vouch(false);
    for (const ch of [...this.#places.keys()]) this.disconnect(ch);
    await Promise.all(connections.map((connection) => connection.ended));
  }
}
