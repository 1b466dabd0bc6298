// On a dark page: gives text without a colour of its own a light one, and lightens stored colours that could not be read
// on the ground that is really behind them. By a style sheet of the host for the screen alone: the document is not
// touched, so that nothing of this is marked, saved or printed.
//
// The elements that carry a colour or a ground are few kinds, told apart by what makes them so: attributes and rules of
// the page. Each kind becomes one rule; only a kind that needs different colours in different places is also told by what
// it stands in. The engine computes one element of each kind and place, with the page as it came.
(() => {
    'use strict';

    const { white, black, parse, resolve, over, write, isDark, lightOn, lightened, judge } = NightColours;
    const { Traits, escaped, isQuirky } = NightTraits;

    const mostKinds = 1000; // beyond these limits, too, rules would cost more than they are worth
    const mostPlaces = 4000;
    const mostTrials = 5000000; // of a rule on an element
    const deepestPlace = 24;

    const carriers = '[style*="color" i], [style*="background" i], [bgcolor], font[color], a[href], mark, html, body';
    const bareKinds = /^(html|body|mark|table)$/;
    const controls = 'input, button, select, textarea, progress, meter, iframe, frame, object, embed';

    // ---- Kinds of elements, places of kinds ----

    // Whether the rule of one place fits what stands in the other, of the same kind.
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
            this.kindOfTexts = new Map(); // texts of the attributes, and the rules
            this.places = 0;
            this.placeOf = new Map();
            this.hits = new Map();
            this.isPlain = false; // too colourful a page: every text light, every ground off
            this.ground = black;
            this.link = [0, 0, 238, 1];
        }

        // Null for an element that carries nothing.
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

        // As the engine computes it; once for a kind, unless what it declares means something else in each place.
        lookOf(element, kind) {
            if (kind.look)
                return kind.look;
            const style = getComputedStyle(element);
            const look = {
                colour: parse(style.color) || black.concat(1),
                back: parse(style.backgroundColor) || black.concat(0),
                hasPicture: style.backgroundImage !== 'none', // what it looks like is unknown
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
            // Without a type of document the engine keeps the colours around a table out of it.
            const all = [carriers + (isQuirky() ? ', table' : ''), ...this.traits.selectors].join(', ');
            for (const element of document.querySelectorAll(all)) {
                const kind = this.kindOf(element);
                if (!kind)
                    continue;
                const parent = this.parentPlace(element);
                this.placeOf.set(element, this.placeIn(parent, kind, () => this.placeOfStored(element, kind, parent)));
            }
        }

        // Hits are coloured by us, each around mere text. They are no kinds: each place tells by a variable what colour its
        // text has in a hit.
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

        // What a place is given, as declarations by suffix of its selector.
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

        // What a kind's rule fits besides its own has all the kind's traits and others, and weighs no less: so few traits go
        // before many, and likewise for places, whose surroundings weigh nothing.
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

        // One for the kind, and one for each place where that or an earlier one would give something else.
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
            // The engine's own selection greys light letters out as soon as the window is not the active one.
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
    // Until the colours are known: nothing flashes up, and the engine computes no style that will not last. The ground of
    // the body to come is drawn meanwhile, as a picture, which no colour is mistaken for.
    const host = new CSSStyleSheet();
    host.replaceSync(HOST_CSS);
    const ground = [...host.cssRules].filter((rule) => rule.selectorText === 'body').map((rule) => rule.style.backgroundColor);
    curtain.replaceSync('@media screen { body { display: none !important }'
        + ` @layer host { html { background-image: linear-gradient(${ground}, ${ground}) } } }`);
    document.adoptedStyleSheets = [...document.adoptedStyleSheets, curtain];
    let night = null;

    // A page with too many colours, or one we don't understand, can still be read.
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

    // Called by what colours hits, with the texts of their style attributes.
    globalThis.lumivaraNight = {
        addHits(styles) {
            const added = night ? styles.filter((style) => !night.hits.has(style)) : [];
            if (added.length)
                attempt(() => night.addHits(added));
        },
    };

    // ---- What leaves the page bears its stored colours ----

    // The engine writes computed colours into what it copies, right after this event. Without ours, but on the host's
    // ground, it would copy black on black. The host's other rules stay: lines of another height would move the view. The
    // next frame is drawn with everything again.
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
