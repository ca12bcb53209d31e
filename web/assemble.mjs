// Puts the try-it box into the help page: node assemble.mjs PAGE MODULE OUTPUT
import { readFileSync, writeFileSync } from 'node:fs';
import { gzipSync } from 'node:zlib';

const [page, module, output] = process.argv.slice(2);
const read = (name) => readFileSync(new URL(name, import.meta.url), 'utf8');
const scripts = ['bytes.js', 'engine.js', 'address.js', 'examples.js', 'try.js'].map(read).join('');
const parts = [
    ['</style>', `${read('try.css')}</style>`],
    ['<!-- The try-it box is built into this place. -->\n', read('try.html')],
    ['</body>', `<script type="text/plain" id="try-module">
${gzipSync(readFileSync(module), { level: 9 }).toString('base64')}
</script>
<script>
'use strict';
${scripts}</script>
</body>`],
];
let text = readFileSync(page, 'utf8');
for (const [place, part] of parts) {
    if (text.split(place).length !== 2) throw new Error(`${page} must contain this once: ${place}`);
    text = text.replace(place, () => part);
}
writeFileSync(output, text);
