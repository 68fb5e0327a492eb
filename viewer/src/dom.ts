// Small helpers for building the page's controls.

type Child = Node | string;
type Properties = Record<string, string | number | boolean | ((event: never) => void)>;

/** An element with attributes, listeners ("onclick") and children. Texts are always texts, whatever is in them. */
export function make<K extends keyof HTMLElementTagNameMap>(
    tag: K,
    properties: Properties = {},
    ...children: Child[]
): HTMLElementTagNameMap[K] {
    const element = document.createElement(tag);
    for (const [name, value] of Object.entries(properties)) {
        if (typeof value === "function") {
            element.addEventListener(name.slice(2), value as EventListener);
        } else if (value === true) {
            element.setAttribute(name, "");
        } else if (value !== false) {
            element.setAttribute(name, String(value));
        }
    }
    element.append(...children);
    return element;
}

export function button(label: string, action: () => void, properties: Properties = {}): HTMLButtonElement {
    return make("button", { type: "button", onclick: action, ...properties }, label);
}

let nextId = 0;

/** A row of a panel: a label and the control that it names. */
export function row(label: string, control: HTMLElement, ...more: Child[]): HTMLElement {
    control.id ||= `control-${String(nextId++)}`;
    return make("div", { class: "row" }, make("label", { for: control.id }, label), control, ...more);
}

export interface Choice<T extends string> {
    value: T;
    label: string;
}

export function select<T extends string>(
    choices: Choice<T>[],
    action: (value: T) => void,
): HTMLSelectElement {
    const control = make("select", {
        onchange: () => {
            action(control.value as T);
        },
    });
    setChoices(control, choices);
    return control;
}

export function setChoices<T extends string>(control: HTMLSelectElement, choices: Choice<T>[]): void {
    const chosen = control.value;
    control.replaceChildren(...choices.map(({ value, label }) => make("option", { value }, label)));
    if (choices.some(({ value }) => value === chosen)) {
        control.value = chosen;
    }
}

export function slider(
    low: number,
    high: number,
    step: number,
    action: (value: number) => void,
): HTMLInputElement {
    const control = make("input", { type: "range", min: low, max: high, step });
    const fill = (): void => {
        setFill(control);
    };
    control.addEventListener("input", () => {
        action(control.valueAsNumber);
        fill();
    });
    return control;
}

/** Sets a slider from the state. */
export function setSlider(control: HTMLInputElement, value: number): void {
    control.value = String(value);
    setFill(control);
}

function setFill(control: HTMLInputElement): void {
    const share =
        (control.valueAsNumber - Number(control.min)) / (Number(control.max) - Number(control.min) || 1);
    control.style.setProperty("--fill", `${String(100 * share)}%`);
}

export function checkbox(
    label: string,
    action: (isOn: boolean) => void,
): { row: HTMLElement; box: HTMLInputElement } {
    const box: HTMLInputElement = make("input", {
        type: "checkbox",
        onchange: () => {
            action(box.checked);
        },
    });
    return { row: make("label", { class: "check" }, box, label), box };
}

/** Radio buttons that look like one row of buttons. */
export function choiceOf<T extends string>(
    name: string,
    label: string,
    choices: Choice<T>[],
    action: (value: T) => void,
): { element: HTMLElement; set: (value: T) => void } {
    const inputs = choices.map(({ value }) =>
        make("input", {
            type: "radio",
            name,
            value,
            onchange: () => {
                action(value);
            },
        }),
    );
    const element = make(
        "div",
        { class: "choice", role: "radiogroup", "aria-label": label },
        ...choices.map((choice, i) => make("label", {}, inputs[i], make("span", {}, choice.label))),
    );
    return {
        element,
        set: (value) => {
            for (const input of inputs) {
                input.checked = input.value === value;
            }
        },
    };
}

/** A part of the side panel that can be folded. */
export function panel(heading: string, id: string, ...children: Child[]): HTMLDetailsElement {
    return make(
        "details",
        { class: "panel", open: true, id },
        make("summary", {}, make("h2", {}, heading)),
        ...children,
    );
}

/** Lets the browser save some bytes under a name. */
export function saveAs(name: string, content: Blob): void {
    const link = make("a", { href: URL.createObjectURL(content), download: name });
    document.body.append(link);
    link.click();
    link.remove();
    setTimeout(() => {
        URL.revokeObjectURL(link.href);
    }, 60000);
}
