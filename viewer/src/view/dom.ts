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

export function say(node: Element, text: string): void {
  if (node.textContent !== text) node.textContent = text;
}

export function variable(node: HTMLElement | SVGElement, name: string, value: string | number): void {
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

export function svg<K extends keyof SVGElementTagNameMap>(
  tag: K,
  attributes: Attributes = {},
  ...children: Child[]
): SVGElementTagNameMap[K] {
  const node = document.createElementNS('http://www.w3.org/2000/svg', tag);
  set(node, attributes);
  node.append(...children);
  return node;
}

/** One child of `parent` per item, reused in order: at 30 pictures a second nothing is thrown away. */
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

/** Keeps --u of `node` at image units per screen pixel, so that texts keep their size on every screen. */
export function keepUnit(node: SVGSVGElement): void {
  const measure = () => {
    const width = node.clientWidth || 1;
    variable(node, '--u', ((node.viewBox.baseVal?.width || 1280) / width).toFixed(3));
  };
  new ResizeObserver(measure).observe(node);
  new MutationObserver(measure).observe(node, { attributes: true, attributeFilter: ['viewBox'] });
}
