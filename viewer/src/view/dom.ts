/** The few operations on the document that the views share. */

export type Attributes = Record<string, string | number | boolean | null>;

/** Sets what differs; null removes. */
export function set(node: Element, attributes: Attributes): void {
  for (const [key, value] of Object.entries(attributes)) {
    if (value === null || value === false) {
      if (node.hasAttribute(key)) node.removeAttribute(key);
      continue;
    }
    const text = value === true ? '' : String(value);
    if (node.getAttribute(key) !== text) node.setAttribute(key, text);
  }
}

/** The one text node is kept and changed, so that nothing is thrown away at ten changes a second. */
export function say(node: Element, text: string): void {
  const first = node.firstChild;
  if (first instanceof Text && node.childNodes.length === 1) {
    if (first.data !== text) first.data = text;
  } else if (node.textContent !== text) {
    node.textContent = text;
  }
}

export function variable(node: HTMLElement, name: string, value: string | number): void {
  const text = String(value);
  if (node.style.getPropertyValue(name) !== text) node.style.setProperty(name, text);
}

type Child = Node | string;

export function html<K extends keyof HTMLElementTagNameMap>(
  tag: K,
  attributes: Attributes = {},
  ...children: Child[]
): HTMLElementTagNameMap[K] {
  const node = document.createElement(tag);
  set(node, attributes);
  node.append(...children);
  return node;
}

/** A drawn sign of 24 x 24: fonts lack the usual ones. */
export function icon(path: string): SVGSVGElement {
  const make = (tag: string, attributes: Attributes) => {
    const node = document.createElementNS('http://www.w3.org/2000/svg', tag);
    set(node, attributes);
    return node;
  };
  const node = make('svg', { viewBox: '0 0 24 24', class: 'icon', 'aria-hidden': 'true' }) as SVGSVGElement;
  node.append(make('path', { d: path }));
  return node;
}

/** One child of `parent` per item, reused in order: at ten changes a second nothing is thrown away. */
export function each<T, N extends Element>(
  parent: Element,
  items: readonly T[],
  make: () => N,
  update: (node: N, item: T, index: number) => void,
): void {
  while (parent.childElementCount > items.length) parent.lastElementChild?.remove();
  let node = parent.firstElementChild;
  items.forEach((item, index) => {
    if (!node) {
      node = make();
      parent.append(node);
    }
    update(node as N, item, index);
    node = node.nextElementSibling;
  });
}
