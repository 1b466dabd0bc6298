// The reader's selection, and the word under a point.
(() => {
    'use strict';

    const { PageText, documentsOf } = lumivara;

    // Elements that their children need: without its table a cell is mere text, without its list an item has no number.
    const frames = new Set(['table', 'thead', 'tbody', 'tfoot', 'tr', 'colgroup', 'ul', 'ol', 'menu', 'dl', 'ruby']);
    // Formatting that a part of the text keeps, and blocks that are kept only if all of their text is selected.
    const looks = new Set(['b', 'strong', 'i', 'em', 'u', 's', 'small', 'big', 'sup', 'sub', 'tt', 'code', 'font', 'span']);
    const blocks = new Set(['p', 'h1', 'h2', 'h3', 'h4', 'h5', 'h6', 'pre', 'center', 'blockquote']);

    // The contents of a range, inside empty copies of the surrounding elements that they need.
    function contentsOf(range) {
        const bare = (text) => text.replace(/\s/g, '');
        const text = bare(range.toString());
        let content = range.cloneContents();
        let outer = range.commonAncestorContainer;
        if (outer.nodeType !== Node.ELEMENT_NODE)
            outer = outer.parentElement;
        for (; outer && outer.localName !== 'body'; outer = outer.parentElement) {
            const isWhole = blocks.has(outer.localName) && (outer.localName === 'pre' || text === bare(outer.textContent));
            if (!isWhole && !frames.has(outer.localName) && !looks.has(outer.localName))
                break;
            const shell = outer.cloneNode(false);
            shell.removeAttribute('id');
            shell.append(content);
            content = shell;
        }
        return content;
    }

    lumivara.selectedHtml = () => {
        for (const page of documentsOf(document)) {
            const selection = page.getSelection();
            if (!selection || selection.isCollapsed)
                continue;
            const holder = page.implementation.createHTMLDocument('').createElement('div');
            for (let index = 0; index < selection.rangeCount; ++index)
                holder.append(contentsOf(selection.getRangeAt(index)));
            return holder.innerHTML;
        }
        return '';
    };

    lumivara.selectAll = () => {
        const page = documentsOf(document)[0];
        if (!page)
            return '';
        page.getSelection().selectAllChildren(page.body);
        return page.getSelection().toString();
    };

    function covers(node, offset, x, y) {
        const range = node.ownerDocument.createRange();
        range.setStart(node, offset);
        range.setEnd(node, offset + 1);
        for (const rect of range.getClientRects()) {
            if (x >= rect.left && x < rect.right && y >= rect.top && y < rect.bottom)
                return true;
        }
        return false;
    }

    // The text around a node without a gap: a word may cross the borders of elements.
    function runAround(node) {
        const text = new PageText(PageText.blockOf(node), true);
        const index = text.pieces.findIndex((piece) => piece.node === node);
        return index < 0 ? null : { text, piece: text.pieces[index] };
    }

    const nothing = { word: '', before: [], after: [] };

    // Words on one side of a segment, the nearest first, up to punctuation. Asked one by one: a line may be very long.
    function wordsBeside(segments, segment, step, most) {
        const next = (from) => segments.containing(step < 0 ? from.index - 1 : from.index + from.segment.length);
        const words = [];
        for (let at = next(segment); at && words.length < most; at = next(at)) {
            let gap = '';
            for (; at && !at.isWordLike && gap.length < 8; at = next(at))
                gap += at.segment;
            if (!at || !at.isWordLike || !/^(\s+|-)$/.test(gap))
                break;
            words.push(plain(at));
        }
        return words;
    }

    // Without soft hyphens.
    function plain(segment) {
        return segment.segment.replace(/\u00ad/g, '').trim();
    }

    function wordAround(node, offset, most) {
        const run = runAround(node);
        if (!run)
            return nothing;
        const { text, piece } = run;
        const index = piece.map ? piece.map.indexOf(offset) : offset;
        if (index < 0)
            return nothing;
        const position = piece.start + index;
        const begin = text.text.lastIndexOf('\n', position) + 1;
        const stop = text.text.indexOf('\n', position);
        const line = text.text.slice(begin, stop < 0 ? text.text.length : stop);
        const segments = new Intl.Segmenter('en', { granularity: 'word' }).segment(line);
        const segment = segments.containing(position - begin);
        if (!segment || !segment.isWordLike)
            return nothing;
        return {
            word: plain(segment),
            before: wordsBeside(segments, segment, -1, most).reverse(),
            after: wordsBeside(segments, segment, 1, most),
        };
    }

    function wordIn(page, x, y, most) {
        const element = page.elementFromPoint(x, y);
        if (element && element.contentDocument) {
            const rect = element.getBoundingClientRect();
            return wordIn(element.contentDocument, x - rect.left - element.clientLeft, y - rect.top - element.clientTop, most);
        }
        const caret = page.caretRangeFromPoint(x, y);
        if (!caret || caret.startContainer.nodeType !== Node.TEXT_NODE)
            return nothing;
        const node = caret.startContainer;
        for (let offset = Math.max(caret.startOffset - 1, 0); offset <= caret.startOffset && offset < node.length; ++offset) {
            if (covers(node, offset, x, y))
                return wordAround(node, offset, most);
        }
        return nothing;
    }

    // The word under a point, and so many at most on either side of it.
    lumivara.wordAt = (x, y, most) => wordIn(document, x, y, most);
})();
