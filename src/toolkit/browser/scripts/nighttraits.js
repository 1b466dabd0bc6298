// The traits by which elements of a dark page declare colours: attributes, and rules of the page.
const NightTraits = (() => {
    'use strict';

    const { resolve } = NightColours;

    const mostMatches = 300000; // beyond it rules would cost more time than their colours are worth
    const deepestImport = 24;
    const noColour = /^(|inherit|unset|initial|revert|currentcolor)$/i;
    const anyStyle = /(^|[;\s])(color|background(-color|-image)?)\s*:/i;
    const placeBound = /\b(var\(|inherit|currentcolor)/i;
    const suffixes = /(:visited|::?before|::?after|::?first-letter|::?first-line|::marker)$/i;

    const isQuirky = () => document.compatMode === 'BackCompat';
    const escaped = (text) =>
        text.replace(/["\\\u0000-\u001f\u007f]/g, (character) => '\\' + character.charCodeAt(0).toString(16) + ' ');

    class Traits {
        constructor() {
            this.known = new Map();
            this.byElement = new Map(); // traits from rules of the page
            this.selectors = [];
            this.hasImportant = false;
            this.matches = 0;
        }

        // `text` is the trait's declaration; it decides whether the trait means the same in every place.
        give(selector, isOwn, text) {
            let trait = this.known.get(selector);
            if (!trait) {
                trait = { id: this.known.size, selector, isOwn, isPlaceBound: placeBound.test(text), variants: [] };
                this.known.set(selector, trait);
            }
            return trait;
        }

        // The texts of all attributes that may set a colour, joined: equal texts give equal traits.
        static attributes(element) {
            const tag = element.localName;
            const own = tag === 'font' ? 'color' : tag === 'body' ? 'text' : tag === 'a' ? 'href' : null;
            const texts = [element.getAttribute('style'), element.getAttribute('bgcolor'), own && element.getAttribute(own)];
            if (own === 'href' && texts[2] !== null)
                texts[2] = '';
            return texts;
        }

        of(element, [style, ground, own]) {
            const traits = [];
            if (style !== null && anyStyle.test(style)) {
                this.hasImportant = this.hasImportant || /!\s*important/i.test(style);
                // Parsed by Chromium: a value that it can't parse is no colour.
                traits.push(this.give(`[style="${escaped(style)}"]`, !noColour.test(element.style.color), style));
            }
            if (ground !== null)
                traits.push(this.give(`[bgcolor="${escaped(ground)}"]`, false, ''));
            if (own !== null && element.localName === 'a')
                traits.push(this.give(':any-link', true, ''));
            else if (own)
                traits.push(this.give(`[${element.localName === 'body' ? 'text' : 'color'}="${escaped(own)}"]`, true, ''));
            return traits.concat(this.byElement.get(element) || []);
        }

        // Rules of the page that set colours; `read` has the importing sheets, to stop cycles.
        readRules(sheet, read) {
            let rules = null;
            try {
                rules = sheet.cssRules;
            } catch {
                return; // blocked from loading
            }
            if (read.has(sheet) || read.size > deepestImport)
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
            const text = [color, background, backgroundColor].join(' ');
            this.add(rule.selectorText, isOwn, text, null);
            if (!isOwn || !/:/.test(rule.selectorText))
                return;
            for (const part of partsOf(rule.selectorText)) {
                const suffix = suffixes.exec(part);
                if (suffix)
                    this.add(part.slice(0, suffix.index).replace(/[\s>+~]$/, '$&*') || '*', false, '',
                        { suffix: suffix[0], colour: resolve(color) });
            }
        }

        add(selector, isOwn, text, variant) {
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
            const trait = this.give(`:where(${selector})`, isOwn, text);
            trait.isOwn = trait.isOwn || isOwn;
            trait.isPlaceBound = trait.isPlaceBound || placeBound.test(text);
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

    return { Traits, escaped, isQuirky };
})();
