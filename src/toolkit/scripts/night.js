// On a dark page: gives text without a colour of its own a light one, and lightens stored colours that could not be read
// on the ground that is really behind them. By a style sheet of the host for the screen alone: the document is not
// touched, so that nothing of this is marked, saved or printed.
//
// The elements that carry a colour or a ground are few kinds, told apart by what makes them so: attributes and rules of
// the page. Each kind becomes one rule; only a kind that needs different colours in different places is also told by what
// it stands in. The engine computes one element of each kind and place, with the page as it came.
(() => {
    'use strict';

    const leastContrast = 3; // below this a stored colour is not kept
    const goodContrast = 4.5;
    const calmContrast = 7; // white glares where a grey is as clear
    const mostKinds = 1000; // beyond these limits rules would cost more time than their colours are worth
    const mostPlaces = 4000;
    const mostMatches = 300000;
    const deepestPlace = 24;
    const grey = [228, 228, 228];
    const white = [255, 255, 255];
    const black = [0, 0, 0];

    const hitSelector = 'font[style*="background-color"]';
    const carriers = '[style*="color" i], [style*="background" i], [bgcolor], font[color], a[href], mark, html, body';
    const controls = 'input, button, select, textarea, progress, meter, iframe, frame, object, embed';
    const anyStyle = /(^|[;\s])(color|background(-color|-image)?)\s*:/i;
    const noColour = /^(|inherit|unset|initial|revert|currentcolor)$/i;
    const suffixes = /(:visited|::?before|::?after|::?first-letter|::?first-line|::marker)$/i;

    // ---- Colours: [red, green, blue], and with it [.., opacity] ----

    function parse(text) {
        const found = /^rgba?\(([\d.]+), ([\d.]+), ([\d.]+)(?:, ([\d.]+))?\)$/.exec(text);
        return found ? [+found[1], +found[2], +found[3], found[4] === undefined ? 1 : +found[4]] : null;
    }

    const canvas = new OffscreenCanvas(1, 1).getContext('2d');

    // A colour as a page writes it; null for none that can be read.
    function resolve(text) {
        const probes = ['#010203', '#030201'].map((probe) => {
            canvas.fillStyle = probe;
            canvas.fillStyle = text;
            return canvas.fillStyle;
        });
        if (!text || probes[0] !== probes[1])
            return null;
        const hex = /^#(..)(..)(..)$/.exec(probes[0]);
        return hex ? [1, 2, 3].map((at) => parseInt(hex[at], 16)).concat(1) : parse(probes[0]);
    }

    const over = (colour, ground) => black.map((_, at) => colour[at] * colour[3] + ground[at] * (1 - colour[3]));
    const write = (colour) => 'rgb(' + colour.slice(0, 3).map(Math.round).join(', ') + ')';

    function luminance(colour) {
        const [red, green, blue] = colour.slice(0, 3).map((part) => {
            const share = part / 255;
            return share <= 0.04045 ? share / 12.92 : ((share + 0.055) / 1.055) ** 2.4;
        });
        return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
    }

    function contrast(one, other) {
        const [low, high] = [luminance(one), luminance(other)].sort((first, second) => first - second);
        return (high + 0.05) / (low + 0.05);
    }

    const isDark = (ground) => contrast(black, ground) < goodContrast;
    const lightOn = (ground) => (contrast(grey, ground) >= calmContrast ? grey : white);

    // Of the same hue, just as light as it must be.
    function lightened(colour, ground) {
        const high = Math.max(...colour.slice(0, 3)) / 255;
        const low = Math.min(...colour.slice(0, 3)) / 255;
        const middle = (high + low) / 2;
        const span = high - low;
        const saturation = span ? span / (1 - Math.abs(2 * middle - 1)) : 0;
        const mean = colour.slice(0, 3).map((part) => (span ? (part / 255 - middle) / (span / 2) : 0)); // -1 to 1
        const at = (lightness) => {
            const reach = saturation * (1 - Math.abs(2 * lightness - 1)) / 2;
            return mean.map((part) => Math.min(Math.max(lightness + part * reach, 0), 1) * 255);
        };
        let [dark, light] = [middle, 1];
        for (let step = 0; step < 12; ++step) {
            const half = (dark + light) / 2;
            if (contrast(at(half).map(Math.round), ground) >= goodContrast)
                light = half;
            else
                dark = half;
        }
        return at(light);
    }

    // The colour to show for a stored one, and for none.
    function judge(stored, isOwn, ground, isHit) {
        if (!isOwn)
            return write(isDark(ground) ? lightOn(ground) : black);
        const seen = over(stored, ground);
        if (contrast(seen, ground) >= leastContrast)
            return stored[3] < 1 ? `rgba(${stored.join(', ')})` : write(stored);
        if (isDark(ground))
            return write(lightened(seen, ground));
        return write(isHit ? black : stored);
    }

    // ---- What makes an element a carrier of colour: traits ----

    const escaped = (text) =>
        text.replace(/["\\\u0000-\u001f\u007f]/g, (character) => '\\' + character.charCodeAt(0).toString(16) + ' ');

    class Traits {
        constructor() {
            this.known = new Map();
            this.styles = new Map();
            this.byElement = new Map(); // those that rules of the page give
            this.selectors = [];
            this.hasImportant = false;
            this.matches = 0;
        }

        give(selector, isOwn) {
            let trait = this.known.get(selector);
            if (!trait) {
                trait = { id: this.known.size, selector, isOwn, variants: [] };
                this.known.set(selector, trait);
            }
            return trait;
        }

        attribute(element, name, isOwn) {
            const value = element.getAttribute(name);
            return value === null ? null : this.give(`[${name}="${escaped(value)}"]`, isOwn);
        }

        // Read once for each text, and by the engine: what it can't parse is no colour.
        style(element, text) {
            let trait = this.styles.get(text);
            if (!trait) {
                trait = this.give(`[style="${escaped(text)}"]`, !noColour.test(element.style.color));
                this.styles.set(text, trait);
            }
            return trait;
        }

        of(element) {
            const traits = [];
            const style = element.getAttribute('style');
            if (style !== null && anyStyle.test(style)) {
                this.hasImportant = this.hasImportant || /!\s*important/i.test(style);
                traits.push(this.style(element, style));
            }
            traits.push(this.attribute(element, 'bgcolor', false));
            if (element.localName === 'font')
                traits.push(this.attribute(element, 'color', true));
            else if (element.localName === 'body')
                traits.push(this.attribute(element, 'text', true));
            else if (element.localName === 'a' && element.hasAttribute('href'))
                traits.push(this.give(':any-link', true));
            const byRules = this.byElement.get(element);
            return traits.concat(byRules || []).filter((trait) => trait);
        }

        // Rules of the page that colour; `read` are sheets on the way here, against rings.
        readRules(sheet, read) {
            let rules = null;
            try {
                rules = sheet.cssRules;
            } catch {
                return; // was not allowed to load
            }
            if (read.has(sheet) || read.size > deepestPlace)
                return;
            read.add(sheet);
            for (const rule of rules) {
                if (rule.style && rule.selectorText)
                    this.readRule(rule);
                else if (rule.styleSheet)
                    this.readRules(rule.styleSheet, read);
                else if (rule.cssRules && (!rule.media || matchMedia(rule.media.mediaText).matches))
                    this.readRules(rule, read);
            }
            read.delete(sheet);
        }

        readRule(rule) {
            const { color, background, backgroundColor, backgroundImage } = rule.style;
            if (!color && !background && !backgroundColor && !backgroundImage)
                return;
            const isOwn = !noColour.test(color);
            this.add(rule.selectorText, isOwn, null);
            if (!isOwn || !/:/.test(rule.selectorText))
                return;
            for (const part of partsOf(rule.selectorText)) {
                const suffix = suffixes.exec(part);
                if (suffix)
                    this.add(part.slice(0, suffix.index).replace(/[\s>+~]$/, '$&*') || '*', false,
                        { suffix: suffix[0], colour: resolve(color) });
            }
        }

        add(selector, isOwn, variant) {
            let elements = [];
            try {
                elements = document.querySelectorAll(selector);
            } catch {
                return;
            }
            this.matches += elements.length;
            if (this.matches > mostMatches)
                throw new RangeError('too many matches');
            if (!elements.length)
                return;
            const trait = this.give(`:is(${selector})`, isOwn);
            trait.isOwn = trait.isOwn || isOwn;
            if (variant && variant.colour)
                trait.variants.push(variant);
            this.selectors.push(selector);
            for (const element of elements) {
                const traits = this.byElement.get(element);
                if (!traits)
                    this.byElement.set(element, [trait]);
                else if (!traits.includes(trait))
                    traits.push(trait);
            }
        }
    }

    // The selectors of a list.
    function partsOf(list) {
        const parts = [''];
        let depth = 0;
        for (const [token] of list.matchAll(/"(?:\\.|[^"])*"|\\.|[^]/gs)) {
            depth += '(['.includes(token) ? 1 : ')]'.includes(token) ? -1 : 0;
            if (token === ',' && depth === 0)
                parts.push('');
            else
                parts[parts.length - 1] += token;
        }
        return parts.map((part) => part.trim());
    }

    // ---- Kinds of elements, places of kinds ----

    class Night {
        constructor() {
            this.traits = new Traits();
            this.kinds = new Map();
            this.places = 0;
            this.placeOf = new WeakMap();
            this.isPlain = false; // too colourful a page: every text light, every ground off
            this.ground = black;
            this.link = [0, 0, 238, 1];
        }

        kindOf(tag, traits) {
            const key = tag + ' ' + traits.map((trait) => trait.id).join(' ');
            let kind = this.kinds.get(key);
            if (!kind) {
                if (this.kinds.size >= mostKinds)
                    throw new RangeError('too many kinds');
                const selector = traits.map((trait) => trait.selector).join('');
                kind = { tag, traits, places: [], selector: CSS.escape(tag) + (selector && `:where(${selector})`) };
                this.kinds.set(key, kind);
            }
            return kind;
        }

        // `read` gives stored colour, ground and whether there is a picture, for a place that is new.
        placeIn(parent, kind, read) {
            if (parent && parent.kind === kind)
                return parent;
            let place = parent && parent.inner.get(kind);
            if (!place) {
                if (++this.places > mostPlaces)
                    throw new RangeError('too many places');
                place = { kind, parent, inner: new Map(), depth: 0, traitCount: kind.traits.length };
                if (parent && parent.kind.tag !== 'body' && parent.kind.tag !== 'html') {
                    place.depth = parent.depth + 1;
                    place.traitCount += parent.traitCount;
                }
                Object.assign(place, read());
                kind.places.push(place);
                if (parent)
                    parent.inner.set(kind, place);
            }
            return place;
        }

        parentPlace(element) {
            let outer = element.parentElement;
            while (outer && !this.placeOf.has(outer))
                outer = outer.parentElement;
            return outer ? this.placeOf.get(outer) : null;
        }

        computed(element, kind, parent) {
            const style = getComputedStyle(element);
            const stored = parse(style.color) || black.concat(1);
            const back = parse(style.backgroundColor) || black.concat(0);
            const isLegacyTable = element.localName === 'table' && document.compatMode === 'BackCompat';
            const isOwn = kind.traits.some((trait) => trait.isOwn) || element.localName === 'mark'
                || (isLegacyTable ? write(stored) !== write(black) : Boolean(parent && parent.isOwn));
            return {
                stored, isOwn, isHit: false, ground: over(back, parent ? parent.ground : white),
                hasPicture: style.backgroundImage !== 'none',
            };
        }

        readPage() {
            for (const sheet of document.styleSheets)
                this.traits.readRules(sheet, new Set());
            // Without a type of document the engine keeps the colours around a table out of it.
            const tables = document.compatMode === 'BackCompat' ? ', table' : '';
            const all = [carriers + tables, ...this.traits.selectors].join(', ');
            for (const element of document.querySelectorAll(all)) {
                const traits = this.traits.of(element);
                if (!traits.length && !/^(html|body|mark|table)$/.test(element.localName))
                    continue;
                const parent = this.parentPlace(element);
                const kind = this.kindOf(element.localName, traits);
                this.placeOf.set(element, this.placeIn(parent, kind, () => this.computed(element, kind, parent)));
            }
        }

        // Hits are coloured by us: their colour is known without asking.
        readHits() {
            for (const hit of document.querySelectorAll(hitSelector)) {
                const parent = this.parentPlace(hit);
                const kind = this.kindOf('font', this.traits.of(hit));
                this.placeOf.set(hit, this.placeIn(parent, kind, () => {
                    const own = resolve(hit.style.color);
                    const back = resolve(hit.style.backgroundColor) || black.concat(0);
                    return {
                        stored: own || parent.stored, isOwn: Boolean(own) || parent.isOwn, isHit: true,
                        ground: over(back, parent.ground), hasPicture: false,
                    };
                }));
            }
        }

        // What a place is given, as declarations by suffix of its selector.
        givenTo(place) {
            const { stored, isOwn, ground, isHit } = place;
            const declare = (colour) => `color: ${colour} !important;`
                + (this.traits.hasImportant ? ` -webkit-text-fill-color: ${colour} !important;` : '');
            let declarations = declare(judge(stored, isOwn, ground, isHit));
            if (place.hasPicture)
                declarations += ' background-image: none !important;'; // what it looks like is unknown
            const given = [['', declarations]];
            const { traits } = place.kind;
            if (traits.some((trait) => trait.selector === ':any-link') && traits.filter((trait) => trait.isOwn).length === 1)
                given.push([':visited', declare(judge(this.visited, true, ground, false))]);
            for (const { suffix, colour } of traits.flatMap((trait) => trait.variants))
                given.push([suffix, declare(judge(colour, true, ground, false))]);
            return given;
        }

        // All rules weigh the same, the last that fits wins. What a kind's rule fits besides its own has all the kind's
        // traits and others: so few traits go before many; and likewise for places.
        rules() {
            const rules = [];
            for (const kind of [...this.kinds.values()].sort((one, other) => one.traits.length - other.traits.length)) {
                const given = kind.places.map((place) => this.givenTo(place));
                const add = (selector, all) => {
                    for (const [suffix, declarations] of all)
                        rules.push(`${selector}${suffix} { ${declarations} }`);
                };
                if (!given.length)
                    continue;
                if (given.every((one) => String(one) === String(given[0]))) {
                    add(kind.selector, given[0]);
                    continue;
                }
                kind.places.map((place, at) => ({ place, given: given[at] }))
                    .sort((one, other) => one.place.depth - other.place.depth || one.place.traitCount - other.place.traitCount)
                    .forEach(({ place, given: own }) => add(this.selectorOf(place), own));
            }
            return rules;
        }

        selectorOf(place) {
            if (place.depth > deepestPlace)
                throw new RangeError('too deep');
            const around = [];
            for (let at = place; at.depth > 0; at = at.parent)
                around.unshift(at.parent.kind.selector);
            return (around.length ? `:where(${around.join(' ')}) ` : '') + place.kind.selector;
        }

        plainRules() {
            const rules = [
                `* { color: ${write(lightOn(this.ground))} !important; background-image: none !important; }`,
                '* :not(body) { background-color: transparent !important; }',
                `a:any-link { color: ${write(lightened(this.link, this.ground))} !important; }`,
            ];
            const styles = new Set([...document.querySelectorAll(hitSelector)].map((hit) => hit.getAttribute('style')));
            for (const style of [...styles].slice(0, mostKinds)) {
                const hit = document.createElement('font');
                hit.setAttribute('style', style);
                const colour = resolve(hit.style.backgroundColor);
                if (colour && colour[3] === 1)
                    rules.push(`body font[style="${escaped(style)}"] { background-color: ${write(colour)} !important;`
                        + ` color: ${judge(null, false, colour, true)} !important; }`);
            }
            return rules;
        }

        text() {
            const scheme = isDark(this.ground) ? ':root { color-scheme: dark !important }\n' : '';
            return `@media screen { ${scheme}${controls} { color-scheme: light !important }\n`
                + (this.isPlain ? this.plainRules() : this.rules()).join('\n') + '\n}';
        }
    }

    // ---- The sheet of this document ----

    const sheet = new CSSStyleSheet();
    const curtain = new CSSStyleSheet();
    // Until the colours are known: nothing flashes up, and the engine computes no style that will not last.
    curtain.replaceSync('@media screen { body { display: none !important } }');
    document.adoptedStyleSheets = [...document.adoptedStyleSheets, curtain];
    let night = null;

    // A page with too many colours, or one we don't understand, can still be read.
    function attempt(work) {
        try {
            if (!night.isPlain)
                work();
            sheet.replaceSync(night.text());
        } catch {
            night.isPlain = true;
            sheet.replaceSync(isDark(night.ground) ? night.text() : '');
        }
    }

    function groundOf(element, behind) {
        return element ? over(parse(getComputedStyle(element).backgroundColor) || black.concat(0), behind) : behind;
    }

    addEventListener('DOMContentLoaded', () => {
        try {
            if (document.body && document.body.localName === 'body') {
                night = new Night();
                night.ground = groundOf(document.body, groundOf(document.documentElement, white));
                night.visited = resolve(document.body.getAttribute('vlink')) || [85, 26, 139, 1];
                attempt(() => night.readPage());
            }
        } finally {
            document.adoptedStyleSheets = document.adoptedStyleSheets.filter((other) => other !== curtain).concat(sheet);
        }
    });

    // Called by what colours hits.
    globalThis.lumivaraNight = {
        readHits() {
            if (night)
                attempt(() => night.readHits());
        },
    };

    // ---- What leaves the page bears its stored colours ----

    // The engine writes computed colours into what it copies, right after this event. The next frame is drawn with ours
    // again.
    function stepAside() {
        sheet.disabled = true;
        requestAnimationFrame(() => {
            sheet.disabled = false;
        });
    }

    addEventListener('copy', stepAside, true);
    addEventListener('cut', stepAside, true);

    // What is dragged was written before this event.
    addEventListener('dragstart', (event) => {
        const selection = getSelection();
        if (event.target.nodeType !== Node.TEXT_NODE || selection.isCollapsed)
            return;
        const holder = document.implementation.createHTMLDocument('').createElement('div');
        holder.append(selection.getRangeAt(0).cloneContents());
        event.dataTransfer.setData('text/html', holder.innerHTML);
    }, true);
})();
