// Colours of a dark page: [red, green, blue], or with the opacity as a fourth number.
const NightColours = (() => {
    'use strict';

    const leastContrast = 4.5; // below this a stored colour is not kept on a dark background
    const leastOnLight = 3; // nor on a light one, in a hit
    // Of a colour that takes its place. A stronger one would glare at night, and one barely readable be duller than the
    // text around, which is meant to be the quieter.
    const goodContrast = 5.5;
    const mostSaturation = 0.4;
    const calmContrast = 7; // white glares where a grey is clear enough
    const grey = [228, 228, 228];
    const white = [255, 255, 255];
    const black = [0, 0, 0];

    function parse(text) {
        const found = /^rgba?\(([\d.]+), ([\d.]+), ([\d.]+)(?:, ([\d.]+))?\)$/.exec(text);
        return found ? [+found[1], +found[2], +found[3], found[4] === undefined ? 1 : +found[4]] : null;
    }

    const canvas = new OffscreenCanvas(1, 1).getContext('2d');

    // A colour as a page writes it; null if it can't be parsed.
    function resolve(text) {
        const probes = ['#010203', '#030201'].map((probe) => {
            canvas.fillStyle = probe;
            canvas.fillStyle = text;
            return canvas.fillStyle;
        });
        if (!text || probes[0] !== probes[1])
            return null;
        const hex = /^#(..)(..)(..)$/.exec(probes[0]);
        return hex ? [1, 2, 3].map((at) => parseInt(hex[at], 16)).concat(1) : parse(probes[0]);
    }

    const over = (colour, ground) => black.map((_, at) => colour[at] * colour[3] + ground[at] * (1 - colour[3]));
    const write = (colour) => 'rgb(' + colour.slice(0, 3).map(Math.round).join(', ') + ')';

    function luminance(colour) {
        const [red, green, blue] = colour.slice(0, 3).map((part) => {
            const share = part / 255;
            return share <= 0.04045 ? share / 12.92 : ((share + 0.055) / 1.055) ** 2.4;
        });
        return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
    }

    function contrast(one, other) {
        const [low, high] = [luminance(one), luminance(other)].sort((first, second) => first - second);
        return (high + 0.05) / (low + 0.05);
    }

    const isDark = (ground) => contrast(black, ground) < leastContrast;
    const lightOn = (ground) => (contrast(grey, ground) >= calmContrast ? grey : white);

    // The same hue, no lighter than needed, and calm.
    function lightened(colour, ground) {
        const high = Math.max(...colour.slice(0, 3)) / 255;
        const low = Math.min(...colour.slice(0, 3)) / 255;
        const middle = (high + low) / 2;
        const span = high - low;
        const saturation = span ? Math.min(span / (1 - Math.abs(2 * middle - 1)), mostSaturation) : 0;
        const mean = colour.slice(0, 3).map((part) => (span ? (part / 255 - middle) / (span / 2) : 0)); // -1 to 1
        const at = (lightness) => {
            const reach = saturation * (1 - Math.abs(2 * lightness - 1)) / 2;
            return mean.map((part) => Math.min(Math.max(lightness + part * reach, 0), 1) * 255);
        };
        let [dark, light] = [middle, 1];
        for (let step = 0; step < 12; ++step) {
            const half = (dark + light) / 2;
            if (contrast(at(half).map(Math.round), ground) >= goodContrast)
                light = half;
            else
                dark = half;
        }
        return at(light);
    }

    // The colour to show for a stored one, or for none.
    function judge(stored, isOwn, ground, isHit = false) {
        if (!isOwn)
            return write(isDark(ground) ? lightOn(ground) : black);
        const seen = over(stored, ground);
        if (contrast(seen, ground) >= (isDark(ground) ? leastContrast : leastOnLight))
            return stored[3] < 1 ? `rgba(${stored.join(', ')})` : write(stored);
        if (isDark(ground))
            return write(lightened(seen, ground));
        return write(isHit ? black : stored);
    }

    return { white, black, parse, resolve, over, write, contrast, isDark, lightOn, lightened, judge };
})();
