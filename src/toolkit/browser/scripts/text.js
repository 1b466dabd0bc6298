// The text of a document as it is read: one string over all text nodes, with a mapping back to each node.
(() => {
    'use strict';

    const unread = new Set(['script', 'style', 'template', 'textarea', 'select', 'title', 'object', 'iframe', 'noframes']);
    // The borders of these are gaps, which no word and no hit crosses.
    const blocks = new Set([
        'address', 'article', 'aside', 'blockquote', 'body', 'br', 'caption', 'center', 'dd', 'details', 'dir', 'div', 'dl',
        'dt', 'fieldset', 'figcaption', 'figure', 'footer', 'form', 'frameset', 'h1', 'h2', 'h3', 'h4', 'h5', 'h6', 'head',
        'header', 'hr', 'html', 'img', 'legend', 'li', 'main', 'menu', 'nav', 'ol', 'p', 'pre', 'section', 'summary', 'table',
        'tbody', 'td', 'tfoot', 'th', 'thead', 'tr', 'ul',
    ]);

    // Lower case character by character, because in a whole string it depends on the neighbours ("Σ").
    function foldCharacter(character) {
        return character.toLowerCase();
    }

    function fold(text) {
        if (!/[İΣ]/.test(text))
            return text.toLowerCase();
        let folded = '';
        for (const character of text)
            folded += foldCharacter(character);
        return folded;
    }

    function isBlank(code) {
        return code === 0x20 || (code >= 0x09 && code <= 0x0d && code !== 0x0b);
    }

    // Goes through the parts of a page in reading order. Not recursive, because pages may nest thousands deep.
    class PageWalk {
        isAtGap = false;

        walk(root) {
            let node = root;
            while (node) {
                let isInside = false;
                if (node.nodeType === Node.TEXT_NODE) {
                    this.addNode(node);
                } else if (node.nodeType === Node.ELEMENT_NODE) {
                    this.enter(node);
                    isInside = node.firstChild && !unread.has(node.localName);
                    if (!isInside)
                        this.leave(node);
                }
                if (isInside) {
                    node = node.firstChild;
                    continue;
                }
                while (node !== root && !node.nextSibling) {
                    node = node.parentNode;
                    this.leave(node);
                }
                node = node === root ? null : node.nextSibling;
            }
        }

        enter(element) {
            if (blocks.has(element.localName))
                this.isAtGap = true;
        }

        leave(element) {
            if (blocks.has(element.localName))
                this.isAtGap = true;
        }
    }

    class PageText extends PageWalk {
        constructor(root, matchCase) {
            super();
            this.matchCase = matchCase;
            this.pieces = [];
            this.length = 0;
            this.isAfterBlank = true;
            this.parts = [];
            this.walk(root);
            this.text = this.parts.join('');
            this.parts = null;
        }

        addNode(node) {
            const data = node.data;
            if (this.isAtGap) {
                this.isAtGap = false;
                if (this.length && this.parts[this.parts.length - 1] !== '\n') {
                    this.parts.push('\n');
                    ++this.length;
                }
                this.isAfterBlank = true;
            }
            if (!data.length)
                return;
            const isPlain = !/[\t\n\r\f]|  /.test(data) && !(this.isAfterBlank && data[0] === ' ')
                && (this.matchCase || !/[İΣ]/.test(data));
            const folded = isPlain && !this.matchCase ? data.toLowerCase() : data;
            if (isPlain && folded.length === data.length) {
                this.push(node, folded, null);
                this.isAfterBlank = data[data.length - 1] === ' ';
            } else {
                this.addMapped(node, data);
            }
        }

        // A run of blanks is one blank, as shown; lower case may change the number of characters.
        addMapped(node, data) {
            const map = [];
            let text = '';
            for (let at = 0; at < data.length;) {
                if (isBlank(data.charCodeAt(at))) {
                    if (!this.isAfterBlank) {
                        text += ' ';
                        map.push(at);
                    }
                    this.isAfterBlank = true;
                    ++at;
                    continue;
                }
                this.isAfterBlank = false;
                const character = String.fromCodePoint(data.codePointAt(at));
                const folded = this.matchCase ? character : foldCharacter(character);
                if (folded.length === character.length) {
                    for (let unit = 0; unit < folded.length; ++unit)
                        map.push(at + unit);
                } else {
                    for (let unit = 0; unit < folded.length; ++unit)
                        map.push(at);
                }
                text += folded;
                at += character.length;
            }
            if (text.length)
                this.push(node, text, map);
        }

        push(node, text, map) {
            this.pieces.push({ node, start: this.length, length: text.length, map });
            this.parts.push(text);
            this.length += text.length;
        }

        // Index of the piece that holds the character at a position of the text; -1 for a gap.
        pieceAt(position) {
            let low = 0;
            let high = this.pieces.length - 1;
            while (low <= high) {
                const middle = (low + high) >> 1;
                const piece = this.pieces[middle];
                if (position < piece.start)
                    high = middle - 1;
                else if (position >= piece.start + piece.length)
                    low = middle + 1;
                else
                    return middle;
            }
            return -1;
        }

        // The offsets in its node at which the character at a position begins and ends.
        static offsetOf(piece, index) {
            return piece.map ? piece.map[index] : index;
        }

        static endOf(piece, index) {
            const begin = PageText.offsetOf(piece, index);
            return begin + (piece.map && piece.node.data.codePointAt(begin) > 0xffff && piece.map[index + 1] === begin ? 2 : 1);
        }

        // False inside a letter whose lower case has several characters.
        isBoundary(position) {
            const piece = this.pieces[this.pieceAt(position)];
            if (!piece || !piece.map)
                return true;
            const index = position - piece.start;
            return index === 0 || piece.map[index] !== piece.map[index - 1];
        }

        isWordAt(position) {
            if (position < 0 || position >= this.text.length)
                return false;
            let code = this.text.codePointAt(position);
            if (code >= 0xdc00 && code <= 0xdfff && position > 0)
                code = this.text.codePointAt(position - 1);
            return /[\p{L}\p{M}\p{N}]/u.test(String.fromCodePoint(code));
        }

        // Calls `onHit` with begin and end of each hit; hits may overlap. Stops when it returns false.
        forEachHit(query, wholeWord, onHit) {
            let wanted = query.replace(/[\t\n\r\f ]+/g, ' ');
            if (!this.matchCase)
                wanted = fold(wanted);
            if (!wanted.length)
                return;
            for (let at = this.text.indexOf(wanted); at >= 0; at = this.text.indexOf(wanted, at + 1)) {
                const end = at + wanted.length;
                if (!this.isBoundary(at) || !this.isBoundary(end))
                    continue;
                if (wholeWord && ((this.isWordAt(at) && this.isWordAt(at - 1)) || (this.isWordAt(end - 1) && this.isWordAt(end))))
                    continue;
                if (onHit(at, end) === false)
                    return;
            }
        }

        // The nearest element around a node that no word crosses.
        static blockOf(node) {
            let element = node.parentElement;
            while (element.parentElement && !blocks.has(element.localName))
                element = element.parentElement;
            return element;
        }

        range(begin, end) {
            const range = document.createRange();
            const first = this.pieces[this.pieceAt(begin)];
            const last = this.pieces[this.pieceAt(end - 1)];
            range.setStart(first.node, PageText.offsetOf(first, begin - first.start));
            range.setEnd(last.node, PageText.endOf(last, end - 1 - last.start));
            return range;
        }
    }

    // The documents whose text is visible: that of the page, or those of its frames if it has any. A blocked frame has
    // none.
    function documentsOf(top) {
        const found = [];
        // Chromium keeps these lists while the page stays as it is; a selector would walk through all of it each time.
        for (const frame of [...top.getElementsByTagName('iframe'), ...top.getElementsByTagName('frame')]) {
            const inner = frame.contentDocument;
            if (inner && inner.body && inner.body.firstChild)
                found.push(...documentsOf(inner));
        }
        if (!found.length && top.body)
            found.push(top);
        return found;
    }

    globalThis.lumivara = {
        PageText,
        PageWalk,
        blocks,
        unread,
        documentsOf,
        plainText: () => documentsOf(document).map((page) => new PageText(page.body, true).text.trim()).join('\n'),
    };
})();
