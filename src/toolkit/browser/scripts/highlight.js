// Colours the hits of a text and scrolls one of them to the top of the view.
(() => {
    'use strict';

    const { PageText, documentsOf } = lumivara;
    // The elements with our colours, each around one text node. They never nest: a later colour splits or repaints those
    // of an earlier one, so the last colour always wins.
    const painted = new WeakSet();

    function colour(element, foreground, background) {
        if (background)
            element.style.backgroundColor = background;
        if (foreground)
            element.style.color = foreground;
    }

    // Splits the node instead of replacing it, because selections and scroll targets refer to it.
    function wrap(node, begin, end, model) {
        const middle = begin > 0 ? node.splitText(begin) : node;
        if (end - begin < middle.length)
            middle.splitText(end - begin);
        const element = model.cloneNode(false);
        middle.replaceWith(element);
        element.append(middle);
        return element;
    }

    function partOf(element, text) {
        const part = element.cloneNode(false);
        part.append(text);
        painted.add(part);
        return part;
    }

    function repaint(node, begin, end, foreground, background) {
        const element = node.parentNode;
        const data = node.data;
        if (end < data.length) {
            element.after(partOf(element, data.slice(end)));
            node.deleteData(end, data.length - end);
        }
        let target = element;
        if (begin > 0) {
            target = partOf(element, data.slice(begin, end));
            element.after(target);
            node.deleteData(begin, data.length - begin);
        }
        colour(target, foreground, background);
        return target;
    }

    // Parts of text nodes that the hits cover; overlapping hits are merged.
    function coveredParts(text, spans) {
        const parts = [];
        let index = 0;
        for (const span of spans) {
            while (text.pieces[index].start + text.pieces[index].length <= span.begin)
                ++index;
            for (let at = index; at < text.pieces.length && text.pieces[at].start < span.end; ++at) {
                const piece = text.pieces[at];
                const first = Math.max(span.begin - piece.start, 0);
                const last = Math.min(span.end - piece.start, piece.length) - 1;
                parts.push({ node: piece.node, begin: PageText.offsetOf(piece, first), end: PageText.endOf(piece, last) });
            }
        }
        return parts;
    }

    // The hits of a text: their number, where the last begins, and what they cover; overlapping ones are merged.
    function hitsIn(text, query, wholeWord) {
        const hits = { count: 0, lastBegin: -1, spans: [] };
        text.forEachHit(query, wholeWord, (begin, end) => {
            ++hits.count;
            hits.lastBegin = begin;
            const span = hits.spans[hits.spans.length - 1];
            if (span && begin <= span.end)
                span.end = end;
            else
                hits.spans.push({ begin, end });
        });
        return hits;
    }

    function highlightDocument(page, query, options) {
        const text = new PageText(page.body, options.matchCase);
        const { count, lastBegin, spans } = hitsIn(text, query, options.wholeWord);
        if (!count)
            return 0;
        const target = options.scroll === 1 ? spans[0].begin : options.scroll === 2 && count > 1 ? lastBegin : -1;
        if (options.foreground || options.background) {
            // Copies of one element share its style, so that Chromium parses the colours once and not for each hit.
            const model = page.createElement('font');
            colour(model, options.foreground, options.background);
            // From the end, so that earlier offsets stay valid.
            const styles = new Set();
            for (const { node, begin, end } of coveredParts(text, spans).reverse()) {
                const element = painted.has(node.parentNode)
                    ? repaint(node, begin, end, options.foreground, options.background)
                    : wrap(node, begin, end, model);
                painted.add(element);
                styles.add(element.getAttribute('style'));
            }
            // Text lightened for a dark page may be unreadable on the hit's background.
            const { lumivaraNight } = page.defaultView;
            if (lumivaraNight)
                lumivaraNight.addHits([...styles]);
        }
        // Colouring has changed the nodes, but not the characters.
        if (target >= 0)
            lumivara.settle(new PageText(page.body, options.matchCase).range(target, target + 1), true);
        return count;
    }

    lumivara.isPainted = (element) => painted.has(element);
    lumivara.hitsIn = hitsIn;
    lumivara.wrap = wrap;
    lumivara.coveredParts = coveredParts;

    lumivara.highlight = (query, options) =>
        documentsOf(document).reduce((count, page) => count + highlightDocument(page, query, options), 0);

    lumivara.scrollToFirst = (query) => {
        for (const page of documentsOf(document)) {
            const text = new PageText(page.body, false);
            let place = null;
            text.forEachHit(query, false, (begin, end) => {
                const range = text.range(begin, end);
                // A hit in hidden text can't be shown, so take the next one.
                if (!place || range.getClientRects().length)
                    place = range;
                return place.getClientRects().length === 0;
            });
            if (place) {
                lumivara.settle(place, true);
                return true;
            }
        }
        return false;
    };
})();
