// @ts-check
// Building elements, and changing them only where something has changed. What is changed by these functions is changed
// by nothing else.

/**
 * @template {keyof HTMLElementTagNameMap} Tag
 * @param {Tag} tag
 * @param {Record<string, string>} [attributes]
 * @param {(Node | string)[]} children
 * @returns {HTMLElementTagNameMap[Tag]}
 */
export function make(tag, attributes = {}, ...children) {
    const element = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) element.setAttribute(name, value);
    element.append(...children);
    return element;
}

/** What was set last: asking the document instead costs more than setting it. */
class Kept {
    /** @type {WeakMap<Element, Map<string, string>>} */
    #byElement = new WeakMap();

    /**
     * Whether this is another value than the last.
     * @param {Element} element @param {string} name @param {string} value
     */
    changes(element, name, value) {
        let values = this.#byElement.get(element);
        if (!values) this.#byElement.set(element, (values = new Map()));
        if (values.get(name) === value) return false;
        values.set(name, value);
        return true;
    }
}
const texts = new Kept();
const attributes = new Kept();
const styles = new Kept();

/** @param {Element} element @param {string} text */
export function setText(element, text) {
    if (texts.changes(element, "", text)) element.textContent = text;
}

/** @param {Element} element @param {string} name @param {string | number | boolean} value */
export function setAttribute(element, name, value) {
    const text = String(value);
    if (attributes.changes(element, name, text)) element.setAttribute(name, text);
}

/** @param {HTMLElement} element @param {string} name @param {string} value */
export function setStyle(element, name, value) {
    if (styles.changes(element, name, value)) element.style.setProperty(name, value);
}

/**
 * A press acts when the finger comes down, as on a desk; clicks come from keyboards and screen readers alone, because
 * a browser gives none to a second finger.
 * @param {HTMLElement} element @param {() => void} action
 */
export function onPress(element, action) {
    let pressedAt = -Infinity;
    element.addEventListener("pointerdown", (event) => {
        if (event.button !== 0) return;
        pressedAt = event.timeStamp;
        action();
    });
    element.addEventListener("click", (event) => {
        const isOfThePointer = event.detail !== 0 && event.timeStamp - pressedAt < 2000;
        if (!isOfThePointer) action();
    });
}

/**
 * @param {string} name for those who cannot see it
 * @param {string} text
 * @param {string} style
 */
export const button = (name, text, style) => make("button", { type: "button", class: style, "aria-label": name }, text);
