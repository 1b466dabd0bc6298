// Leaves the paragraphs of a long page unrendered until they come near the view. On the screen only: printing lays out
// the whole page. Not in tables, because the width of their columns depends on their contents.
(() => {
    'use strict';

    const selector = 'p:not(table p)';
    const firstHeight = 60; // until some paragraphs have been measured
    const sampleSize = 80;
    const sheet = new CSSStyleSheet();

    function give(height) {
        sheet.replaceSync('@media screen { @layer host { ' + selector
            + ' { content-visibility: auto; contain-intrinsic-height: auto ' + height.toFixed(2) + 'px } } }');
    }

    // Heights of a sample of paragraphs from all over the page, rendered for the measurement.
    function heightsOf(paragraphs) {
        const styles = paragraphs.map((paragraph) => paragraph.getAttribute('style'));
        for (const paragraph of paragraphs)
            paragraph.style.contentVisibility = 'visible';
        const heights = paragraphs.map((paragraph) => paragraph.offsetHeight);
        paragraphs.forEach((paragraph, index) => {
            if (styles[index] === null)
                paragraph.removeAttribute('style');
            else
                paragraph.setAttribute('style', styles[index]);
        });
        return heights;
    }

    // The mean height of all: a line through the sample, height over length, at the mean length.
    function estimate() {
        const all = [...document.querySelectorAll(selector)];
        if (!all.length)
            return;
        const step = Math.max(all.length / sampleSize, 1);
        const sample = [];
        for (let at = step / 2; at < all.length; at += step)
            sample.push(all[Math.floor(at)]);
        const lengths = sample.map((paragraph) => paragraph.textContent.length);
        const heights = heightsOf(sample);
        const mean = (numbers) => numbers.reduce((sum, number) => sum + number, 0) / numbers.length;
        const meanLength = mean(lengths);
        const meanHeight = mean(heights);
        let covariance = 0;
        let variance = 0;
        lengths.forEach((length, index) => {
            covariance += (length - meanLength) * (heights[index] - meanHeight);
            variance += (length - meanLength) ** 2;
        });
        const slope = variance > 0 ? covariance / variance : 0;
        const meanOfAll = mean(all.map((paragraph) => paragraph.textContent.length));
        give(Math.max(meanHeight + slope * (meanOfAll - meanLength), 1));
    }

    give(firstHeight);
    // While the page is loading, each new piece would lay out all pieces before it again.
    const curtain = new CSSStyleSheet();
    curtain.replaceSync('@media screen { body { display: none !important } }');
    document.adoptedStyleSheets = [...document.adoptedStyleSheets, sheet, curtain];
    addEventListener('DOMContentLoaded', () => {
        document.adoptedStyleSheets = document.adoptedStyleSheets.filter((other) => other !== curtain);
        estimate();
    });
    // Another width changes the heights; measured once when the dragging pauses. By frames, because Chromium runs no
    // timers where the page's scripts are off.
    let lastResize = 0;
    addEventListener('resize', () => {
        const isWaiting = lastResize > 0;
        lastResize = performance.now();
        const step = () => {
            if (performance.now() - lastResize < 150) {
                requestAnimationFrame(step);
                return;
            }
            lastResize = 0;
            estimate();
        };
        if (!isWaiting)
            requestAnimationFrame(step);
    });
})();
