// How far down the page parts of its text stand, and the hits of a search. Touches nothing of the page. The work comes in
// pieces, because a page may be long and have many marks.
(() => {
    'use strict';

    const { unread, documentsOf } = lumivara;

    const longestPiece = 5; // milliseconds
    const nodesAtOnce = 64; // between two looks at the clock
    const mostHits = 2000; // more than a strip has rows
    const lazySelector = 'p:not(table p)';

    const pieceEnd = () => performance.now() + longestPiece;

    // The page's text as it is written, node by node. A node that was split or joined since is noticed when it is asked for:
    // what the page's colours and marks change is nodes, and never a character.
    class Written {
        constructor(page) {
            this.page = page;
            this.node = page.body; // the next to read; null at the end
            this.nodes = [];
            this.sizes = [];
            this.starts = [];
            this.length = 0;
        }

        get isWhole() {
            return !this.node;
        }

        // False if the place where it stopped is gone.
        get isSound() {
            return !this.node || this.node.isConnected;
        }

        // Reads on up to a moment, and at least some nodes; gives the text that it has passed.
        read(until) {
            const parts = [];
            for (let count = 1; this.node; ++count) {
                const { node } = this;
                if (node.nodeType === Node.TEXT_NODE && node.length) {
                    this.nodes.push(node);
                    this.sizes.push(node.length);
                    this.starts.push(this.length);
                    this.length += node.length;
                    parts.push(node.data);
                }
                this.node = this.nodeAfter(node);
                if (count % nodesAtOnce === 0 && performance.now() >= until)
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

        // The node and offset of a character; null for none, undefined if its node is another by now.
        find(character) {
            if (character < 0 || character >= this.length)
                return null;
            let low = 0;
            let high = this.starts.length - 1;
            while (low < high) {
                const middle = (low + high + 1) >> 1;
                if (this.starts[middle] <= character)
                    low = middle;
                else
                    high = middle - 1;
            }
            const node = this.nodes[low];
            if (!node.isConnected || node.length !== this.sizes[low])
                return undefined;
            return { node, offset: character - this.starts[low] };
        }
    }

    let current = null;

    function writtenIn(page) {
        if (!current || current.page !== page || !current.isSound)
            current = new Written(page);
        return current;
    }

    // Gives places as shares of the page's height.
    class Ruler {
        constructor(page) {
            this.range = page.createRange();
            this.above = page.defaultView.scrollY;
            this.height = page.scrollingElement.scrollHeight;
            const first = page.querySelector(lazySelector);
            this.isLazy = Boolean(first) && page.defaultView.getComputedStyle(first).contentVisibility === 'auto';
        }

        // -1 for what does not show. Of paragraphs that may not be laid out, the place in them follows from their own height:
        // to lay them out for this would take long, and move the page.
        heightOf({ node, offset }) {
            const lazy = this.isLazy ? node.parentElement.closest(lazySelector) : null;
            let top;
            if (lazy) {
                this.range.setStart(lazy, 0);
                this.range.setEnd(node, offset);
                const rect = lazy.getBoundingClientRect();
                top = rect.top + rect.height * this.range.toString().length / lazy.textContent.length;
            } else {
                this.range.setStart(node, offset);
                this.range.setEnd(node, Math.min(offset + 1, node.length));
                const rect = this.range.getClientRects()[0];
                if (!rect)
                    return -1;
                top = rect.top;
            }
            return Math.min(Math.max((top + this.above) / this.height, 0), 1);
        }
    }

    // A piece of the text from a character on, and whether it is the last. It may begin before that, at the page's beginning,
    // if the page's nodes have changed.
    lumivara.writtenText = (from) => {
        const page = documentsOf(document)[0];
        if (!page)
            return { from: 0, text: '', isLast: true };
        if (writtenIn(page).length !== from || (from && current.isWhole))
            current = new Written(page);
        const begin = current.length;
        const text = current.read(pieceEnd());
        return { from: begin, text, isLast: current.isWhole };
    };

    // How far down the first of some characters stand, as shares of the page's height; -1 for one that does not show. As many
    // as a piece of work gives, perhaps none yet.
    lumivara.textHeights = ({ characters }) => {
        const page = documentsOf(document)[0];
        if (!page)
            return { heights: characters.map(() => -1) };
        const until = pieceEnd();
        const written = writtenIn(page);
        written.read(until);
        const ruler = written.isWhole ? new Ruler(page) : null;
        const heights = [];
        while (ruler && heights.length < characters.length) {
            const place = written.find(characters[heights.length]);
            if (place === undefined) {
                current = null;
                break;
            }
            heights.push(place ? ruler.heightOf(place) : -1);
            if (performance.now() >= until)
                break;
        }
        return { heights };
    };

    lumivara.placeOfCharacter = (character) => {
        const page = documentsOf(document)[0];
        if (!page)
            return {};
        let place;
        for (let time = 0; time < 2 && !place; ++time) {
            const written = writtenIn(page);
            written.read(Infinity);
            place = written.find(character);
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
        return node && node.isConnected ? node : null;
    }

    // The same for the hits that the page has now, the first of which is `from`; of very many only some.
    lumivara.hitHeights = (from) => {
        const page = documentsOf(document)[0];
        if (!page)
            return { heights: [], isLast: true };
        const until = pieceEnd();
        if (from === 0) {
            const all = lumivara.hitElements(page);
            const step = Math.max(Math.ceil(all.length / mostHits), 1);
            hits = all.filter((element, at) => at % step === 0);
        }
        const ruler = hits.length ? new Ruler(page) : null;
        const heights = [];
        while (from + heights.length < hits.length) {
            const node = textIn(hits[from + heights.length]);
            heights.push(node ? ruler.heightOf({ node, offset: 0 }) : -1);
            if (performance.now() >= until)
                break;
        }
        return { heights, isLast: from + heights.length >= hits.length };
    };

    lumivara.placeOfHit = (at) => {
        const page = documentsOf(document)[0];
        const node = textIn(hits[at]);
        return page && node ? lumivara.placeOf(page, node, 0) : {};
    };
})();
