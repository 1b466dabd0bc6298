// The place that stands at the view's top, told by the parts of the text, and the way to a place told so.
(() => {
    'use strict';

    const { PageWalk, documentsOf } = lumivara;

    const firstLine = 4; // CSS pixels below the view's top: a line that shows less is above the view
    const lineStep = 6;
    const columns = [0.5, 0.25, 0.75, 0.1, 0.9];

    // The number behind an id's last colon: "pli-tv-bu-vb-pj1:1.2" and "1.2" are the segment "1.2".
    function segmentOf(element) {
        const found = element.id ? /^(?:.*:)?(\d+(?:[.-]\d+)*)$/.exec(element.id) : null;
        return found ? found[1] : '';
    }

    // The text without its gaps: runs in reading order, each with its nodes. The cells of a row are one block, because
    // texts side by side are one place. A part with an id of its own is a run of its own.
    class Runs extends PageWalk {
        constructor(page) {
            super();
            this.runs = [];
            this.blockCount = 0;
            this.row = null;
            this.rowBlock = -1;
            this.segment = '';
            this.isAtGap = true;
            this.walk(page.body);
        }

        enter(element) {
            super.enter(element);
            if (element.localName === 'tr' && !this.row) {
                this.row = element;
                this.rowBlock = -1;
            }
            const segment = segmentOf(element);
            if (segment) {
                this.segment = segment;
                this.isAtGap = true;
            }
        }

        leave(element) {
            super.leave(element);
            if (element === this.row)
                this.row = null;
        }

        addNode(node) {
            let run = this.runs[this.runs.length - 1];
            if (this.isAtGap) {
                if (!/\S/.test(node.data))
                    return;
                this.isAtGap = false;
                const isSameRow = this.row && this.rowBlock >= 0;
                const block = isSameRow ? this.rowBlock : this.blockCount++;
                if (this.row)
                    this.rowBlock = block;
                run = { block, cell: isSameRow ? run.cell + 1 : 0, segment: this.segment, nodes: [], length: 0 };
                this.runs.push(run);
            }
            run.nodes.push(node);
            run.length += node.length;
        }
    }

    function characterRange(node, offset) {
        const range = node.ownerDocument.createRange();
        range.setStart(node, offset);
        range.setEnd(node, offset + 1);
        return range;
    }

    // The character that a point is on, if its line begins at or above the point.
    function characterAt(page, x, y) {
        const caret = page.caretRangeFromPoint(x, y);
        if (!caret || caret.startContainer.nodeType !== Node.TEXT_NODE)
            return null;
        const node = caret.startContainer;
        for (const offset of [caret.startOffset, caret.startOffset - 1]) {
            if (offset < 0 || offset >= node.length || !/\S/.test(node.data[offset]))
                continue;
            const rect = characterRange(node, offset).getClientRects()[0];
            if (rect && rect.bottom > 1 && rect.top <= y + 1)
                return { node, offset };
        }
        return null;
    }

    function characterAtTop(page) {
        const view = page.defaultView;
        for (let y = firstLine; y < view.innerHeight; y += lineStep) {
            for (const share of columns) {
                const character = characterAt(page, view.innerWidth * share, y);
                if (character)
                    return character;
            }
        }
        return null;
    }

    // Where a character is; the page's beginning if it is nowhere in the text.
    function placeOf(page, node, offset) {
        for (const run of new Runs(page).runs) {
            const index = run.nodes.indexOf(node);
            if (index < 0)
                continue;
            const before = run.nodes.slice(0, index).reduce((sum, other) => sum + other.length, 0);
            // The middle of the character: no rounding leads to its neighbour.
            return { block: run.block, cell: run.cell, share: (before + offset + 0.5) / run.length, segment: run.segment };
        }
        return { block: 0, cell: 0, share: 0, segment: '' };
    }

    // The character of a run at a share of its length, or the next one that shows.
    function characterOf(run, share) {
        let rest = Math.min(Math.floor(share * run.length), run.length - 1);
        for (const node of run.nodes) {
            if (rest < node.length) {
                const visible = node.data.slice(rest).search(/\S/);
                if (visible >= 0)
                    return characterRange(node, rest + visible);
                rest = node.length;
            }
            rest -= node.length;
        }
        const node = run.nodes[0];
        return characterRange(node, node.data.search(/\S/));
    }

    function rangeOf(page, place) {
        const { runs } = new Runs(page);
        if (!runs.length)
            return null;
        let found = place.segment ? runs.filter((run) => run.segment === place.segment) : [];
        if (!found.length) {
            const block = Math.min(place.block, runs[runs.length - 1].block);
            found = runs.filter((run) => run.block === block);
        }
        return found.length ? characterOf(found[Math.min(place.cell, found.length - 1)], place.share) : null;
    }

    lumivara.placeOf = placeOf;

    lumivara.placeAtTop = () => {
        const page = documentsOf(document)[0];
        const character = page && page.defaultView.scrollY > 0 ? characterAtTop(page) : null;
        return character ? placeOf(page, character.node, character.offset) : { block: 0, cell: 0, share: 0, segment: '' };
    };

    // Where the selection begins; the page's beginning without one.
    lumivara.placeOfSelection = () => {
        for (const page of documentsOf(document)) {
            const selection = page.getSelection();
            if (!selection || selection.isCollapsed)
                continue;
            const range = selection.getRangeAt(0);
            // The first node that the selection holds letters of: it may begin at the end of the block before.
            for (const run of new Runs(page).runs) {
                for (const node of run.nodes) {
                    const begin = node === range.startContainer ? range.startOffset : 0;
                    if (range.intersectsNode(node) && /\S/.test(node.data.slice(begin)))
                        return placeOf(page, node, begin);
                }
            }
        }
        return { block: 0, cell: 0, share: 0, segment: '' };
    };

    lumivara.goToPlace = (place) => {
        const page = documentsOf(document)[0];
        if (!page)
            return;
        if (!place.segment && place.block === 0 && place.share === 0) {
            page.defaultView.scrollTo(0, 0);
            return;
        }
        const range = rangeOf(page, place);
        if (range)
            lumivara.settle(range, true);
    };
})();
