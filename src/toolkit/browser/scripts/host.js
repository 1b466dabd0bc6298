// Adopts the host's style sheet before the first paint, without a trace in the page. In a cascade layer its rules rank
// below those of the page.
(() => {
    const sheet = new CSSStyleSheet();
    sheet.replaceSync('@layer host {' + HOST_CSS + '\n}');
    document.adoptedStyleSheets = [...document.adoptedStyleSheets, sheet];
})();
