// A scroll bar for what does not scroll by itself.

import { make } from "./dom";

export class Bar {
    readonly element: HTMLElement;
    moved: (left: number) => void = () => undefined;
    private readonly content = make("div");
    private ratio = 1;
    private expected = 0;

    constructor(look: string) {
        this.element = make("div", { class: `bar-of-scroll ${look}`, tabindex: -1, "aria-hidden": "true" }, this.content);
        this.element.addEventListener("scroll", () => {
            // What the page itself has set comes back as an event.
            if (Math.abs(this.element.scrollLeft - this.expected) > 1.5) {
                this.expected = this.element.scrollLeft;
                this.moved(this.element.scrollLeft / this.ratio);
            }
        });
    }

    // Elements have a greatest width, which a long project at a close zoom exceeds.
    set(whole: number, width: number, left: number): void {
        const most = 1e6;
        this.ratio = whole > most ? (most - width) / Math.max(1, whole - width) : 1;
        const shown = Math.ceil(Math.min(whole, most));
        this.content.style.width = `${shown}px`;
        this.expected = Math.round(left * this.ratio);
        this.element.scrollLeft = this.expected;
        this.expected = this.element.scrollLeft;
        this.element.classList.toggle("needless", whole <= width + 1);
    }
}
