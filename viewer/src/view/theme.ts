/** The button that chooses light, dark or as the machine is set. */

import { say, set } from './dom';

const THEMES = ['auto', 'light', 'dark'] as const;

/** `rethemed` is called for every change, and once at the beginning. */
export function themeButton(rethemed: () => void): void {
  const button = document.querySelector('#theme') as HTMLButtonElement;
  const apply = (theme: string) => {
    set(document.documentElement, { 'data-theme': theme === 'auto' ? null : theme });
    say(button, `Theme: ${theme}`);
    rethemed();
  };
  let theme: string = localStorage.getItem('theme') ?? 'auto';
  apply(theme);
  matchMedia('(prefers-color-scheme: dark)').addEventListener('change', rethemed);
  button.addEventListener('click', () => {
    theme = THEMES[(THEMES.indexOf(theme as (typeof THEMES)[number]) + 1) % THEMES.length] ?? 'auto';
    localStorage.setItem('theme', theme);
    apply(theme);
  });
}
