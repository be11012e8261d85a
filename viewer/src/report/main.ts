import './page.css';
import { say } from '../view/dom';
import { themeButton } from '../view/theme';
import type { Report, Tune } from './data';
import { reportPage } from './report';
import { tunePage } from './tune';

const data = JSON.parse(document.querySelector('#data')?.textContent ?? '') as Report | Tune;

// Canvases hold the colours of their theme, so a new theme makes them anew.
function render(): void {
  const { title, lead, content } = data.page === 'report' ? reportPage(data) : tunePage(data);
  document.title = title;
  say(document.querySelector('h1') as Element, title);
  say(document.querySelector('#lead') as Element, lead);
  document.querySelector('main')?.replaceChildren(...content);
}

themeButton(render);
