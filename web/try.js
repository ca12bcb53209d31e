// The try-it box: what is typed goes through the engine at each key, and the result is drawn.
(async () => {
    const kMostRows = 20; // messages that are drawn at once
    const kColors = 6;
    const kSample = "T=23.5 H=41\nT=-3 H=87\nT=19.8 H:52";

    const byId = (id) => document.getElementById(`try-${id}`);
    const [pattern, messages, eom, eomNumber, hex] =
        ['pattern', 'messages', 'eom', 'eom-number', 'hex'].map(byId);
    const result = byId('result');
    let engine;
    try {
        engine = await loadEngine(byId('module').textContent);
    } catch (error) {
        console.info(`The try-it box is hidden: ${error.message}`);
        return;
    }
    let firstRow = 0;
    let onlyMisses = false;

    function make(tag, attributes = {}, ...children) {
        const element = document.createElement(tag);
        for (const [name, value] of Object.entries(attributes)) {
            if (typeof value === 'function') element.addEventListener(name, value);
            else if (value !== undefined) element.setAttribute(name, value);
        }
        element.append(...children);
        return element;
    }

    const colorOf = (piece) => `k${((piece - 1) % kColors) + 1}`;
    const badge = (piece) => make('span', { class: `badge ${colorOf(piece)}` }, piece);
    const shown = (bytes) => (hex.checked ? Bytes.toHex(bytes) : Bytes.toText(bytes));
    const digits = (count) => String(count).replace(/\B(?=(\d{3})+$)/g, ',');
    const countOf = (count, word) => `${digits(count)} ${word}${count === 1 ? '' : 's'}`;

    // What is typed.

    const eomChar = () => (eom.value === 'other' ? Number(eomNumber.value) || 0
        : eom.value === 'crlf' ? 10 : Number(eom.value));

    // The bytes of each line. Throws an Error that names the line.
    function typedLines() {
        const lines = messages.value.split('\n');
        if (lines[lines.length - 1] === '') lines.pop();
        if (!hex.checked) return lines.map(Bytes.fromText);
        return lines.map((line, index) => {
            try {
                return Bytes.fromHex(line);
            } catch (error) {
                throw new Error(`Line ${index + 1}: ${error.message}.`);
            }
        });
    }

    // What the host delivers: each line with its end. Without one, nobody delivers an empty line.
    // Kept until the messages change. Throws an Error that names the line.
    let kept = { key: '', deliveries: [] };
    function typedDeliveries() {
        const key = `${hex.checked} ${eom.value} ${eomChar()} ${messages.value}`;
        if (key !== kept.key) kept = { key, deliveries: withEnds(typedLines()) };
        return kept.deliveries;
    }

    function withEnds(lines) {
        const char = eomChar();
        if (char === 0) return lines.filter((line) => line.length !== 0);
        const end = eom.value === 'crlf' ? [13, 10] : [char];
        return lines.map((line) => (line[line.length - 1] === char ? line
            : Uint8Array.from([...line, ...end])));
    }

    // What is shown.

    // Cuts a text at bytes, not at characters.
    function slicer(text) {
        const bytes = new TextEncoder().encode(text);
        const decoder = new TextDecoder();
        return (start, end) => decoder.decode(bytes.subarray(start, end));
    }

    function paintPattern(report) {
        const slice = slicer(pattern.value);
        const painted = [];
        let place = 0;
        const add = (className, start, length) => {
            painted.push(slice(place, start), make('span', { class: className }, slice(start, start + length)));
            place = start + length;
        };
        if (report.fault) add('fault', report.fault.start, report.fault.length);
        (report.pieces ?? []).forEach((piece, index) =>
            add(`took ${colorOf(index + 1)}`, piece.start, piece.length));
        byId('paint').replaceChildren(...painted, slice(place), '\u200b');
    }

    const errorOf = (fault) => Bytes.toText(Bytes.fromJson(fault.error));

    function faultView(fault) {
        const slice = slicer(pattern.value);
        const end = fault.start + fault.length;
        const needs = make('ul', {}, ...fault.needs.map((need) => make('li', {}, need)));
        return make('div', { class: 'try-fault' },
            make('p', {}, 'The parsing string has an error: ', make('span', { class: 'error' }, errorOf(fault))),
            make('pre', {}, slice(0, fault.start), make('mark', {}, slice(fault.start, end) || ' '), slice(end)),
            ...fault.hints.map((hint) => make('p', {}, `Hint: ${hint}`)),
            ...(fault.needs.length === 0 ? [] : [make('details', {},
                make('summary', {}, 'What each form of a piece would have needed here'), needs)]));
    }

    // The characters of a message, each with the piece that took it.
    function messageView(row) {
        const bytes = Bytes.fromJson(row.text);
        const parts = [];
        let place = 0;
        for (const step of row.steps ?? []) {
            place = step.start + step.length;
            const text = shown(bytes.subarray(step.start, place));
            parts.push(step.piece === null
                ? make('span', { class: 'skipped', title: 'white space that is skipped' }, text.replace(/ /g, '␣'))
                : make('span', { class: `took ${colorOf(step.piece)}`, 'data-piece': step.piece,
                    title: `piece ${step.piece}` }, text));
        }
        const rest = shown(bytes.subarray(place));
        if (row.type === 'miss') {
            const at = hex.checked ? 2 : rest.startsWith('\\x') ? 4 : rest.startsWith('\\') ? 2
                : [...rest][0]?.length ?? 0;
            parts.push(make('mark', { class: 'stop' }, rest.slice(0, at) || '\u00a0'), rest.slice(at));
        } else if (rest !== '') {
            parts.push(make('span', { class: 'rest', title: 'left over' }, rest));
        }
        return make('span', { class: 'shown' }, ...parts);
    }

    function missView(row, columns) {
        const line = (words, ...children) =>
            make('p', {}, make('span', { class: 'words' }, `${words} `), ...children);
        return make('td', { class: 'miss-text', colspan: Math.max(columns, 1) },
            make('p', {}, make('span', { class: 'verdict' }, 'No match: '), row.verdict),
            ...(row.piece === undefined ? [] : [
                line('wanted', badge(row.piece), ' ', row.wanted), line('found', row.found)]),
            ...(row.hints ?? []).map((hint) => line('hint', hint)));
    }

    function valueView(value, output) {
        const isText = output.value === 'string';
        const text = isText ? `"${Bytes.toText(Bytes.fromJson(value))}"` : String(value);
        return make('td', { class: isText ? 'value' : 'value numeric', 'data-label': output.name }, text);
    }

    function tableView(report) {
        const outputs = report.outputs.map((output) => ({ ...output, piece: 0 }));
        report.pieces.forEach((piece, index) => piece.captures.forEach((capture, c) => {
            outputs[piece.first_output + c].piece = index + 1;
        }));
        const heads = outputs.map((output) => make('th', { scope: 'col' }, badge(output.piece), ' ',
            output.name || '(no name)', ' ', make('small', {}, output.value)));
        if (heads.length === 0) heads.push(make('th', { scope: 'col' }, 'Result'));
        const rows = report.rows.map((row) => make('tr', {},
            make('th', { scope: 'row', class: 'number' }, row.message),
            make('td', {}, messageView(row), ...(row.cautions ?? []).map(cautionView)),
            ...(row.type === 'miss' ? [missView(row, outputs.length)]
                : outputs.length === 0 ? [make('td', {}, 'match')]
                    : row.values.map((value, v) => valueView(value, outputs[v])))));
        return make('div', { class: 'try-scroll', tabindex: 0, role: 'region', 'aria-label': 'Messages and outputs' },
            make('table', {}, make('thead', {}, make('tr', {}, make('th', { scope: 'col', class: 'number' }, '#'),
                make('th', { scope: 'col' }, 'Message'), ...heads)), make('tbody', {}, ...rows)));
    }

    function countView(report) {
        const missed = report.messages - report.matched;
        const kind = missed === 0 ? 'all' : report.matched === 0 ? 'no' : 'some';
        const box = make('input', { type: 'checkbox', change: () => {
            onlyMisses = !onlyMisses;
            firstRow = 0;
            update();
        } });
        box.checked = onlyMisses;
        return make('p', { class: 'try-count' }, make('strong', { class: kind }, countWords(report)),
            ...(onlyMisses || (missed !== 0 && report.matched !== 0)
                ? [make('label', { class: 'try-check' }, box, ' only those that don’t match')] : []));
    }

    const countWords = ({ matched, messages: all }) => (all === 0 ? 'No messages yet.'
        : `${digits(matched)} of ${countOf(all, 'message')} ${matched === 1 ? 'matches' : 'match'}.`);

    function pagerView(report) {
        const all = onlyMisses ? report.messages - report.matched : report.messages;
        if (all <= kMostRows) return [];
        const go = (words, place) => {
            const button = make('button', { type: 'button', click: () => { firstRow = place; update(); } }, words);
            button.disabled = place < 0 || place >= all;
            return button;
        };
        const last = Math.min(firstRow + kMostRows, all);
        return [make('p', { class: 'try-pager' }, go('Previous', firstRow - kMostRows),
            go('Next', firstRow + kMostRows),
            `${digits(firstRow + 1)} to ${digits(last)} of ${digits(all)}`)];
    }

    function piecesView(report) {
        const slice = slicer(pattern.value);
        const items = report.pieces.map((piece, index) => make('li', {}, badge(index + 1),
            make('code', {}, slice(piece.start, piece.start + piece.length)),
            make('p', {}, `takes ${piece.takes}`,
                ...piece.captures.map(({ name, value }) => `; ${name || 'no name'} is ${value}`))));
        return make('details', { open: '' }, make('summary', {}, 'What each piece takes'),
            make('ol', { class: 'try-pieces' }, ...items));
    }

    const cautionView = ({ piece, caution }) =>
        make('p', { class: 'try-warning' }, make('strong', {}, 'Caution: '), badge(piece), ` ${caution}`);

    function resultViews(report) {
        if (report.fault) return [faultView(report.fault)];
        if (report.pieces.length === 0) return [make('p', {}, 'Write a parsing string, or load an example of this page with its Try button.')];
        return [...report.cautions.map(cautionView), countView(report), ...(report.rows.length === 0 ? [] : [tableView(report)]),
            ...pagerView(report), piecesView(report)];
    }

    // A screen reader hears the result when the typing pauses.
    let announcement;
    function announce(words) {
        clearTimeout(announcement);
        announcement = setTimeout(() => { byId('live').textContent = words; }, 700);
    }

    const kNotation = {
        text: '\\r, \\n, \\t, \\x07 and \\\\ stand for bytes that you can’t type, as on the rest of this page.',
        hex: 'Two digits for each byte, such as AA 55 0F.',
    };

    function showNotation(error) {
        byId('notation').textContent = error ?? kNotation[hex.checked ? 'hex' : 'text'];
        byId('notation').classList.toggle('bad', error !== undefined);
        messages.setAttribute('aria-invalid', error !== undefined);
    }

    function fitFields() {
        messages.rows = Math.min(Math.max(messages.value.split('\n').length, 3), 12);
        byId('other').hidden = eom.value !== 'other';
    }

    function update() {
        fitFields();
        let deliveries = [];
        let error;
        try {
            deliveries = typedDeliveries();
        } catch ({ message }) {
            error = message;
        }
        showNotation(error);
        let report;
        try {
            report = JSON.parse(engine.tryJson(pattern.value, deliveries, eomChar(),
                firstRow, kMostRows, onlyMisses));
        } catch ({ message }) {
            result.replaceChildren(make('p', { class: 'error' }, `The engine of this page stopped: ${message}`));
            return;
        }
        paintPattern(report);
        result.replaceChildren(...resultViews(report));
        announce(error ?? (report.fault ? `The parsing string has an error: ${errorOf(report.fault)}`
            : report.pieces.length === 0 ? '' : countWords(report)));
    }

    // The suggestions.

    function use(suggested) {
        pattern.value = suggested;
        firstRow = 0;
        update();
        writeAddressSoon();
    }

    function suggestionViews({ suggestions, messages: all, unmatched }, old) {
        if (suggestions.length === 0) return [make('p', {}, 'Nothing to suggest: write or paste a few messages of the device first.')];
        const countText = (matched) => ` matches ${digits(matched)} of ${countOf(all, 'message')}. `;
        const useButton = (words, string) =>
            make('button', { type: 'button', click: () => use(string), 'aria-label': `${words} ${string}` }, words);
        const [best, ...others] = suggestions;
        return [
            make('p', {}, make('strong', {}, 'Suggested:'), ` the parsing string above${countText(best.matched)}`,
                ...(old.trim() === '' || old === best.pattern ? [] : [useButton('Undo', old)])),
            ...best.notes.map((note) => make('p', {}, note)),
            ...others.map(({ pattern: string, matched }) => make('p', {}, 'For other messages: ', make('code', {}, string),
                countText(matched), useButton('Use', string))),
            ...(unmatched === 0 ? [] : [make('p', {}, `${countOf(unmatched, 'message')} fit none of these.`)]),
        ];
    }

    function suggest() {
        let deliveries;
        try {
            deliveries = typedDeliveries();
        } catch {
            return; // the mistake in the line is shown
        }
        const report = JSON.parse(engine.suggestJson(deliveries, eomChar()));
        const old = pattern.value;
        if (report.suggestions.length !== 0) use(report.suggestions[0].pattern);
        byId('suggestions').replaceChildren(...suggestionViews(report, old));
    }

    // The address.

    const state = () => [pattern.value, messages.value, eom.value === 'other' ? eomNumber.value : eom.value, hex.checked];

    function setState([newPattern, newMessages, newEom, newHex]) {
        pattern.value = newPattern;
        messages.value = newMessages;
        const isListed = [...eom.options].some((option) => option.value === newEom);
        eom.value = isListed ? newEom : 'other';
        if (!isListed) eomNumber.value = newEom;
        hex.checked = newHex;
        firstRow = 0;
        onlyMisses = false;
        byId('suggestions').replaceChildren();
        update();
    }

    // Returns false if the address has no state.
    function readAddress() {
        const newState = Address.toState(location.hash);
        if (newState !== null) setState(newState);
        return newState !== null;
    }

    let addressTimer;
    function writeAddressSoon() {
        clearTimeout(addressTimer);
        addressTimer = setTimeout(() => history.replaceState(null, '', Address.ofState(state()) || '#try'), 300);
    }

    function addTryButton(example) {
        const load = () => {
            const newState = Examples.toState(example);
            if (example.messages.length === 0) newState.splice(1, 3, ...state().slice(1));
            setState(newState);
            history.pushState(null, '', Address.ofState(newState) || '#try'); // Back returns to the example
            byId('pattern').focus({ preventScroll: true });
            box.scrollIntoView({ block: 'start' });
            box.classList.remove('try-flash');
            requestAnimationFrame(() => box.classList.add('try-flash'));
        };
        const button = make('button', { type: 'button', class: 'try-button', click: load,
            'aria-label': `Try ${example.code.textContent}` }, 'Try');
        if (example.code.parentElement.matches('pre')) example.code.before(button);
        else example.code.after(' ', button);
    }

    // The start.

    const box = document.getElementById('try');
    box.hidden = false;
    const examples = Examples.find();
    if (!readAddress()) setState([examples[0].code.textContent, kSample, '10', false]);
    else box.scrollIntoView();
    examples.forEach(addTryButton);
    document.querySelector('nav ol').prepend(make('li', {}, make('a', { href: '#try' }, 'Try it')));
    addEventListener('popstate', readAddress);
    byId('suggest').addEventListener('click', suggest);
    for (const field of [pattern, messages, eom, eomNumber]) {
        field.addEventListener('input', () => {
            firstRow = 0;
            byId('suggestions').replaceChildren();
            update();
            writeAddressSoon();
        });
    }
    hex.addEventListener('change', () => {
        const toHex = hex.checked;
        hex.checked = !toHex;
        try {
            const lines = typedLines();
            messages.value = lines.map(toHex ? Bytes.toHex : Bytes.toText).join('\n');
            hex.checked = toHex;
        } catch {
            // The mistake in the line is shown, and the digits stay.
        }
        update();
        writeAddressSoon();
    });
    byId('copy').addEventListener('click', () => copyText(pattern.value, byId('copy')));
    byId('link').addEventListener('click', () => {
        const link = Address.ofState(state());
        if (link) copyText(location.href.split('#')[0] + link, byId('link'));
        else showNotation('There is too much text for a link.');
    });
})();
