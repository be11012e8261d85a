/** The panels of one side: room, output, waits and reasons. Two sides are shown in two columns. */

import type { MomentFilter } from '../filter';
import type { Span } from '../lanes';
import type { Moment } from '../moments';
import type { Side } from '../side';
import type { SideInfo } from '../sources';
import type { State } from '../state';
import { CourseView } from './course';
import { say, set } from './dom';
import type { Footage } from './footage';
import { MomentList } from './moments';
import { makeNumbers } from './numbers';
import { makeOutput } from './output';
import { makeRoom } from './room';
import { makeWaits } from './waits';
import { makeWhy } from './why';

export interface SideActions {
  live: boolean;
  footage: Footage;
  jump(t: number): void;
  redraw(): void;
  filter(filter: MomentFilter): void;
}

export class SideView {
  private readonly drawRoom: (state: State) => void;
  private readonly drawOutput: (state: State, t: number) => boolean;
  private readonly drawNumbers: (state: State) => void;
  private readonly drawWaits: (state: State, t: number) => void;
  private readonly drawWhy: ReturnType<typeof makeWhy>;
  private readonly moments: MomentList;
  private readonly course: CourseView;
  private drawn: State | null = null;
  private inTransition = false;

  /** A view per side; the page holds the panels of one. */
  static make(sides: readonly SideInfo[], actions: SideActions): SideView[] {
    const first = document.querySelector('.side') as HTMLElement;
    const roots = sides.map((_side, i) => (i === 0 ? first : (first.cloneNode(true) as HTMLElement)));
    first.after(...roots.slice(1));
    set(document.body, { 'data-sides': sides.length });
    return sides.map((side, i) => new SideView(roots[i]!, side, sides.length > 1 ? `${'AB'[i]}: ${side.name}` : '', actions));
  }

  private constructor(root: HTMLElement, { question }: SideInfo, name: string, private readonly actions: SideActions) {
    const part = (selector: string) => root.querySelector(selector) as HTMLElement;
    say(part('.side-name'), name);
    set(part('.side-name'), { hidden: !name });
    for (const panel of root.querySelectorAll('.panel')) set(panel, { 'aria-label': [panel.querySelector('h2')?.textContent, name].filter(Boolean).join(', ') });
    const { redraw, footage } = actions;
    this.drawRoom = makeRoom(part('.room'), redraw, footage);
    this.drawOutput = makeOutput(part('.output'), redraw, footage);
    this.drawNumbers = makeNumbers(part('.numbers') as HTMLDetailsElement, redraw, name);
    this.course = new CourseView(part('.course') as HTMLDetailsElement, redraw);
    this.drawWaits = makeWaits(part('.waits'));
    this.drawWhy = makeWhy(part('.why'), question);
    this.moments = new MomentList(part('.moments'), actions);
  }

  search(): void {
    this.moments.search();
  }

  /** Answers whether a transition is being played. */
  drawPictures(state: State, t: number, anew: boolean): boolean {
    const changed = anew || state !== this.drawn;
    if (changed) this.drawRoom(state);
    this.inTransition = (changed || this.inTransition) && this.drawOutput(state, t);
    this.drawn = state;
    return this.inTransition;
  }

  drawTexts(side: Side, state: State, shown: readonly Moment[], t: number, span: Span): void {
    this.drawWaits(state, t);
    this.drawWhy(side.moments, t, this.actions.live && !side.explained && side.moments.length > 0);
    this.moments.draw(shown, t);
    this.drawNumbers(state);
    this.course.draw(side.history, state, t, span);
  }
}
