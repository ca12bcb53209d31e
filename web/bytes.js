// Bytes as the page shows them and as people type them: as text with \r, \n, \t, \x07 and \\, or as
// hexadecimal digits.
const Bytes = (() => {
    const kEscapes = new Map([[10, '\\n'], [13, '\\r'], [9, '\\t'], [92, '\\\\']]);
    const kTyped = { n: '\n', r: '\r', t: '\t', '\\': '\\' };
    const encoder = new TextEncoder();
    const decoder = new TextDecoder('utf-8', { fatal: true, ignoreBOM: true });

    const hexOf = (byte) => byte.toString(16).toUpperCase().padStart(2, '0');
    const isControl = (code) => code < 0x20 || (code >= 0x7f && code < 0xa0);

    // The UTF-8 character at a position, or an empty text.
    function characterAt(bytes, position) {
        const lead = bytes[position];
        if (lead < 0x80) return String.fromCharCode(lead);
        const length = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
        try {
            return decoder.decode(bytes.subarray(position, position + length));
        } catch {
            return '';
        }
    }

    function toText(bytes) {
        let text = '';
        for (let position = 0; position < bytes.length;) {
            const byte = bytes[position];
            const character = kEscapes.get(byte) ?? characterAt(bytes, position);
            const isText = character && !isControl(character.codePointAt(0));
            text += isText ? character : `\\x${hexOf(byte)}`;
            position += isText && byte >= 0x80 ? encoder.encode(character).length : 1;
        }
        return text;
    }

    function fromText(text) {
        if (!text.includes('\\')) return encoder.encode(text);
        const bytes = [];
        for (const [part, digits, letter] of
            text.matchAll(/\\(?:x([0-9A-Fa-f]{2})|([nrt\\]))|[^\\]+|\\/g)) {
            if (digits) bytes.push(parseInt(digits, 16));
            else bytes.push(...encoder.encode(letter ? kTyped[letter] : part));
        }
        return Uint8Array.from(bytes);
    }

    const toHex = (bytes) => Array.from(bytes, hexOf).join(' ');

    // Throws an Error whose message says what is wrong.
    function fromHex(text) {
        const digits = text.replace(/[\s,]/g, '');
        const wrong = digits.match(/[^0-9a-f]/i);
        if (wrong) throw new Error(`‘${wrong[0]}’ isn’t a hexadecimal digit`);
        if (digits.length % 2 !== 0) throw new Error('an odd number of hexadecimal digits');
        return Uint8Array.from(digits.match(/../g) ?? [], (pair) => parseInt(pair, 16));
    }

    // Of a text in the JSON of the module.
    const fromJson = (text) => (typeof text === 'string' ? encoder.encode(text) : fromHex(text.hex));

    return { toText, fromText, toHex, fromHex, fromJson };
})();
