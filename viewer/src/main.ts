import './style.css';
import { App } from './app';
import { fetchInfo, followEvents, readRecording } from './sources';

async function start(): Promise<void> {
  const status = document.querySelector<HTMLElement>('#status') as HTMLElement;
  try {
    const info = await fetchInfo();
    const app = new App(info);
    if (info.source === 'live') followEvents(app);
    else await readRecording(app);
  } catch (error) {
    status.textContent = `Nothing can be shown: ${error instanceof Error ? error.message : String(error)}.`;
  }
}

void start();
