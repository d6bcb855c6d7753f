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

// Whether layers are off, by handle in capital letters.
function layers_off(module, drawing) {
  const kLayer = 51;
  const off = new Map();
  for (let i = 0; i < module.dwg_get_num_objects(drawing); ++i) {
    const object = module.dwg_get_object(drawing, i);
    if (module.dwg_object_get_fixedtype(object) !== kLayer) continue;
    const value = module.dwg_dynapi_entity_value(module.dwg_object_to_object_tio(object), 'off');
    const handle = module.dwg_obj_get_handle_value(object).toString(16).toUpperCase();
    if (value.success) off.set(handle, value.data !== 0);
  }
  return off;
}

// The library writes the colour of every layer as that of one which is off, with a minus sign.
function with_layers_on(dxf, off) {
  const pieces = [];
  let done = 0;
  const marker = 'AcDbLayerTableRecord';
  for (let at = dxf.indexOf(marker); at >= 0; at = dxf.indexOf(marker, at + 1)) {
    const head = dxf.subarray(Math.max(0, at - 2000), at).toString('latin1');
    const handle = [...head.matchAll(/\n *5\r?\n *([0-9A-Fa-f]+)/g)].pop()?.[1].toUpperCase();
    const body = dxf.subarray(at, at + 4000).toString('latin1');
    const color = /\n *62\r?\n *(-?\d+)/.exec(body);
    const next = /\n *0\r?\n[A-Z]/.exec(body);
    if (!color || !off.has(handle) || (next && next.index < color.index)) continue;
    const end = at + color.index + color[0].length;
    const sign = off.get(handle) ? '-' : '';
    pieces.push(dxf.subarray(done, end - color[1].length),
                Buffer.from(sign + color[1].replace('-', '')));
    done = end;
  }
  pieces.push(dxf.subarray(done));
  return Buffer.concat(pieces);
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
  const dxf = Buffer.from(module.FS.readFile('out.dxf').buffer);
  writeFileSync(target, with_layers_on(dxf, layers_off(module, module.dwg_read_file('in.dwg').data)));
} catch (error) {
  give_up(String(error?.message ?? error));
}
process.exit(0);
