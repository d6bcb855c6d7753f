// Writes a DWG file as DXF with the library @mlightcad/libredwg-web:
//     node --liftoff-only dwg_to_dxf.mjs FOLDER_OF_THE_LIBRARY in.dwg out.dxf
// Exit status 0 when out.dxf is there, else 1 and one line on stderr that says why.
import { readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { pathToFileURL } from 'node:url';

// Bits of the library's result. A fault below the first of these (a checksum that is wrong, an
// object of a kind it does not know) leaves a drawing that is of use.
const faults = [
  [128, 'the classes of its objects are missing'],
  [256, 'a section is missing'],
  [512, 'a page is missing'],
  [1024, 'the library failed'],
  [2048, 'it is damaged'],
  [4096, 'it cannot be read'],
  [8192, 'it needs more memory than there is'],
];

function give_up(reason) {
  process.stderr.write(reason + '\n');
  process.exit(1);
}

const [library, source, target] = process.argv.slice(2);
if (!target) give_up('usage: dwg_to_dxf.mjs FOLDER_OF_THE_LIBRARY in.dwg out.dxf');

let module;
try {
  const wasm = await import(pathToFileURL(join(library, 'wasm', 'libredwg-web.js')));
  module = await wasm.default({ print: () => {}, printErr: () => {} });
} catch (error) {
  give_up('the library cannot be loaded: ' + error.message);
}

try {
  module.FS.writeFile('in.dwg', readFileSync(source));
  const fault = module.dwg_write_dxf('in.dwg', 'out.dxf');
  if (fault >= faults[0][0]) {
    const known = faults.filter(([bit]) => fault & bit).map(([, text]) => text);
    give_up(known.length ? known.join(', ') : 'fault ' + fault);
  }
  if (!module.FS.analyzePath('out.dxf', false).exists) give_up('nothing was written');
  writeFileSync(target, module.FS.readFile('out.dxf'));
} catch (error) {
  give_up(String(error?.message ?? error));
}
process.exit(0);
