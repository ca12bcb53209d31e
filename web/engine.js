// The engine, its explanations and its suggestions: the WebAssembly module in the page, behind plain
// functions. base64: the module, compressed with gzip.
async function loadEngine(base64) {
    const compressed = Uint8Array.from(atob(base64.trim()), (character) => character.charCodeAt(0));
    const stream = new Blob([compressed]).stream().pipeThrough(new DecompressionStream('gzip'));
    const module = await WebAssembly.compile(await new Response(stream).arrayBuffer());
    const imports = {};
    for (const { module: from, name } of WebAssembly.Module.imports(module)) {
        (imports[from] ??= {})[name] = () => 0; // for a process and its memory: nothing to do here
    }
    const { exports } = await WebAssembly.instantiate(module, imports);
    exports._initialize();
    const encoder = new TextEncoder();
    const decoder = new TextDecoder();

    // Calls a function with blocks of bytes, each passed as its address and size, then with numbers.
    function call(name, blocks, numbers) {
        const places = blocks.map((block) => exports.malloc(Math.max(block.length, 1)));
        if (places.includes(0)) throw new Error('out of memory');
        places.forEach((place, b) => new Uint8Array(exports.memory.buffer).set(blocks[b], place));
        const result =
            exports[name](...blocks.flatMap((block, b) => [places[b], block.length]), ...numbers);
        places.forEach(exports.free);
        if (result === 0) throw new Error('out of memory');
        const memory = new Uint8Array(exports.memory.buffer);
        return decoder.decode(memory.subarray(result, memory.indexOf(0, result)));
    }

    // The format of deliveries in try_box.h.
    function packed(deliveries) {
        const size = deliveries.reduce((sum, delivery) => sum + 4 + delivery.length, 0);
        const block = new Uint8Array(size);
        const view = new DataView(block.buffer);
        let place = 0;
        for (const delivery of deliveries) {
            view.setUint32(place, delivery.length, true);
            block.set(delivery, place + 4);
            place += 4 + delivery.length;
        }
        return block;
    }

    return {
        // deliveries: an array of Uint8Array. Both return the JSON that try_box.h describes.
        tryJson: (pattern, deliveries, eomChar, first, most, onlyMisses) =>
            call('WordSifterTry', [encoder.encode(pattern), packed(deliveries)],
                [eomChar, first, most, onlyMisses ? 1 : 0]),
        suggestJson: (deliveries, eomChar) => call('WordSifterSuggest', [packed(deliveries)], [eomChar]),
    };
}
