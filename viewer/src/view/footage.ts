/** What the cameras really saw: a video file for each, which follows the time that is shown. */

import { html } from './dom';

/** A running video may be this far off before it jumps, seconds. */
const DRIFT = 0.15;

/** A standing one is off by less than any frame, seconds. */
const STILL = 0.005;

export class Footage {
  private readonly videos: HTMLVideoElement[];

  /** One file per camera, from camera 0; `changed` is told when another picture is there. */
  constructor(names: readonly string[], changed: () => void, complain: (text: string) => void) {
    this.videos = names.map((name, camera) => {
      const video = html('video', { src: `api/video/${camera}`, preload: 'auto' });
      video.muted = true;
      for (const event of ['loadeddata', 'seeked']) video.addEventListener(event, changed);
      // Told of a jump's end, a page may still get the picture of before.
      const presented = (): void => {
        changed();
        video.requestVideoFrameCallback?.(presented);
      };
      video.requestVideoFrameCallback?.(presented);
      video.addEventListener('error', () => {
        complain(`${name} cannot be played by this browser (${video.error?.message || 'its kind is not known'}); ffmpeg -i ${name} -pix_fmt yuv420p playable.mp4 makes a file that can`);
      });
      return video;
    });
  }

  /** Shows the picture at `seconds`; goes on by itself `speed` times as fast as real time, 0 for a still one. */
  follow(seconds: number | null, speed: number): void {
    for (const video of this.videos) {
      if (video.readyState === HTMLMediaElement.HAVE_NOTHING || seconds === null) continue;
      const wanted = Math.min(seconds, video.duration);
      if (speed > 0 && wanted < video.duration) {
        video.playbackRate = speed;
        if (video.paused) void video.play().catch(() => {});
      } else video.pause();
      // A file that is still on its way to a moment would never get to any if each new one called it away.
      if (!video.seeking && Math.abs(video.currentTime - wanted) > (video.paused ? STILL : DRIFT)) video.currentTime = wanted;
    }
  }

  /** The camera's picture; null when none can be shown. */
  of(camera: number): HTMLVideoElement | null {
    const video = this.videos[camera];
    return video && !video.error && video.readyState >= HTMLMediaElement.HAVE_CURRENT_DATA ? video : null;
  }
}
