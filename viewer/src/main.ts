import './style.css';
import { App } from './app';
import { fetchInfo, followEvents, readRecording } from './sources';

async function start(): Promise<void> {
  const status = document.querySelector<HTMLElement>('#status') as HTMLElement;
  try {
    const info = await fetchInfo();
    const app = new App(info);
    if (info.source === 'live') followEvents(app.feed(0));
    else await Promise.all(info.sides.map((_side, i) => readRecording(app.feed(i), i)));
  } catch (error) {
    status.textContent = `Nothing can be shown: ${error instanceof Error ? error.message : String(error)}.`;
  }
}

void start();
