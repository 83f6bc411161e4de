// The machines whose pages are looked at: the sample, and what becomes of its recording.
import {execFileSync} from 'node:child_process';
import {cpSync, mkdirSync, readdirSync, readFileSync, writeFileSync} from 'node:fs';
import {join} from 'node:path';

export const hostile =
    `<script>alert(1)</script>"'&]]></style></title><a href=javascript:alert(1) onclick=x>\u202eb\u0007\u001b[31m\u0085`;
/** The same as a reader is to see it. */
export const shown = hostile.replace('\u202e', '<U+202E>').replace('\u0085', '<U+0085>').replace(/[\u0007\u001b]/g, '?');

/** Every text behind a label, but for what says what a record is about. */
function makeHostile(file, text) {
  if (file.endsWith('recording.json')) {
    return JSON.stringify({...JSON.parse(text), host: hostile, root: hostile});
  }
  if (file.endsWith('.log')) return text.replace(/(\t)([^\t\n]*)$/gm, `$1${hostile.replaceAll('$', '$$$$')}`);
  if (!/get(config|status)-/.test(file)) return text;
  const kept = /(channel|drive\(s\)|stripe order|device\)|scsi id|number of) *$/i;
  return text.replace(/^( .*?)( *: ?)(.*)$/gm,
                      (line, label, colon) => kept.test(label) ? line : label + colon + hostile);
}

/** One more channel, of 2,000 drives, some of them broken. */
function makeMany(file, text) {
  if (!file.endsWith('arcconf.d/1/getconfig-al.txt')) return text;
  const first = text.split(/(?= {6}Device #)/)[1];
  const drives = Array.from({length: 2000}, (_, i) => first.replace(/#\d+/, `#${i}`)
      .replace(/(Reported Channel,Device *: ).*/, `$17,${i}`).replace(/(Serial number *: ).*/, `$1S${i * 7919 % 2000}`)
      .replace(/(State *: ).*/, `$1${i % 400 === 399 ? 'Defunct' : 'Online'}`));
  return text.replace(first, () => drives.join(''));
}

function change(folder, target, how) {
  cpSync(folder, target, {recursive: true});
  for (const entry of readdirSync(target, {recursive: true, withFileTypes: true})) {
    const file = join(entry.parentPath ?? entry.path, entry.name);
    if (!entry.isFile() || !/\.(txt|log|json)$/.test(file)) continue;
    writeFileSync(file, how(file, readFileSync(file, 'utf8')));
  }
  return ['--replay', target];
}

/** Writes the page of each machine into the folder; returns their names and files. */
export function writePages(build, source, folder) {
  const demo = join(source, 'demo');
  mkdirSync(join(folder, 'nothing'));
  const machines = {
    sample: ['--replay', demo],
    empty: ['--root', join(folder, 'nothing'), '--no-lock'],
    many: change(demo, join(folder, 'many'), makeMany),
    hostile: change(demo, join(folder, 'hostile'), makeHostile),
  };
  return Object.entries(machines).map(([name, options]) => {
    const file = join(folder, `${name}.html`);
    execFileSync(join(build, 'bin/kraid-inventory'), [...options, '--format', 'html', '--output', file]);
    return {name, file};
  });
}
