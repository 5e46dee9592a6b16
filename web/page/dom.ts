// Builds elements. Text always becomes a text node, so nothing that a file contains is ever markup.

export type Child = Node | string | null;

type Properties = Record<string, string | number | boolean | EventListener | null>;

function setProperty(element: Element, name: string, value: Properties[string]): void {
    if (typeof value === "function") {
        element.addEventListener(name.replace(/^on/, ""), value);
    } else if (value !== null && value !== false) {
        element.setAttribute(name, value === true ? "" : String(value));
    }
}

function fill<E extends Element>(element: E, properties: Properties, children: Child[]): E {
    for (const [name, value] of Object.entries(properties)) {
        setProperty(element, name, value);
    }
    element.append(...children.filter((child): child is Node | string => child !== null));
    return element;
}

// An HTML element with attributes, listeners ("onclick") and children.
export function html<K extends keyof HTMLElementTagNameMap>(
    tag: K,
    properties: Properties = {},
    ...children: Child[]
): HTMLElementTagNameMap[K] {
    return fill(document.createElement(tag), properties, children);
}

// The same for SVG.
export function svg<K extends keyof SVGElementTagNameMap>(
    tag: K,
    properties: Properties = {},
    ...children: Child[]
): SVGElementTagNameMap[K] {
    return fill(document.createElementNS("http://www.w3.org/2000/svg", tag), properties, children);
}

// The element with this id. The page's own HTML contains it.
export function byId<E extends HTMLElement = HTMLElement>(id: string): E {
    const element = document.getElementById(id);
    if (!element) {
        throw new Error(`no element ${id}`);
    }
    return element as E;
}

export function button(
    label: string,
    onclick: () => void,
    properties: Properties = {},
): HTMLButtonElement {
    return html("button", { type: "button", onclick, ...properties }, label);
}

export function prefersReducedMotion(): boolean {
    return matchMedia("(prefers-reduced-motion: reduce)").matches;
}
