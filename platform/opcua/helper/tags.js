// From a tag's name to the server's node, and from the manager's number to the type that the node has.
import { AttributeIds, DataType, Variant, VariantArrayType } from 'node-opcua-client';
import { NodeId, NodeIdType, coerceNodeId } from 'node-opcua-nodeid';

const kNodeIdSyntax = /^(ns=\d+;)?[isgb]=/;
const kServerNamespaces = coerceNodeId('i=2255');

const kRanges = new Map([
  [DataType.SByte, [-128, 127]],
  [DataType.Byte, [0, 255]],
  [DataType.Int16, [-32768, 32767]],
  [DataType.UInt16, [0, 65535]],
  [DataType.Int32, [-2147483648, 2147483647]],
  [DataType.UInt32, [0, 4294967295]],
  [DataType.Int64, [Number.MIN_SAFE_INTEGER, Number.MAX_SAFE_INTEGER]],
  [DataType.UInt64, [0, Number.MAX_SAFE_INTEGER]],
]);

export class ServerTag {
  plain = false;  // the server takes values alone, without quality and time

  /// `held` is what the node holds now, as a `DataValue`.
  constructor(name, nodeId, dataType, held) {
    this.name = name;
    this.nodeId = nodeId;
    this.dataType = dataType;
    this.held = held;
  }
}

/// Finds the tags of a channel: a name in node-id syntax is used as it is, any other is a string identifier in the
/// first namespace from 1 upward that has it.
export async function findTags(session, tagNames) {
  const namespaces = await session.read({ nodeId: kServerNamespaces, attributeId: AttributeIds.Value });
  const last = Math.min((namespaces.value.value?.length ?? 2) - 1, 1000);
  const candidates = tagNames.flatMap(({ item, name }) => nodeIdsOf(name, last).map((nodeId) => ({ item, name, nodeId })));
  const found = new Map();
  const kAtOnce = 200;
  for (let at = 0; at < candidates.length; at += kAtOnce) {
    const some = candidates.slice(at, at + kAtOnce);
    const answers = await session.read(some.flatMap(({ nodeId }) => [
      { nodeId, attributeId: AttributeIds.DataType }, { nodeId, attributeId: AttributeIds.Value }]));
    some.forEach(({ item, name, nodeId }, index) => {
      const [type, value] = answers.slice(2 * index, 2 * index + 2);
      if (found.has(item) || !type.statusCode.isGood()) return;
      found.set(item, new ServerTag(name, nodeId, builtInType(type, value), value));
    });
  }
  return { found, missing: tagNames.filter(({ item }) => !found.has(item)).map(({ name }) => name) };
}

function nodeIdsOf(name, lastNamespace) {
  if (kNodeIdSyntax.test(name)) {
    try {
      return [coerceNodeId(name)];
    } catch {
      return [];
    }
  }
  return Array.from({ length: Math.max(lastNamespace, 0) }, (_, at) => new NodeId(NodeIdType.STRING, name, at + 1));
}

/// The type that the node holds now, else the one that it declares. Abstract types take any number.
function builtInType(type, value) {
  const held = value.value?.dataType;
  if (held) return held;
  const declared = type.value?.value;
  const known = declared?.namespace === 0 ? declared.value : 0;
  return kRanges.has(known) || [DataType.Boolean, DataType.Float, DataType.String].includes(known) ? known : DataType.Double;
}

/// The value as the node wants it, or what stands in the way.
export function variantFor(dataType, value) {
  const scalar = (typed) => ({ variant: new Variant({ dataType, arrayType: VariantArrayType.Scalar, value: typed }) });
  if (dataType === DataType.String) return scalar(String(value ?? ''));
  const number = Number(value);
  if (!Number.isFinite(number)) return { refusal: `"${value}" is no number` };
  if (dataType === DataType.Boolean) return scalar(number !== 0);
  if (dataType === DataType.Double || dataType === DataType.Float) return scalar(number);
  const range = kRanges.get(dataType);
  if (!range) return { refusal: `the node holds ${DataType[dataType] ?? dataType}, which is no number` };
  const whole = Math.sign(number) * Math.round(Math.abs(number));
  if (whole < range[0] || whole > range[1]) {
    return { refusal: `${number} is beyond ${DataType[dataType]}, ${range[0]} to ${range[1]}` };
  }
  if (dataType === DataType.Int64 || dataType === DataType.UInt64) {  // two halves, each without a sign
    return scalar([Math.floor(whole / 4294967296) >>> 0, whole >>> 0]);
  }
  return scalar(whole);
}

/// A number or a text of the server; null for none and for what is neither.
export function numberOf(data) {
  if (!data || !data.statusCode.isGoodish() || !data.value || data.value.arrayType !== VariantArrayType.Scalar) return null;
  const { dataType, value } = data.value;
  if (typeof value === 'number') return Number.isFinite(value) ? value : null;
  if (typeof value === 'boolean') return value ? 1 : 0;
  if (typeof value === 'string') return value.slice(0, 1024);
  if (dataType === DataType.UInt64) return value[0] * 4294967296 + value[1];
  if (dataType === DataType.Int64) return (value[0] | 0) * 4294967296 + value[1];
  return null;
}

