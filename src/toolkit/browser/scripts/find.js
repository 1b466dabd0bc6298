// The places of a text in the page, or those that the host has found in it: counts them, marks them all, and takes the
// reader from one to the next. The place in which the reader stands is selected.
(() => {
    'use strict';

    const { PageText, documentsOf, hitsIn, coveredParts, wrap } = lumivara;

    const mostMarks = 20000; // more would take seconds; those texts are only counted
    const markName = 'lumivara-find';
    const sheets = new WeakMap(); // by document: for the marks, and for the place in which the reader stands
    let place = null; // that place while it is selected
    let marked = null; // what is marked: { query, matchCase, wholeWord }, or { spans } of the visible text
    let coloured = null; // the same, what was coloured last
    let isSelectedAgain = false;

    // On the screen only. The colours of a place and of the reader's go over those of the page and of its hits.
    function sheetsOf(page) {
        let own = sheets.get(page);
        if (!own) {
            const view = page.defaultView;
            const [back, ink] = view.lumivaraNight ? ['#2c5080', '#fff'] : ['#b9d7ff', '#000'];
            const text = (colour) => `color: ${colour} !important; -webkit-text-fill-color: ${colour} !important;`;
            const sheet = (rule) => {
                const made = new view.CSSStyleSheet();
                made.replaceSync(`@media screen { ${rule} }`);
                return made;
            };
            own = {
                marks: sheet(`${markName} { background-color: ${back} !important; ${text(ink)} }`),
                place: sheet(`::selection { background-color: rgba(255, 150, 50, 0.996) !important; ${text('#000')} }`),
            };
            sheets.set(page, own);
            page.addEventListener('selectionchange', () => dressPlace(page));
        }
        return own;
    }

    const undress = (page, sheet) => {
        page.adoptedStyleSheets = page.adoptedStyleSheets.filter((other) => other !== sheet);
    };

    function isPlaceSelected(page) {
        const selection = selectionOf(page);
        return place && selection && place.startContainer.getRootNode() === page
            && !selection.compareBoundaryPoints(Range.START_TO_START, place)
            && !selection.compareBoundaryPoints(Range.END_TO_END, place);
    }

    // What the reader selects keeps its own colour.
    function dressPlace(page) {
        const sheet = sheetsOf(page).place;
        if (!marked || !isPlaceSelected(page))
            undress(page, sheet);
        else if (!page.adoptedStyleSheets.includes(sheet))
            page.adoptedStyleSheets = [...page.adoptedStyleSheets, sheet];
    }

    // ---- The selection, by characters: moving the nodes of a selection would drop it ----

    function selectionOf(page) {
        const selection = page.getSelection();
        return selection && selection.rangeCount ? selection.getRangeAt(0) : null;
    }

    function select(range) {
        const selection = range.startContainer.ownerDocument.getSelection();
        selection.removeAllRanges();
        selection.addRange(range);
        return selection.toString();
    }

    // Takes the reader to a place and returns its text.
    function standAt(range) {
        const text = select(range);
        place = range.cloneRange();
        dressPlace(range.startContainer.ownerDocument);
        lumivara.settle(range, false);
        return text;
    }

    function keepSelection(page, change) {
        const range = selectionOf(page);
        let begin = 0;
        let end = 0;
        if (range && page.body.contains(range.commonAncestorContainer)) {
            const before = page.createRange();
            before.setStart(page.body, 0);
            before.setEnd(range.startContainer, range.startOffset);
            begin = before.toString().length;
            end = begin + range.toString().length;
        }
        const isPlace = isPlaceSelected(page);
        change();
        if (end === begin)
            return;
        const again = page.createRange();
        const walker = page.createTreeWalker(page.body, NodeFilter.SHOW_TEXT);
        let isStarted = false;
        for (let at = 0, node = walker.nextNode(); node; at += node.length, node = walker.nextNode()) {
            if (!isStarted && begin < at + node.length) {
                again.setStart(node, begin - at);
                isStarted = true;
            }
            if (end <= at + node.length) {
                again.setEnd(node, end - at);
                break;
            }
        }
        select(again);
        if (isPlace)
            place = again.cloneRange();
        dressPlace(page);
        isSelectedAgain = true;
    }

    // ---- Marks ----

    // The documents with their texts, and where each begins in the visible text.
    function visibleParts() {
        let start = 0;
        return documentsOf(document).map((page) => {
            const part = { page, text: new PageText(page.body, true), start };
            start += part.text.length + 1;
            return part;
        });
    }

    // Those of the ascending spans that are in the document, by its own positions.
    function spansWithin(part, spans) {
        const inside = ({ begin, end }) => begin >= part.start && end <= part.start + part.text.length;
        const own = spans.filter(inside).map(({ begin, end }) => ({ begin: begin - part.start, end: end - part.start }));
        return { count: own.length, spans: own };
    }

    function mark(finding) {
        const found = finding.spans
            ? visibleParts().map((part) => ({ ...part, hits: spansWithin(part, finding.spans) }))
            : documentsOf(document).map((page) => {
                const text = new PageText(page.body, finding.matchCase);
                return { page, text, hits: hitsIn(text, finding.query, finding.wholeWord) };
            });
        marked = finding;
        const isTooMuch = found.reduce((count, { hits }) => count + hits.count, 0) > mostMarks;
        for (const { page, text, hits } of found) {
            page.adoptedStyleSheets = [...page.adoptedStyleSheets, sheetsOf(page).marks];
            if (isTooMuch || !hits.count)
                continue;
            keepSelection(page, () => {
                const model = page.createElement(markName);
                for (const { node, begin, end } of coveredParts(text, hits.spans).reverse())
                    wrap(node, begin, end, model);
            });
        }
    }

    function unwrap(root) {
        for (const element of root.querySelectorAll(markName))
            element.replaceWith(...element.childNodes);
        root.normalize();
    }

    function unmark() {
        if (!marked)
            return;
        marked = null;
        for (const page of documentsOf(document)) {
            undress(page, sheetsOf(page).marks);
            undress(page, sheetsOf(page).place);
            if (page.querySelector(markName))
                keepSelection(page, () => unwrap(page.body));
        }
    }

    // Runs something that must not see the marks.
    function withoutMarks(work) {
        const finding = marked;
        unmark();
        const result = work();
        if (finding)
            mark(finding);
        return result;
    }

    const { highlight, selectedHtml } = lumivara;

    lumivara.highlight = (query, options) => withoutMarks(() => {
        const count = highlight(query, options);
        if (count)
            coloured = { query, matchCase: options.matchCase, wholeWord: options.wholeWord };
        return count;
    });

    lumivara.selectedHtml = () => withoutMarks(selectedHtml);

    // Chromium writes what is copied right after this event.
    addEventListener('copy', () => {
        const finding = marked;
        unmark();
        requestAnimationFrame(() => {
            if (finding && !marked)
                mark(finding);
        });
    }, true);

    // Dragged content was written before this event.
    addEventListener('dragstart', (event) => {
        const range = selectionOf(document);
        if (!marked || event.target.nodeType !== Node.TEXT_NODE || !range || range.collapsed)
            return;
        const holder = document.implementation.createHTMLDocument('').createElement('div');
        holder.append(range.cloneContents());
        unwrap(holder);
        event.dataTransfer.setData('text/html', holder.innerHTML);
    }, true);

    // The elements around the places that are marked or coloured, in their order.
    lumivara.hitElements = (page) => [...page.querySelectorAll(`${markName}, font`)]
        .filter((element) => element.localName === markName || lumivara.isPainted(element));

    // ---- Steps ----

    // The first character in the view, as a range; null at the top of the page.
    function viewTop(page) {
        const view = page.defaultView;
        if (view.scrollY <= 0)
            return null;
        for (const share of [0.5, 0.25, 0.75]) {
            const caret = page.caretRangeFromPoint(view.innerWidth * share, 4);
            if (caret && caret.startContainer.nodeType === Node.TEXT_NODE)
                return caret;
        }
        return null;
    }

    // The position of a range's start in the text; -1 if it is behind everything.
    function positionOf(text, range) {
        for (const piece of text.pieces) {
            if (range.comparePoint(piece.node, piece.node.length) < 0)
                continue;
            if (range.startContainer !== piece.node)
                return piece.start;
            const index = piece.map ? piece.map.findIndex((offset) => offset >= range.startOffset) : range.startOffset;
            return piece.start + (index < 0 ? piece.length : index);
        }
        return -1;
    }

    // How many of the hits are behind the reader, or rather before: hits[result] is the next one.
    function reached(hits, step) {
        let count = 0;
        for (const page of documentsOf(document)) {
            const own = hits.filter((hit) => hit.page === page);
            const selected = selectionOf(page);
            const range = step || (selected && !selected.collapsed) ? selected : viewTop(page);
            const position = range && own.length ? positionOf(own[0].text, range) : -1;
            // The selected place itself is the next one for a new text alone, and never for a step.
            const isPast = (hit) => (step > 0 && !range.collapsed ? hit.begin <= position : hit.begin < position);
            if (position >= 0 && own.some(isPast))
                count = hits.indexOf(own.findLast(isPast)) + 1;
        }
        return count;
    }

    // Looks for a text; without one, for the text whose hits are coloured. `step` 0 takes the reader to the next place from
    // the selection or the view, other numbers so many places on, or back where negative, and around the page's ends; null
    // only counts. With `isMarked` the places are marked, else all marks go; with `isColoured` the marks stay, and the text
    // is that of the coloured hits in any case. Returns the number of places, that of the reader's from 1, or 0, and the
    // text that is selected by this.
    lumivara.find = ({ query, matchCase, wholeWord, step, isMarked, isColoured }) => {
        const own = query ? { query, matchCase, wholeWord } : null;
        isSelectedAgain = false;
        if (isColoured)
            return stepTo(coloured, step);
        if (!own || !isMarked || JSON.stringify(own) !== JSON.stringify(marked))
            unmark();
        if (own && isMarked && !marked)
            mark(own);
        return stepTo((isMarked || step) && (own || (step ? coloured : null)), step);
    };

    function stepTo(finding, step) {
        const hits = [];
        if (finding) {
            for (const page of documentsOf(document)) {
                const text = new PageText(page.body, finding.matchCase);
                text.forEachHit(finding.query, finding.wholeWord, (begin, end) => {
                    hits.push({ page, text, begin, end });
                });
            }
        }
        if (!hits.length || step === null)
            return { count: hits.length, at: 0, text: isSelectedAgain ? String(getSelection()) : '' };
        const next = reached(hits, step) + (step > 0 ? step - 1 : step);
        const at = ((next % hits.length) + hits.length) % hits.length;
        return { count: hits.length, at: at + 1, text: standAt(hits[at].text.range(hits[at].begin, hits[at].end)) };
    }

    // ---- Places that the host has found ----

    lumivara.visibleText = () => visibleParts().map(({ text }) => text.text).join('\n');

    // Marks places in place of all marks: `places` has where each begins and ends in the visible text, ascending and
    // without overlaps. The reader is taken to the place `at`, counted from 0; none if negative. Returns the text that is
    // selected by this.
    lumivara.showPlaces = ({ places, at }) => {
        const spans = [];
        for (let index = 0; index + 1 < places.length; index += 2)
            spans.push({ begin: places[index], end: places[index + 1] });
        isSelectedAgain = false;
        unmark();
        if (spans.length)
            mark({ spans });
        const own = at < 0 ? [] : spans.slice(at, at + 1);
        for (const part of own.length ? visibleParts() : []) {
            for (const { begin, end } of spansWithin(part, own).spans)
                return standAt(part.text.range(begin, end));
        }
        return isSelectedAgain ? String(getSelection()) : '';
    };
})();
