/** Why, in words: what made the picture of the chosen moment, and what waits. */

import type { Moment } from '../moments';
import { reasonsAt } from '../why';
import { clock } from '../words';
import { html, say, set } from './dom';

/** A line breaks at the dots of a key, not within its words. */
function sayKeys(node: Element, text: string): void {
  if (node.textContent === text) return;
  node.replaceChildren(...text.split(/(?<=\.)(?=[a-z])/).flatMap((part, i) => (i ? [html('wbr'), part] : [part])));
}

function makeReason(name: string, none: string): { node: HTMLElement; draw: (moment: Moment | null, t: number) => void } {
  const when = html('span', { class: 'when' });
  const title = html('p', { class: 'title' });
  const reason = html('p', { class: 'reason' });
  const node = html('div', { class: `why-${name.toLowerCase()}` }, html('h3', {}, name, ' ', when), title, reason);
  const draw = (moment: Moment | null, t: number) => {
    const ago = moment ? t - moment.t : 0;
    set(node, { 'data-t': moment?.t ?? null });
    say(when, moment ? `${clock(moment.t)}, ${ago < 40 ? 'now' : `${(ago / 1000).toFixed(1)} s ago`}` : '');
    say(title, moment?.title ?? none);
    sayKeys(reason, moment?.reason ?? '');
  };
  return { node, draw };
}

/** Said beside a live picture while the service tells no reasons. */
const HOW_TO_HEAR = 'The service tells no reasons. Switch them on with: prb prop set vendor.fyndebug.decisions 1, then prb ctl config-change.';

/** A button that copies the command line which asks about the moment, for the question takes many replays. */
function makeAsk(question: string): { node: HTMLElement; draw: (t: number) => void } {
  const at = html('span', { class: 'unbroken' });
  const command = html('code', {}, `${question} `, at);
  const button = html('button', { type: 'button', title: 'Copies the command that says who was missing or why it changed, and which setting helps' }, 'Why');
  button.addEventListener('click', () => void navigator.clipboard?.writeText(command.textContent ?? ''));
  const node = html('p', { class: 'ask' }, button, ' ', command);
  node.hidden = !question;
  return { node, draw: (t) => say(at, `--at ${clock(t)}`) };
}

export function makeWhy(root: HTMLElement, question: string): (moments: readonly Moment[], t: number, reasonsMissing: boolean) => void {
  const picture = makeReason('Picture', 'Nothing has changed yet');
  const wait = makeReason('Wait', 'Nothing has waited since then');
  const how = html('p', { class: 'how' }, HOW_TO_HEAR);
  const ask = makeAsk(question);
  root.append(how, html('div', { class: 'reasons' }, picture.node, wait.node), ask.node);
  return (moments, t, reasonsMissing) => {
    how.hidden = !reasonsMissing;
    ask.draw(t);
    const reasons = reasonsAt(moments, t);
    picture.draw(reasons.picture, t);
    wait.draw(reasons.wait, t);
  };
}
