// The examples of the page, for their Try buttons: each parsing string, with the messages up to the
// next one.
const Examples = (() => {
    function find() {
        const examples = [];
        for (const code of document.querySelectorAll('main :is(code.pattern, code.message, code.bytes)')) {
            if (code.matches('.pattern')) examples.push({ code, messages: [] });
            else examples[examples.length - 1]?.messages.push(code);
        }
        return examples;
    }

    // The state of the box for an example. Only recipes say what ends a message.
    function toState({ code, messages }) {
        const setting = code.closest('article')?.querySelector('.setting')?.textContent ?? '';
        const eom = setting.match(/eom_char.*?(\d+)/)?.[1] ?? '0';
        const isHex = messages.length !== 0 && messages.every((message) => message.matches('.bytes'));
        const lines = messages.map((message) => (!isHex && message.matches('.bytes')
            ? Bytes.toText(Bytes.fromHex(message.textContent)) : message.textContent.replace(/␣/g, ' ')));
        return [code.textContent, lines.join('\n'), eom, isHex];
    }

    return { find, toState };
})();
