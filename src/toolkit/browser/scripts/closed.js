// Keeps the page where it is: forms send nothing, and a refresh in its mark-up does not come. A link is followed in place
// and by an address for which Chromium asks the host, or not at all.
(() => {
    'use strict';

    const inPlace = /^(|_self|_parent|_top)$/i;

    // Before any address is asked for: Chromium takes an empty one without asking, and in a new window a form looks like a
    // link.
    addEventListener('submit', (event) => event.preventDefault(), true);

    // All of the mark-up has been read by now, and the delay of a refresh begins after this event.
    addEventListener('load', () => {
        if (document.querySelector('meta[http-equiv="refresh" i]'))
            stop();
    }, true);

    // The address of a link, in HTML or in a drawing; null if it is none.
    function addressOf(link) {
        const { href } = link;
        const text = typeof href === 'string' ? href : href && href.animVal;
        if (!text)
            return null;
        try {
            return new URL(text, document.baseURI);
        } catch {
            return new URL('about:invalid');
        }
    }

    function targetOf(link) {
        const base = document.querySelector('base[target]');
        return link.getAttribute('target') || (base ? base.getAttribute('target') : '');
    }

    function follow(event) {
        const link = event.composedPath().find((element) => element.localName === 'a' || element.localName === 'area');
        const address = link && addressOf(link);
        if (!address || event.button > 1)
            return;
        const isWindowWanted = event.button === 1 || event.ctrlKey || event.shiftKey || event.metaKey
            || !inPlace.test(targetOf(link));
        // Chromium follows a link to an empty page without asking, and drops one to a file. So the latter is wrapped in
        // an address of ours.
        const isAsked = !IS_OURS || /^(https?|mailto|lumivara|javascript):$/.test(address.protocol);
        if (isAsked && !isWindowWanted)
            return;
        event.preventDefault();
        if (address.protocol === 'about:')
            return;
        const plain = document.createElement('a');
        plain.href = isAsked ? address.href : 'lumivara://dropped/?' + encodeURIComponent(address.href);
        plain.target = '_top';
        plain.click();
    }

    addEventListener('click', follow, true);
    addEventListener('auxclick', follow, true);
})();
