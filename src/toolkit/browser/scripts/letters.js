// The page by its letters alone, without blanks and what nobody sees: its text, and how far down the page a letter stands.
// Touches nothing of the page. The work comes in pieces, because a page may be long and have many marks.
(() => {
    'use strict';

    const { unread, documentsOf } = lumivara;

    const longestPiece = 6; // milliseconds
    const sliceSize = 1 << 16; // characters of a node that are read at once
    const mostHits = 2000; // more than a strip has rows
    const lazySelector = 'p:not(table p)';

    // As the host leaves them out of excerpts, all in one and one by one.
    const blanks = /[\0\s\x85\xad\u034f\u061c\u180e\u200b-\u200f\u202a-\u202e\u2060-\u2069]+/g;
    const rareBlanks = new Set([0x85, 0xa0, 0xad, 0x34f, 0x61c, 0x1680, 0x180e, 0x3000, 0xfeff]);

    function isBlank(code) {
        if (code <= 0x20)
            return code === 0x20 || code === 0 || (code >= 0x09 && code <= 0x0d);
        return (code >= 0x2000 && code <= 0x200f) || (code >= 0x2028 && code <= 0x202f) || (code >= 0x205f && code <= 0x2069)
            || (code >= 0x85 && rareBlanks.has(code));
    }

    const pieceEnd = () => performance.now() + longestPiece;

    // Which letters are in which node. A node that was split or joined since is noticed when it is asked for: what the
    // page's colours and marks change is nodes, and never a letter.
    class Letters {
        constructor(page) {
            this.page = page;
            this.node = page.body; // the next to read; null at the end
            this.offset = 0; // in it
            this.nodes = [];
            this.sizes = [];
            this.starts = [];
            this.length = 0;
            this.last = null;
        }

        get isWhole() {
            return !this.node;
        }

        // False if the place where it stopped is gone.
        isSound() {
            return !this.node || (this.node.isConnected
                && (!this.offset || this.node.length === this.sizes[this.sizes.length - 1]));
        }

        // Reads on up to a moment, and at least one part; gives the letters that it has passed.
        read(until) {
            const parts = [];
            while (this.node) {
                const { node } = this;
                if (node.nodeType === Node.TEXT_NODE && node.length) {
                    if (!this.offset) {
                        this.nodes.push(node);
                        this.sizes.push(node.length);
                        this.starts.push(this.length);
                    }
                    const letters = node.data.slice(this.offset, this.offset + sliceSize).replace(blanks, '');
                    parts.push(letters);
                    this.length += letters.length;
                    this.offset += sliceSize;
                    if (this.offset < node.length) {
                        if (performance.now() >= until)
                            break;
                        continue;
                    }
                }
                this.offset = 0;
                this.node = this.nodeAfter(node);
                if (performance.now() >= until)
                    break;
            }
            return parts.join('');
        }

        // Not recursive, because pages may nest thousands deep.
        nodeAfter(node) {
            const root = this.page.body;
            if (node.nodeType === Node.ELEMENT_NODE && node.firstChild && !unread.has(node.localName))
                return node.firstChild;
            let last = node;
            while (last !== root && !last.nextSibling)
                last = last.parentNode;
            return last === root ? null : last.nextSibling;
        }

        // The character that a letter is; null for none, undefined if its node is another by now. Quick for letters that
        // are asked for in their order.
        find(position) {
            if (position < 0 || position >= this.length)
                return null;
            let low = 0;
            let high = this.starts.length - 1;
            while (low < high) {
                const middle = (low + high + 1) >> 1;
                if (this.starts[middle] <= position)
                    low = middle;
                else
                    high = middle - 1;
            }
            const node = this.nodes[low];
            if (!node.isConnected || node.length !== this.sizes[low])
                return undefined;
            const { data } = node;
            const { last } = this;
            const isBehind = last && last.node === node && last.position <= position;
            let offset = isBehind ? last.offset : 0;
            let left = position - (isBehind ? last.position : this.starts[low]);
            for (; offset < data.length; ++offset) {
                if (!isBlank(data.charCodeAt(offset)) && left-- === 0)
                    break;
            }
            this.last = { node, offset, position };
            return { node, offset };
        }
    }

    let current = null;

    function lettersOf(page) {
        if (!current || current.page !== page || !current.isSound())
            current = new Letters(page);
        return current;
    }

    // A share of the page's height. Of paragraphs that may not be laid out, the place in them follows from their own
    // height: to lay them out for this would take long, and move the page.
    function heightOf(page, { node, offset }, isLazy) {
        const view = page.defaultView;
        const lazy = isLazy ? node.parentElement.closest(lazySelector) : null;
        const range = page.createRange();
        let top;
        if (lazy) {
            range.setStart(lazy, 0);
            range.setEnd(node, offset);
            const rect = lazy.getBoundingClientRect();
            top = rect.top + rect.height * range.toString().length / lazy.textContent.length;
        } else {
            range.setStart(node, offset);
            range.setEnd(node, Math.min(offset + 1, node.length));
            const rect = range.getClientRects()[0];
            if (!rect)
                return -1;
            top = rect.top;
        }
        return Math.min(Math.max((top + view.scrollY) / page.scrollingElement.scrollHeight, 0), 1);
    }

    function hasLazyParts(page) {
        const first = page.querySelector(lazySelector);
        return Boolean(first) && page.defaultView.getComputedStyle(first).contentVisibility === 'auto';
    }

    // A piece of the text from a letter on, and whether it is the last. It may begin before that letter, at the page's
    // beginning, if the page's nodes have changed.
    lumivara.letters = (from) => {
        const page = documentsOf(document)[0];
        if (!page)
            return { from: 0, text: '', isLast: true };
        if (lettersOf(page).length !== from || (from && current.isWhole))
            current = new Letters(page);
        const begin = current.length;
        const text = current.read(pieceEnd());
        return { from: begin, text, isLast: current.isWhole };
    };

    // How far down the first of some letters stand, as shares of the page's height; -1 for one that does not show. As many
    // as a piece of work gives, perhaps none yet.
    lumivara.letterHeights = ({ letters }) => {
        const until = pieceEnd();
        const page = documentsOf(document)[0];
        if (!page)
            return { heights: letters.map(() => -1) };
        const all = lettersOf(page);
        all.read(until);
        const isLazy = all.isWhole && hasLazyParts(page);
        const heights = [];
        while (all.isWhole && heights.length < letters.length) {
            const place = all.find(letters[heights.length]);
            if (place === undefined) {
                current = null;
                break;
            }
            heights.push(place ? heightOf(page, place, isLazy) : -1);
            if (performance.now() >= until)
                break;
        }
        return { heights };
    };

    lumivara.placeOfLetter = (letter) => {
        const page = documentsOf(document)[0];
        if (!page)
            return {};
        let place;
        for (let time = 0; time < 2 && !place; ++time) {
            const all = lettersOf(page);
            all.read(Infinity);
            place = all.find(letter);
            if (place === undefined)
                current = null;
        }
        return place ? lumivara.placeOf(page, place.node, place.offset) : {};
    };

    // ---- The hits of a search, which are elements ----

    let hits = [];

    function textIn(element) {
        let node = element;
        while (node && node.nodeType !== Node.TEXT_NODE)
            node = node.firstChild;
        return node;
    }

    // The same for the hits that the page has now, the first of which is `from`; of very many only some.
    lumivara.hitHeights = (from) => {
        const until = pieceEnd();
        const page = documentsOf(document)[0];
        if (!page)
            return { heights: [], isLast: true };
        if (from === 0) {
            const all = lumivara.hitElements(page);
            const step = Math.max(all.length / mostHits, 1);
            hits = [];
            for (let at = 0; at < all.length; at += step)
                hits.push(all[Math.floor(at)]);
        }
        const isLazy = hits.length > 0 && hasLazyParts(page);
        const heights = [];
        while (from + heights.length < hits.length) {
            const node = textIn(hits[from + heights.length]);
            heights.push(node && node.isConnected ? heightOf(page, { node, offset: 0 }, isLazy) : -1);
            if (performance.now() >= until)
                break;
        }
        return { heights, isLast: from + heights.length >= hits.length };
    };

    lumivara.placeOfHit = (at) => {
        const page = documentsOf(document)[0];
        const node = textIn(hits[at]);
        return page && node && node.isConnected ? lumivara.placeOf(page, node, 0) : {};
    };
})();
