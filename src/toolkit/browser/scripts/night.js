// On a dark page: makes text without a colour light, and lightens stored colours that would be unreadable on the
// background that is really behind them. It does so by a style sheet for the screen only; the document is not changed, so
// that marks, saved files and prints have the stored colours.
//
// The elements that declare a colour or a background fall into few kinds, by the attributes and the page's rules that do
// so. Each kind becomes one rule; a kind that needs different colours in different places gets rules that also name what
// surrounds it. Chromium computes the original style of one element of each kind and place.
(() => {
    'use strict';

    const { white, black, parse, resolve, over, write, isDark, lightOn, lightened, judge } = NightColours;
    const { Traits, escaped, isQuirky } = NightTraits;

    const mostKinds = 1000; // beyond these limits rules would cost more than they are worth
    const mostPlaces = 4000;
    const mostTrials = 5000000; // tests of a rule against an element
    const deepestPlace = 24;

    const carriers = '[style*="color" i], [style*="background" i], [bgcolor], font[color], a[href], mark, html, body';
    const bareKinds = /^(html|body|mark|table)$/;
    const controls = 'input, button, select, textarea, progress, meter, iframe, frame, object, embed';

    // ---- Kinds of elements, places of kinds ----

    // Whether the rule of one place also matches elements in the other place of the same kind.
    function isAround(one, other) {
        for (let at = other; one.depth > 0; at = at.parent) {
            if (at.depth < one.depth)
                return false;
            const inner = one.parent.kind;
            const outer = at.parent.kind;
            if (inner === outer || (inner.tag === outer.tag && inner.traits.every((trait) => outer.traits.includes(trait))))
                one = one.parent;
        }
        return true;
    }

    class Night {
        constructor() {
            this.traits = new Traits();
            this.kinds = new Map();
            this.kindOfTexts = new Map(); // by the texts of the attributes and the rules
            this.places = 0;
            this.placeOf = new Map();
            this.hits = new Map();
            this.isPlain = false; // too colourful a page: all text light, all backgrounds off
            this.ground = black;
            this.link = [0, 0, 238, 1];
        }

        // Null for an element that declares no colour or background.
        kindOf(element) {
            const tag = element.localName;
            const texts = Traits.attributes(element);
            const byRules = this.traits.byElement.get(element);
            const key = tag + JSON.stringify(byRules ? texts.concat(byRules.map((trait) => trait.id)) : texts);
            let kind = this.kindOfTexts.get(key);
            if (kind === undefined) {
                const traits = this.traits.of(element, texts);
                kind = traits.length || bareKinds.test(tag) ? this.kindWith(tag, traits) : null;
                this.kindOfTexts.set(key, kind);
            }
            return kind;
        }

        kindWith(tag, traits) {
            const key = tag + ' ' + traits.map((trait) => trait.id).join(' ');
            let kind = this.kinds.get(key);
            if (!kind) {
                if (this.kinds.size >= mostKinds)
                    throw new RangeError('too many kinds');
                const selector = traits.map((trait) => trait.selector).join('');
                kind = { tag, traits, places: [], selector: CSS.escape(tag) + selector, look: null };
                this.kinds.set(key, kind);
            }
            return kind;
        }

        // `read` returns stored colour, background and whether there is a picture; called for a new place.
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

        // As Chromium computes it; once for a kind, unless its declarations depend on the place.
        lookOf(element, kind) {
            if (kind.look)
                return kind.look;
            const style = getComputedStyle(element);
            const look = {
                colour: parse(style.color) || black.concat(1),
                back: parse(style.backgroundColor) || black.concat(0),
                hasPicture: style.backgroundImage !== 'none', // its colours are unknown
            };
            if (!kind.traits.some((trait) => trait.isPlaceBound))
                kind.look = look;
            return look;
        }

        placeOfStored(element, kind, parent) {
            const { colour, back, hasPicture } = this.lookOf(element, kind);
            const ground = over(back, parent ? parent.ground : white);
            let isOwn = kind.traits.some((trait) => trait.isOwn) || kind.tag === 'mark';
            if (kind.tag === 'table' && isQuirky())
                isOwn = isOwn || write(colour) !== write(black);
            else if (parent && !isOwn)
                return { stored: parent.stored, isOwn: parent.isOwn, ground, hasPicture };
            return { stored: colour, isOwn, ground, hasPicture };
        }

        readPage() {
            for (const sheet of document.styleSheets)
                this.traits.readRules(sheet, new Set());
            // Without a doctype Chromium does not inherit colours into a table.
            const all = [carriers + (isQuirky() ? ', table' : ''), ...this.traits.selectors].join(', ');
            for (const element of document.querySelectorAll(all)) {
                const kind = this.kindOf(element);
                if (!kind)
                    continue;
                const parent = this.parentPlace(element);
                this.placeOf.set(element, this.placeIn(parent, kind, () => this.placeOfStored(element, kind, parent)));
            }
        }

        // Hits are our own elements, each around text only. They are not kinds: a variable of each place gives the colour of
        // its text in a hit.
        addHits(styles) {
            for (const style of styles) {
                const hit = document.createElement('font');
                hit.setAttribute('style', style);
                this.hits.set(style, {
                    variable: '--lumivara-hit-' + this.hits.size,
                    back: resolve(hit.style.backgroundColor) || black.concat(0), colour: resolve(hit.style.color),
                });
            }
        }

        hitRules() {
            return [...this.hits].map(([style, { variable, colour }]) => {
                const shown = `var(${variable})`;
                return `font[style="${escaped(style)}"] { ${this.declare(shown)} }`;
            });
        }

        declare(colour) {
            return `color: ${colour} !important;`
                + (this.traits.hasImportant ? ` -webkit-text-fill-color: ${colour} !important;` : '');
        }

        // The declarations for a place, by suffix of its selector.
        givenTo(place) {
            const { stored, isOwn, ground } = place;
            const declare = (colour) => this.declare(colour);
            let declarations = declare(judge(stored, isOwn, ground));
            if (place.hasPicture)
                declarations += ' background-image: none !important;';
            for (const { variable, back, colour } of this.hits.values())
                declarations += ` ${variable}: ${judge(colour || stored, Boolean(colour) || isOwn, over(back, ground), true)};`;
            const given = [['', declarations]];
            const { traits } = place.kind;
            if (traits.some((trait) => trait.selector === ':any-link')) {
                const isPlainLink = traits.filter((trait) => trait.isOwn).length === 1;
                given.push([':visited', declare(judge(isPlainLink ? this.visited : stored, true, ground))]);
            }
            for (const { suffix, colour } of traits.flatMap((trait) => trait.variants))
                given.push([suffix, declare(judge(colour, true, ground))]);
            return given;
        }

        // A kind's rule also matches kinds that have all its traits and more, whose specificity is no lower. So kinds with
        // few traits come first. The same goes for places, whose surroundings add no specificity.
        rules() {
            const rules = [];
            const kinds = [...this.kinds.values()].filter((kind) => kind.places.length);
            let trials = 0;
            for (const kind of kinds.sort((one, other) => one.traits.length - other.traits.length)) {
                const before = rules.length;
                this.addRules(rules, kind);
                trials += (rules.length - before) * document.getElementsByTagName(kind.tag).length;
            }
            if (trials > mostTrials)
                throw new RangeError('too many rules');
            return rules.concat(this.hitRules());
        }

        // One rule for the kind, and one for each place where that or an earlier rule would give the wrong colour.
        addRules(rules, kind) {
            const counts = new Map();
            for (const place of kind.places) {
                place.given = this.givenTo(place);
                place.givenText = String(place.given);
                counts.set(place.givenText, (counts.get(place.givenText) || 0) + 1);
            }
            const add = (selector, given) => {
                for (const [suffix, declarations] of given)
                    rules.push(`${selector}${suffix} { ${declarations} }`);
            };
            const [most] = [...counts].sort((one, other) => other[1] - one[1])[0];
            add(kind.selector, kind.places.find((place) => place.givenText === most).given);
            if (counts.size === 1)
                return;
            const added = [];
            const sorted = kind.places.sort((one, other) => one.depth - other.depth || one.traitCount - other.traitCount);
            for (const place of sorted) {
                const last = added.findLast((other) => isAround(other, place));
                if (place.givenText === (last ? last.givenText : most))
                    continue;
                add(this.selectorOf(place), place.given);
                added.push(place);
            }
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
                `* { ${this.declare(write(lightOn(this.ground)))} background-image: none !important; }`,
                '* :not(body) { background-color: transparent !important; }',
                `a:any-link { ${this.declare(write(lightened(this.link, this.ground)))} }`,
            ];
            for (const [style, { back, colour }] of this.hits) {
                const ground = over(back, this.ground);
                rules.push(`body font[style="${escaped(style)}"] { background-color: ${write(ground)} !important;`
                    + ` ${this.declare(judge(colour, Boolean(colour), ground, true))} }`);
            }
            return rules;
        }

        text() {
            // Chromium's own selection greys out light letters while the window is inactive.
            const scheme = isDark(this.ground)
                ? ':root { color-scheme: dark !important }\n'
                    + '::selection { background-color: rgba(52, 94, 150, 0.996); color: white }\n' : '';
            return `@media screen { ${scheme}${controls} { color-scheme: light !important }\n`
                + (this.isPlain ? this.plainRules() : this.rules()).join('\n') + '\n}';
        }
    }

    // ---- The sheet of this document ----

    const sheet = new CSSStyleSheet();
    const curtain = new CSSStyleSheet();
    // Until the colours are known: avoids a flash, and styles that Chromium would compute in vain. The body's background
    // is drawn meanwhile as a picture, so that it is not mistaken for a background colour.
    const host = new CSSStyleSheet();
    host.replaceSync(HOST_CSS);
    const ground = [...host.cssRules].filter((rule) => rule.selectorText === 'body')
        .map((rule) => rule.style.backgroundColor).filter(Boolean).pop();
    curtain.replaceSync('@media screen { body { display: none !important }'
        + ` @layer host { html { background-image: linear-gradient(${ground}, ${ground}) } } }`);
    document.adoptedStyleSheets = [...document.adoptedStyleSheets, curtain];
    let night = null;

    // A page with too many colours, or one that can't be analysed, stays readable.
    function attempt(work) {
        try {
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

    // Called by highlight.js, with the texts of the hits' style attributes.
    globalThis.lumivaraNight = {
        addHits(styles) {
            const added = night ? styles.filter((style) => !night.hits.has(style)) : [];
            if (added.length)
                attempt(() => night.addHits(added));
        },
    };

    // ---- Copied and dragged content keeps its stored colours ----

    // Chromium writes computed colours into the copied content, right after this event. Without our sheet but on the
    // host's background it would copy black on black. The host's other rules stay, because a changed line height would
    // move the view. The next frame is drawn with everything again.
    const bare = new CSSStyleSheet();
    bare.replaceSync('@media screen { @layer bare { body { background-color: transparent } } }');
    bare.disabled = true;
    document.adoptedStyleSheets = [...document.adoptedStyleSheets, bare];

    function stepAside() {
        [sheet.disabled, bare.disabled] = [true, false];
        requestAnimationFrame(() => {
            [sheet.disabled, bare.disabled] = [false, true];
        });
    }

    addEventListener('copy', stepAside, true);
    addEventListener('cut', stepAside, true);

    // Dragged content was written before this event.
    addEventListener('dragstart', (event) => {
        const selection = getSelection();
        if (event.target.nodeType !== Node.TEXT_NODE || selection.isCollapsed)
            return;
        const holder = document.implementation.createHTMLDocument('').createElement('div');
        holder.append(selection.getRangeAt(0).cloneContents());
        event.dataTransfer.setData('text/html', holder.innerHTML);
    }, true);
})();
