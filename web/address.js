// The state of the box in the address, so that it can be sent to someone: the parsing string, the
// messages, the end of a line and whether the messages are hexadecimal.
const Address = (() => {
    const kStart = '#try=';
    const kLongest = 8000; // characters; mail programs and chats cut longer ones

    // Returns an empty text if there is too much for an address.
    function ofState(state) {
        const bytes = new TextEncoder().encode(JSON.stringify(state));
        const base64 = btoa(Array.from(bytes, (byte) => String.fromCharCode(byte)).join(''));
        const hash = kStart + base64.replace(/\+/g, '-').replace(/\//g, '_').replace(/=+$/, '');
        return hash.length <= kLongest ? hash : '';
    }

    // Returns null if hash has no state.
    function toState(hash) {
        if (!hash.startsWith(kStart)) return null;
        try {
            const base64 = hash.slice(kStart.length).replace(/-/g, '+').replace(/_/g, '/');
            const bytes = Uint8Array.from(atob(base64), (character) => character.charCodeAt(0));
            const [pattern, messages, eom, hex] = JSON.parse(new TextDecoder().decode(bytes));
            return [String(pattern), String(messages), String(eom), hex === true];
        } catch {
            return null;
        }
    }

    return { ofState, toState };
})();
