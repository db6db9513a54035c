// The controls above the tables.

import { button, make } from "./dom";
import { legend } from "./legend";
import { word, wordOfValue } from "./texts";

// A button with a panel that it opens and closes; Escape and a click elsewhere close it too.
export function disclosure(label: string, look: string, content: HTMLElement): { element: HTMLElement; button: HTMLButtonElement; close: () => void } {
    const panel = make("div", { class: `panel ${look}`, hidden: true });
    panel.append(content);
    const toggle = button(label, () => set(panel.hidden), { class: "menu", "aria-expanded": "false", "aria-haspopup": "true" });
    const element = make("div", { class: "disclosure" }, toggle, panel);
    const set = (isOpen: boolean): void => {
        panel.hidden = !isOpen;
        toggle.setAttribute("aria-expanded", String(isOpen));
        if (!isOpen) return;
        // Kept within the window.
        panel.style.right = "";
        panel.classList.toggle("from-right", element.getBoundingClientRect().left + panel.offsetWidth > window.innerWidth - 8);
        panel.querySelector<HTMLElement>("input, select, button")?.focus();
    };
    const close = (): void => set(false);
    document.addEventListener("pointerdown", (event) => {
        if (!panel.hidden && event.target instanceof Node && !element.contains(event.target)) close();
    });
    element.addEventListener("keydown", (event) => {
        if (event.key !== "Escape" || panel.hidden) return;
        event.stopPropagation();
        close();
        toggle.focus();
    });
    return { element, button: toggle, close };
}

export interface Choice {
    readonly value: string;
    readonly label: string;
}

export function select(label: string, choices: readonly Choice[], chosen: string, choose: (value: string) => void): HTMLLabelElement {
    const list = make("select");
    for (const { value, label: text } of choices) {
        const option = make("option", { value }, text);
        option.selected = value === chosen;
        list.append(option);
    }
    list.addEventListener("change", () => choose(list.value));
    return make("label", { class: "field" }, make("span", {}, label), list);
}

export function checkbox(label: string, isOn: boolean, change: (isOn: boolean) => void): HTMLLabelElement {
    const box = make("input", { type: "checkbox" });
    box.checked = isOn;
    box.addEventListener("change", () => change(box.checked));
    return make("label", { class: "check" }, box, make("span", {}, label));
}

const keys: [string, Parameters<typeof word>[0]][] = [
    ["↑ ↓ PageUp PageDown", "key:move"],
    ["Home  End", "key:ends"],
    ["←", "key:fold"],
    ["→", "key:unfold"],
    ["* _", "key:all"],
    ["Enter  Esc", "key:details"],
    ["+ −", "key:zoom"],
    ["0", "key:fit"],
    ["t", "key:today"],
    ["Shift ← →", "key:pan"],
    ["b", "key:bar"],
    ["/", "key:search"],
    ["1 2 3", "key:tabs"],
    ["?", "key:help"],
];

// The keys, and what the shapes mean, in a dialog.
export function helpDialog(): HTMLDialogElement {
    const list = make("dl", { class: "keys" });
    for (const [key, meaning] of keys) {
        const marks = key.split(" ").filter((part) => part !== "").map((part) => make("kbd", {}, wordOfValue("cap", part)));
        list.append(make("dt", {}, ...marks), make("dd", {}, word(meaning)));
    }
    const dialog = make(
        "dialog",
        { class: "help", "aria-label": word("help") },
        make("div", { class: "help-parts" }, make("section", {}, make("h2", {}, word("keys")), list), make("section", {}, make("h2", {}, word("legend")), legend())),
    );
    dialog.append(button(word("close"), () => dialog.close()));
    return dialog;
}
