// @ts-check
// The keyboard on a slider: arrows take a step, page keys a large one, Home and End go to the ends.

/** @type {Record<string, number>} */
const steps = { ArrowUp: 1, ArrowRight: 1, ArrowDown: -1, ArrowLeft: -1, PageUp: 10, PageDown: -10 };

/**
 * @param {HTMLElement} element
 * @param {{step: (steps: number) => void, toEnd: (top: boolean) => void, reset?: () => void}} actions
 */
export function sliderKeys(element, actions) {
    element.addEventListener("keydown", (event) => {
        if (event.key in steps) actions.step(steps[event.key]);
        else if (event.key === "Home" || event.key === "End") actions.toEnd(event.key === "End");
        else if (event.key === "0" && actions.reset) actions.reset();
        else return;
        event.preventDefault();
    });
}
