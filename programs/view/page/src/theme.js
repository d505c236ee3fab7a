// Light and dark: the colours of the drawing, and the button that changes them.

/** @import {Theme} from './overlay.js' */

/** @type {Record<'light' | 'dark', Theme>} */
const THEMES = {
  light: {ink: '#1b1f26', ground: '#ffffff', soft: '#b9c0ca', support: '#27618f', load: '#b5441a',
          reaction: '#7a2d9c', accent: '#0b5fb0', positive: '#a8281c', negative: '#1d559c'},
  dark: {ink: '#e6e9ee', ground: '#14171c', soft: '#566070', support: '#8cc4f0', load: '#ff9c6b',
         reaction: '#d59cf2', accent: '#6db3f2', positive: '#ff8f80', negative: '#86bdfa'},
};

const CHOICES = /** @type {const} */ (['auto', 'light', 'dark']);
/** @type {typeof CHOICES[number]} */ let choice = 'auto';

export function isDark() {
  if (choice !== 'auto') return choice === 'dark';
  return window.matchMedia('(prefers-color-scheme: dark)').matches;
}

export const theme = () => THEMES[isDark() ? 'dark' : 'light'];
export const paperTheme = () => THEMES.light;

/** @param {() => void} changed */
export function setUpTheme(changed) {
  const button = /** @type {HTMLButtonElement} */ (document.getElementById('theme'));
  const apply = () => {
    document.documentElement.dataset.theme = isDark() ? 'dark' : 'light';
    button.textContent = `Theme: ${choice}`;
    changed();
  };
  button.addEventListener('click', () => {
    choice = CHOICES[(CHOICES.indexOf(choice) + 1) % CHOICES.length];
    apply();
  });
  window.matchMedia('(prefers-color-scheme: dark)').addEventListener('change', apply);
  apply();
}
