// The table of all epochs, which the program has written; here it can be taken along.

import type { Context } from "../context";
import { epochOf } from "../data/run";
import { button, make, panel, saveAs } from "../dom";
import { text } from "../text/english";

const words = text.epochs;

/** What a figure is called at the head of its column. */
export function columnLabel(table: HTMLTableElement, key: string): string {
    const head = table.querySelector(`th[data-key="${key}"]`);
    return head?.firstChild?.textContent?.trim() ?? key;
}

export function epochsPanel({ header, store }: Context, table: HTMLTableElement): HTMLElement {
    const copy = button(words.copy, () => {
        void navigator.clipboard.writeText(textOf(table, "\t")).then(() => {
            copy.textContent = words.copied;
            setTimeout(() => {
                copy.textContent = words.copy;
            }, 1500);
        });
    });
    const save = button(words.csv, () => {
        saveAs(`${header.mesh}.csv`, new Blob(["\ufeff", textOf(table, ",")], { type: "text/csv" }));
    });
    store.on(["frame"], (state) => {
        const epoch = epochOf(header, state.frame);
        [...table.tBodies[0].rows].forEach((each, i) => {
            each.classList.toggle("now", i === epoch);
        });
    });
    return panel(
        words.heading,
        "epochs-panel",
        make("div", { class: "table", tabindex: 0, role: "region", "aria-label": words.heading }, table),
        make("div", { class: "buttons" }, copy, save),
    );
}

/** Cells as they stand in the table. Those that hold the separator or a quotation mark are quoted. */
export function textOf(table: HTMLTableElement, separator: string): string {
    const cell = (each: Element): string => {
        const content = each.textContent.trim().replace(/\s+/g, " ");
        return content.includes(separator) || content.includes('"')
            ? `"${content.replaceAll('"', '""')}"`
            : content;
    };
    return [...table.rows].map((each) => [...each.cells].map(cell).join(separator)).join("\r\n") + "\r\n";
}
