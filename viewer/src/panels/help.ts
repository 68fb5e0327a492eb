// What can be done with the page.

import { button, make } from "../dom";
import { text } from "../text/english";

export function helpDialog(): HTMLDialogElement {
    const dialog = make(
        "dialog",
        { "aria-labelledby": "help-heading", id: "help-dialog" },
        make("h2", { id: "help-heading" }, text.help),
        ...text.helpText.map(([heading, content]) =>
            make("section", {}, make("h3", {}, heading), make("p", {}, content)),
        ),
        make(
            "div",
            { class: "buttons" },
            button(text.close, () => {
                dialog.close();
            }),
        ),
    );
    return dialog;
}
