// @ts-check
// A finger, pen or mouse that drags a control: relative, so that nothing jumps when it comes down; fine while it is
// held away from the line that it began on. Each control follows one pointer, and ten of them ten.

const fineDistance = 56;
const fineFactor = 1 / 8;
const tapTime = 300;
const tapDistance = 10;

/**
 * @typedef {object} DragActions
 * @property {"up" | "right"} towards the direction in which the value grows
 * @property {number} [slack] how far the finger goes before it drags, in pixels: where it may as well scroll
 * @property {() => boolean} begin false when there is nothing to drag
 * @property {(part: number) => void} by `part` of the control's length since the last call
 * @property {() => void} end also when the system takes the finger away
 * @property {() => void} [twice] two quick taps
 */

/** @param {HTMLElement} element @param {DragActions} actions */
export function dragging(element, actions) {
    const isUp = actions.towards === "up";
    const slack = actions.slack ?? 0;
    /**
     * @type {{id: number, along: number, across: number, startAlong: number, startAcross: number, way: number,
     *     length: number, isDragging: boolean} | null}
     */
    let drag = null;
    let tappedAt = -Infinity;

    /** @param {PointerEvent} event */
    const place = (event) => (isUp ? [-event.clientY, event.clientX] : [event.clientX, event.clientY]);

    const finish = () => {
        const hasDragged = drag?.isDragging;
        drag = null;
        delete element.dataset.fine;
        if (hasDragged) actions.end();
    };

    element.addEventListener("pointerdown", (event) => {
        if (drag || event.button !== 0) return;
        const isDragging = slack === 0;
        if (isDragging && !actions.begin()) return;
        element.setPointerCapture(event.pointerId);
        const [along, across] = place(event);
        const length = Math.max(1, isUp ? element.clientHeight : element.clientWidth);
        const start = { startAlong: along, startAcross: across };
        drag = { id: event.pointerId, along, across, ...start, way: 0, length, isDragging };
    });

    element.addEventListener("pointermove", (event) => {
        if (drag?.id !== event.pointerId) return;
        const [along, across] = place(event);
        const isFine = Math.abs(across - drag.startAcross) > fineDistance;
        element.toggleAttribute("data-fine", isFine);
        const part = ((along - drag.along) / drag.length) * (isFine ? fineFactor : 1);
        drag.way += Math.abs(along - drag.along) + Math.abs(across - drag.across);
        drag.along = along;
        drag.across = across;
        if (!drag.isDragging && Math.abs(along - drag.startAlong) >= slack) drag.isDragging = actions.begin();
        else if (drag.isDragging && part !== 0) actions.by(part);
    });

    element.addEventListener("pointerup", (event) => {
        if (drag?.id !== event.pointerId) return;
        const isTap = drag.way < tapDistance;
        finish();
        const isSecond = isTap && event.timeStamp - tappedAt < tapTime;
        tappedAt = isTap && !isSecond ? event.timeStamp : -Infinity;
        if (isSecond) actions.twice?.();
    });

    for (const loss of /** @type {const} */ (["pointercancel", "lostpointercapture"]))
        element.addEventListener(loss, (event) => {
            if (drag?.id === event.pointerId) finish();
        });
}
