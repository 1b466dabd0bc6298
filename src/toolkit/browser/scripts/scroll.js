// Scrolls a place of the page to the top of the view and keeps it there while paragraphs around it get their true height.
(() => {
    'use strict';

    const restTime = 400; // milliseconds without a move, after which the page counts as settled
    const longestTime = 5000;
    let turn = 0;

    function rectOf(place) {
        return place instanceof Range ? place.getClientRects()[0] : place.getBoundingClientRect();
    }

    function elementOf(place) {
        if (!(place instanceof Range))
            return place;
        const start = place.startContainer;
        return start.nodeType === Node.ELEMENT_NODE ? start : start.parentElement;
    }

    function put(place, isAtTop) {
        const view = elementOf(place).ownerDocument.defaultView;
        let rect = rectOf(place);
        if (!rect)
            return;
        if (!isAtTop && rect.top >= 0 && rect.bottom <= view.innerHeight)
            return;
        elementOf(place).scrollIntoView({ block: isAtTop ? 'start' : 'center' });
        rect = rectOf(place);
        if (rect)
            view.scrollBy(0, isAtTop ? rect.top : rect.top - view.innerHeight / 3);
    }

    function settle(place, isAtTop) {
        const mine = ++turn;
        const begin = performance.now();
        let restBegin = begin;
        let last = '';
        const step = () => {
            if (mine !== turn)
                return;
            put(place, isAtTop);
            const rect = rectOf(place);
            const state = rect ? Math.round(rect.top) + ' ' + document.scrollingElement.scrollHeight : '';
            const now = performance.now();
            if (state !== last)
                restBegin = now;
            last = state;
            if (now - restBegin < restTime && now - begin < longestTime)
                requestAnimationFrame(step);
        };
        step();
    }

    // The reader's own scrolling ends ours.
    for (const event of ['wheel', 'mousedown', 'keydown', 'touchstart'])
        addEventListener(event, () => ++turn, { capture: true, passive: true });

    addEventListener('hashchange', () => {
        const name = decodeURIComponent(location.hash.slice(1));
        const place = document.getElementById(name) || document.getElementsByName(name)[0];
        if (place)
            settle(place, true);
    });

    lumivara.settle = settle;
})();
